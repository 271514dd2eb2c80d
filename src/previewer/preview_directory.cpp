#include "previewer/preview_directory.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/failure.h"
#include "base/text_functions.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kFirstLine = "Tandrel preview 1";

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.';
}

// A file in the directory, or in a directory in it.
bool isOwnName(const std::string& name) {
    const std::vector<std::string> parts = OUtils::splitText(name, '/');
    return (parts.size() == 1 || parts.size() == 2) &&
           std::ranges::all_of(parts, [](const std::string& part) {
               return !part.empty() && part[0] != '.' && std::ranges::all_of(part, isPlain);
           });
}

}  // namespace

PreviewDirectory::PreviewDirectory(platform::FileSystem& files, std::string path)
    : files_(files), path_(std::move(path)) {}

std::string PreviewDirectory::pathOf(std::string_view name) const {
    return path_ + "/" + std::string(name);
}

void PreviewDirectory::begin() {
    if (!files_.exists(path_)) {
        makeDirectory(path_);
    }
    std::vector<platform::DirectoryEntry> entries;
    if (!files_.isDirectory(path_) || files_.list(path_, entries) != 0) {
        fail(path_ + ": no directory, or one that can't be read");
    }
    if (!entries.empty()) {
        removeEarlier();
    }
    writeOne(kListName, std::string(kFirstLine) + "\n");
}

void PreviewDirectory::removeEarlier() {
    std::string list;
    if (!read(kListName, list) || !list.starts_with(kFirstLine)) {
        fail(path_ + ": is neither empty nor an earlier preview: choose another directory");
    }
    std::set<std::string> directories;
    for (const std::string& name : names()) {
        if (!isInside(name)) {
            continue;
        }
        const int status = files_.removeFile(pathOf(name));
        if (status != 0 && files_.exists(pathOf(name))) {
            fail(pathOf(name) + ": of the earlier preview, can't be removed");
        }
        if (const std::size_t slash = name.find('/'); slash != std::string::npos) {
            directories.insert(name.substr(0, slash));
        }
    }
    for (const std::string& directory : directories) {
        files_.removeDirectory(pathOf(directory));  // one with other files stays
    }
}

// A link in the place of a directory leads elsewhere.
bool PreviewDirectory::isInside(const std::string& name) {
    const std::size_t slash = name.find('/');
    return isOwnName(name) && (slash == std::string::npos || files_.kindOf(pathOf(name.substr(0, slash))) ==
                                                                 platform::PathKind::kDirectory);
}

void PreviewDirectory::makeDirectory(const std::string& path) {
    if (!files_.isDirectory(path)) {
        if (const int status = files_.createDirectory(path); status != 0 && !files_.isDirectory(path)) {
            fail(path + ": the directory can't be made: " + OUtils::writingErrorText(status));
        }
    }
}

void PreviewDirectory::write(const std::vector<PreviewFile>& files) {
    std::string list;
    if (!read(kListName, list)) {
        fail(pathOf(kListName) + ": can't be read");
    }
    for (const PreviewFile& file : files) {
        preparePlace(file.name);
        list += file.name + "\n";
    }
    writeOne(kListName, list);
    for (const PreviewFile& file : files) {
        writeOne(file.name, file.content);
    }
}

void PreviewDirectory::preparePlace(const std::string& name) {
    if (!isOwnName(name)) {
        fail(pathOf(name) + ": isn't a file of a preview");
    }
    if (const std::size_t slash = name.find('/'); slash != std::string::npos) {
        makeDirectory(pathOf(name.substr(0, slash)));
    }
    if (!isInside(name)) {
        fail(pathOf(name) + ": its directory is a link");
    }
    if (files_.kindOf(pathOf(name)) != platform::PathKind::kNothing) {
        fail(pathOf(name) + ": no preview wrote what is in this place");
    }
}

void PreviewDirectory::writeOne(const std::string& name, std::string_view content) {
    if (const int status = OUtils::writeWholeFile(pathOf(name), content, files_); status != 0) {
        fail(pathOf(name) + ": can't be written: " + OUtils::writingErrorText(status));
    }
}

std::vector<std::string> PreviewDirectory::names() {
    std::string list;
    std::vector<std::string> lines;
    if (read(kListName, list) && list.starts_with(kFirstLine)) {
        lines = OUtils::splitText(list, '\n');
        lines.erase(lines.begin());
        std::erase_if(lines, [](const std::string& name) { return !isOwnName(name); });
    }
    return lines;
}

bool PreviewDirectory::read(const std::string& name, std::string& outContent) {
    return OUtils::readWholeFile(pathOf(name), outContent, files_) == 0;
}
