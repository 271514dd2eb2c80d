#include "engine/directory_creator.h"

#include "base/path_functions.h"
#include "platform/file_system.h"

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::size_t rootLength(std::string_view path) {
    if (OUtils::isSeparator(path[0])) {
        return 1;
    }
    const bool hasDrive = isLetter(path[0]) && path[1] == ':' && OUtils::isSeparator(path[2]);
    return hasDrive ? 3 : 0;
}

}  // namespace

int DirectoryCreator::createDirectories(std::string_view path, int& outCreated) {
    outCreated = 0;
    path = path.substr(0, kPathLimit);
    if (path.size() < kShortestPath || known_.count(std::string(path)) != 0) {
        return 0;
    }
    for (std::size_t i = rootLength(path); i < path.size(); ++i) {
        if (!OUtils::isSeparator(path[i]) || i == 0 || OUtils::isSeparator(path[i - 1])) {
            continue;
        }
        const std::string level(path.substr(0, i));
        if (isKnown(level)) {
            continue;
        }
        if (files_.createDirectory(level.c_str()) != 0) {
            return -1;
        }
        known_.insert(level);
        ++outCreated;
    }
    if (OUtils::isSeparator(path.back())) {
        known_.emplace(path);
    }
    return 0;
}

bool DirectoryCreator::isKnown(const std::string& directory) {
    if (known_.count(directory) != 0) {
        return true;
    }
    if (!files_.isDirectory(directory.c_str())) {
        return false;
    }
    known_.insert(directory);
    return true;
}
