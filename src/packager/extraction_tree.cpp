#include "packager/extraction_tree.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/path_functions.h"
#include "base/text_functions.h"

namespace {

constexpr std::string_view kPackedOnlyDirectory = "(packed only)";
constexpr char kSubstitute = '_';

bool isRefused(char c) {
    constexpr std::string_view kRefused = "/\\:*?\"<>|\x7F";
    return static_cast<unsigned char>(c) < 0x20 || kRefused.find(c) != std::string_view::npos;
}

bool isReference(std::string_view component) {
    return component.size() > 2 && component.front() == '[' && component.find(']') == component.size() - 1;
}

// Windows drops dots and blanks at the end of a name, so that `.. ` would be the parent.
std::string safeComponent(std::string_view component) {
    if (isReference(component)) {
        component = component.substr(1, component.size() - 2);
    }
    std::string safe(component);
    std::replace_if(safe.begin(), safe.end(), isRefused, kSubstitute);
    for (std::size_t end = safe.size(); end > 0 && (safe[end - 1] == '.' || safe[end - 1] == ' '); --end) {
        safe[end - 1] = kSubstitute;
    }
    return safe.empty() ? std::string(1, kSubstitute) : safe;
}

// A path without a root, from which every component leads further down.
std::string safePath(std::string_view directory) {
    std::string path;
    while (!directory.empty()) {
        const std::size_t end = std::min(directory.find_first_of("/\\"), directory.size());
        const std::string_view component = directory.substr(0, end);
        if (!component.empty() && component != ".") {
            path += safeComponent(component) + "/";
        }
        directory.remove_prefix(std::min(end + 1, directory.size()));
    }
    return path;
}

bool isSameContent(const CabinetEntry& a, const CabinetEntry& b) {
    return a.digest() == b.digest() && a.fileSize() == b.fileSize();
}

}  // namespace

std::string treePathOf(const InstalledPlace& place) {
    return safePath(place.directory) + safeComponent(place.name);
}

std::string packedOnlyPathOf(std::string_view name) {
    return std::string(kPackedOnlyDirectory) + "/" + safeComponent(name);
}

void ExtractionTree::add(std::int32_t index) {
    const CabinetEntry& entry = cabinet_.entry(index);
    const std::vector<InstalledPlace>& places = description_.placesOf(entry.alias());
    for (const InstalledPlace& installed : places) {
        place({index, treePathOf(installed), installed.isExecutable});
    }
    if (places.empty()) {
        place({index, packedOnlyPathOf(entry.name()), false});
    }
}

void ExtractionTree::place(ExtractedFile file) {
    const CabinetEntry& entry = cabinet_.entry(file.index);
    const std::string wanted = file.path;
    const std::string other = wanted + " (" + safeComponent(entry.alias()) + ")";
    for (const std::string& path : {wanted, other}) {
        const auto [known, isNew] = taken_.try_emplace(OUtils::toLowerAscii(path), files_.size());
        if (isNew) {
            file.path = path;
            files_.push_back(std::move(file));
            if (path != wanted) {
                std::string remark = wanted + ": another file goes there, too; the one with the alias \"";
                remark.append(entry.alias()).append("\" is extracted as ").append(path);
                remarks_.push_back(std::move(remark));
            }
            return;
        }
        ExtractedFile& present = files_[known->second];
        if (isSameContent(cabinet_.entry(present.index), entry)) {
            present.isExecutable = present.isExecutable || file.isExecutable;
            return;
        }
    }
    fail("several files of the package go to " + wanted + ": extract them one by one");
}
