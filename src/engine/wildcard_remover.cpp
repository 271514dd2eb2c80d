#include "engine/wildcard_remover.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "base/path_functions.h"
#include "base/wildcard.h"
#include "platform/file_system.h"

namespace {

constexpr std::string_view kSeparators = "/\\";

// The part of a path after its root: a drive, a server and its share, or leading separators.
std::string_view afterRoot(std::string_view path) {
    if (path.size() > 1 && path[1] == ':') {
        path.remove_prefix(2);
    } else if (path.size() > 1 && OUtils::isSeparator(path[0]) && OUtils::isSeparator(path[1])) {
        for (int part = 0; part < 2; ++part) {
            path.remove_prefix(std::min(path.find_first_not_of(kSeparators), path.size()));
            path.remove_prefix(std::min(path.find_first_of(kSeparators), path.size()));
        }
    }
    return path;
}

bool isBelowARoot(std::string_view path) {
    const std::string_view rest = afterRoot(path);
    if (rest.empty() || !OUtils::isSeparator(rest.front())) {
        return false;
    }
    bool namesDirectory = false;
    for (std::size_t begin = 0; begin < rest.size();) {
        const std::size_t end = std::min(rest.find_first_of(kSeparators, begin), rest.size());
        const std::string_view part = rest.substr(begin, end - begin);
        // A path that steps back may end anywhere.
        if (part == "..") {
            return false;
        }
        namesDirectory = namesDirectory || (!part.empty() && part != ".");
        begin = end + 1;
    }
    return namesDirectory;
}

}  // namespace

std::optional<int> WildcardRemover::deleteByWildcard(const std::string& directory, std::string_view pattern,
                                                     bool deleteDirectories) {
    const bool isPlainPattern =
        !pattern.empty() && pattern.find_first_of(kSeparators) == std::string_view::npos;
    fault_ = 0;
    std::unique_ptr<platform::Directory> opened;
    if (!isPlainPattern || !isBelowARoot(directory) ||
        files_.kindOf(directory) != platform::PathKind::kDirectory ||
        !succeeds(files_.openDirectory(directory, opened), directory)) {
        return std::nullopt;
    }
    Job job{pattern, deleteDirectories};
    const bool isEmpty = clean(*opened, directory, 0, job);
    opened.reset();  // or it would stay until then
    if (deleteDirectories && isEmpty && files_.removeDirectory(directory) == 0) {
        ++job.deleted;
    }
    return job.deleted;
}

bool WildcardRemover::succeeds(int status, const std::string& path) {
    if (status != 0 && fault_ == 0) {
        fault_ = status;
        faultyPath_ = path;
    }
    return status == 0;
}

// True when no entry that was listed is left.
bool WildcardRemover::clean(platform::Directory& directory, const std::string& path, int level, Job& job) {
    std::vector<platform::DirectoryEntry> entries;
    if (!succeeds(directory.list(entries), path)) {
        return false;
    }
    std::size_t left = entries.size();
    for (const platform::DirectoryEntry& entry : entries) {
        if (entry.isDirectory) {
            left -= cleanBelow(directory, path, entry.name, level + 1, job) ? 1 : 0;
        } else if (matchesWildcard(job.pattern, entry.name) && !(keeps_ && keeps_(path + "/" + entry.name)) &&
                   succeeds(directory.removeFile(entry.name), path + "/" + entry.name)) {
            ++job.deleted;
            --left;
        }
    }
    return left == 0;
}

// True when the directory has been removed.
bool WildcardRemover::cleanBelow(platform::Directory& parent, const std::string& parentPath,
                                 const std::string& name, int level, Job& job) {
    std::unique_ptr<platform::Directory> opened;
    if (level > kDeepestLevel || !succeeds(parent.openDirectory(name, opened), parentPath + "/" + name)) {
        return false;
    }
    const bool isEmpty = clean(*opened, parentPath + "/" + name, level, job);
    opened.reset();
    if (!job.deleteDirectories || !isEmpty || parent.removeDirectory(name) != 0) {
        return false;
    }
    ++job.deleted;
    return true;
}
