#include "packager/packing_list.h"

#include <algorithm>
#include <string_view>

#include "base/failure.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/file_sets.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "package/cabinet_format.h"
#include "packager/equal_contents.h"
#include "packager/root_path.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";
constexpr std::string_view kRichTextElement = "RichEditText";
constexpr std::string_view kPlainTextElement = "PlainEditText";
constexpr std::string_view kHtmlElement = "HtmlEditText";

// The console shows everything of rich text elements, but plain text only in a format of its own, and HTML
// only when it isn't HTML at all.
bool isOnConsole(std::string_view element, DocumentFormat format) {
    if (element == kHtmlElement) {
        return format == DocumentFormat::kVerbatim;
    }
    return element == kRichTextElement || format != DocumentFormat::kOfElement;
}

std::string withoutTrailingSeparators(std::string path) {
    while (path.size() > 1 && OUtils::isSeparator(path.back())) {
        path.pop_back();
    }
    return path;
}

}  // namespace

std::string descriptionText(const std::string& path, platform::FileSystem& files) {
    std::string text;
    if (const int status = OUtils::readWholeFile(path, text, files); status != 0) {
        fail(path + ": the description can't be read: " + OUtils::readingErrorText(status));
    }
    return text;
}

std::int64_t PackingList::cabinetSize() const {
    std::int64_t size = CabinetFormat::kHeaderSize;
    for (const PackageFile& entry : entries_) {
        size += entry.size + static_cast<std::int64_t>(CabinetFormat::kHeaderSize);
    }
    return size;
}

PackingList::PackingList(Sources sources, platform::FileSystem& files)
    : sources_(std::move(sources)),
      files_(files),
      descriptionName_(OUtils::lastPathComponent(sources_.description)) {
    sources_.root = withoutTrailingSeparators(sources_.root);
}

void PackingList::read() {
    PXML document;
    document.parseText(readDescription());
    if (document.getNodeCount() == 0) {
        fail(sources_.description + ": this is not a description, it has no elements");
    }
    if (!files_.isDirectory(sources_.root)) {
        fail(sources_.root + ": no such directory");
    }
    if (vocabulary::findElement(document, "ProductDesc") < 0) {
        warnings_.push_back(sources_.description +
                            ": without a ProductDesc section the installer will end at once");
    }
    add({sources_.description, descriptionName_, std::string(kDescriptionAlias)});
    for (std::int32_t node = vocabulary::findElement(document, "FileSet"); node >= 0;
         node = vocabulary::findElement(document, "FileSet", node)) {
        addFileSet(document, node);
    }
    addDocuments(document, kRichTextElement);
    addDocuments(document, kPlainTextElement);
    addDocuments(document, kHtmlElement);
    identity_ = setupIdentityOf(document);
}

const PackageFile* PackingList::findAlias(const std::string& alias) const {
    const auto known = byAlias_.find(alias);
    return known == byAlias_.end() ? nullptr : &entries_[known->second];
}

// With what stands for its trees.
std::string PackingList::readDescription() {
    std::string text = descriptionText(sources_.description, files_);
    TreeExpansion trees(sources_, files_);
    std::optional<std::string> expanded = trees.expand(text);
    warnings_ = trees.warnings();
    if (expanded) {
        description_ = std::make_shared<const std::string>(std::move(*expanded));
        text = *description_;
    }
    return text;
}

void PackingList::addDocuments(const PXML& document, std::string_view element) {
    for (std::int32_t node = document.findByName(element); node >= 0;
         node = document.findByName(element, node)) {
        const DocumentFormat format = documentFormat(document.getAttribute(node, "Format").value_or(""));
        const auto known = byAlias_.find(std::string(document.getText(node).value_or("")));
        if (known == byAlias_.end() || !isOnConsole(element, format)) {
            continue;
        }
        const ShownDocument shown{entries_[known->second].path, format};
        if (std::find(documents_.begin(), documents_.end(), shown) == documents_.end()) {
            documents_.push_back(shown);
        }
    }
}

void PackingList::addFileSet(const PXML& document, std::int32_t node) {
    if (!vocabulary::hasAttribute(document, node, "Name")) {
        warnings_.push_back(sources_.description +
                            ": a FileSet without Name is left out, as the installer does");
        return;
    }
    std::vector<std::int32_t> children;
    document.listChildren(node, children);
    for (const std::int32_t child : children) {
        const auto text = document.getText(child);
        if (vocabulary::isCalled(document, child, "FN") && text && !text->empty()) {
            addFile(document, child);
        }
    }
}

void PackingList::addFile(const PXML& document, std::int32_t node) {
    const std::string text(document.getText(node).value_or(""));
    const std::string relativePath = pathBelowRoot(text);
    const std::string name(OUtils::lastPathComponent(text));
    const auto alias = vocabulary::attributeOf(document, node, "Alias");
    const std::string path = locate(text, relativePath, name);
    if (path.empty()) {
        if (!vocabulary::hasAttribute(document, node, "OkIfMissing")) {
            fail(sources_.root + "/" + relativePath + ": no such file");
        }
        return;
    }
    add({path, name, alias ? std::string(*alias) : defaultAliasOf(text)});
}

// The path of the file; empty when there is none.
std::string PackingList::locate(const std::string& text, const std::string& relativePath,
                                const std::string& name) const {
    std::string path = sources_.root + "/" + relativePath;
    if (isDescription(path, relativePath, name)) {
        return sources_.description;
    }
    if (files_.fileSize(path) >= 0) {
        return path;
    }
    const std::string lower = OUtils::toLowerAscii(name);
    if (lower == "installer.exe" || lower == "installer") {
        if (sources_.image.empty()) {
            fail(text + ": there is no such file below the root, and no bare installer: give --image");
        }
        return sources_.image;
    }
    return {};
}

bool PackingList::isDescription(const std::string& path, const std::string& relativePath,
                                const std::string& name) const {
    if (path == sources_.description || relativePath == descriptionName_) {
        return true;
    }
    return (name == descriptionName_ || name == kDescriptionAlias) && files_.fileSize(path) < 0;
}

// The description that is packed may not be what its file holds.
bool PackingList::isSame(const PackageFile& known, const PackageFile& file) {
    if (known.path == file.path) {
        return true;
    }
    return known.path != sources_.description && file.path != sources_.description &&
           known.size == files_.fileSize(file.path) && haveEqualContents(files_, known.path, file.path);
}

// The same content under the same alias is needed only once. Two contents under one alias are left to the
// writer, which refuses them.
void PackingList::add(PackageFile file) {
    const auto [known, isNew] = byAlias_.try_emplace(file.alias, entries_.size());
    if (!isNew && isSame(entries_[known->second], file)) {
        return;
    }
    if (file.alias.size() > FileEntry::kNameLimit) {
        warnings_.push_back(file.path + ": the alias has " + std::to_string(file.alias.size()) +
                            " bytes, and the installer finds no file by more than " +
                            std::to_string(FileEntry::kNameLimit) + ": give the file an Alias");
    }
    file.content = file.path == sources_.description ? description_ : nullptr;
    file.size = file.content != nullptr ? static_cast<std::int64_t>(file.content->size())
                                        : files_.fileSize(file.path);
    entries_.push_back(std::move(file));
}
