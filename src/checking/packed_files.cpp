#include "checking/packed_files.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "description/vocabulary_lookup.h"
#include "platform/file_system.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";
constexpr std::string_view kImageNames[] = {"installer", "installer.exe"};

bool isImageName(std::string_view name) {
    return std::ranges::any_of(
        kImageNames, [name](std::string_view image) { return OUtils::equalsIgnoreCase(image, name); });
}

std::string withoutSeparators(std::string_view text) {
    std::string flat(text);
    std::erase_if(flat, OUtils::isSeparator);
    return flat;
}

}  // namespace

std::optional<std::string> pathBelowRoot(std::string_view text) {
    std::string path;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find_first_of("/\\", start), text.size());
        const std::string_view part = text.substr(start, end - start);
        if (part == ".." || part.find(':') != std::string_view::npos) {
            return std::nullopt;
        }
        if (!part.empty() && part != ".") {
            path.append(path.empty() ? "" : "/").append(part);
        }
        start = end + 1;
    }
    return path;
}

PackedFiles::PackedFiles(const CheckContext& context)
    : context_(context),
      descriptionName_(OUtils::lastPathComponent(context.text(context.firstOf("UninstallXmlFile")))) {
    for (const std::int32_t fileSet : context.nodesOf("FileSet")) {
        for (const std::int32_t node : context.xml().childrenOf(fileSet)) {
            if (!vocabulary::isCalled(context.xml(), node, "FN")) {
                areAllKnown_ = false;
            } else if (!context.text(node).empty()) {
                add(node, fileSet);
            }
        }
    }
    // No view of an alias moves from here on.
    for (std::size_t i = 0; i < files_.size(); ++i) {
        byAlias_.try_emplace(files_[i].alias, i);
    }
}

const PackedFile* PackedFiles::findAlias(std::string_view alias) const {
    const auto found = byAlias_.find(alias);
    return found == byAlias_.end() ? nullptr : &files_[found->second];
}

bool PackedFiles::hasAlias(std::string_view alias) const {
    return alias == kDescriptionAlias || findAlias(alias) != nullptr;
}

std::string PackedFiles::pathOf(const FileSource& source) const {
    return std::string(OUtils::stripTrailingSeparators(*context_.root())) + "/" + source.path;
}

void PackedFiles::add(std::int32_t node, std::int32_t fileSet) {
    const std::string_view text = context_.text(node);
    const std::optional<std::string_view> alias = context_.attribute(node, "Alias");
    PackedFile file{
        .node = node,
        .fileSet = fileSet,
        .text = text,
        .name = OUtils::lastPathComponent(text),
        .alias = alias ? std::string(*alias) : withoutSeparators(text),
        .dest = context_.attribute(node, "Dest").value_or(""),
        .isOptional = context_.attribute(node, "OkIfMissing").has_value(),
        .source = sourceOf(text),
    };
    files_.push_back(std::move(file));
}

// As the packager looks a file up.
FileSource PackedFiles::sourceOf(std::string_view text) const {
    using enum FileSource::Kind;
    const std::optional<std::string> path = pathBelowRoot(text);
    if (!path) {
        return {kOutside, "", 0};
    }
    if (*path == kDescriptionAlias) {
        return {kDescription, *path, 0};
    }
    const std::int64_t size =
        context_.root() ? context_.files().fileSize(pathOf({kRoot, *path, 0})) : std::int64_t{-1};
    const bool isOfDirectory = text.ends_with('/') || text.ends_with('\\');
    if (size >= 0 && !isOfDirectory) {
        return {kRoot, *path, size};
    }
    if (isDescription(*path)) {
        return {kDescription, *path, 0};
    }
    if (isImageName(OUtils::lastPathComponent(*path))) {
        return {kImage, *path, 0};
    }
    return {context_.root() ? kMissing : kUnknown, *path, 0};
}

// The description may have any name. Only an uninstallation needs it installed.
bool PackedFiles::isDescription(std::string_view path) const {
    const std::string_view name = OUtils::lastPathComponent(path);
    return name == kDescriptionAlias || (name == descriptionName_ && name.ends_with(".xml"));
}
