#include "engine/kept_files.h"

#include <algorithm>
#include <iterator>

#include "base/path_functions.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"

namespace {

std::string keyOf(std::string_view path) {
    return platform::pathIdentity(OUtils::stripTrailingSeparators(path));
}

}  // namespace

void KeptFiles::hold(std::string_view path) {
    if (!path.empty() && !isClosed_) {
        held_.insert(keyOf(path));
    }
}

void KeptFiles::holdByName(std::string_view name) {
    if (!name.empty() && !isClosed_) {
        heldNames_.insert(keyOf(name));
    }
}

bool KeptFiles::holds(std::string_view path) const {
    const std::string key = keyOf(path);
    return !isReleased_ &&
           (held_.contains(key) || heldNames_.contains(std::string(OUtils::lastPathComponent(key))));
}

bool KeptFiles::postponesFile(std::string_view path) {
    if (!holds(path)) {
        return false;
    }
    if (postponed_.insert(keyOf(path)).second) {
        postponedFiles_.emplace_back(path);
    }
    return true;
}

std::vector<std::string> KeptFiles::leftFiles() const {
    std::vector<std::string> left;
    std::ranges::copy_if(postponedFiles_, std::back_inserter(left),
                         [this](const std::string& path) { return files_.exists(path); });
    return left;
}

bool KeptFiles::postponesDirectory(const std::string& directory, int& outStatus) {
    std::vector<platform::DirectoryEntry> entries;
    outStatus = 0;
    if (isReleased_ || postponed_.empty()) {
        return false;
    }
    if (const int status = files_.list(directory, entries); status != 0 || entries.empty()) {
        outStatus = files_.exists(directory) ? status : 0;
        return false;
    }
    const std::string key = keyOf(directory);
    const bool holdsNothingElse = std::ranges::all_of(entries, [&](const platform::DirectoryEntry& entry) {
        return postponed_.contains(keyOf(key + '\\' + entry.name));
    });
    if (holdsNothingElse) {
        postponed_.insert(key);
    }
    return holdsNothingElse;
}

bool KeptFiles::isSameFile(std::string_view path, std::string_view other) {
    return keyOf(path) == keyOf(other);
}
