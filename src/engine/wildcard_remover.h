#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform {
class Directory;
class FileSystem;
}  // namespace platform

// Deletes what a product has left behind below a directory, by the pattern of its name.
class WildcardRemover {
public:
    // Directories further down are left alone.
    static constexpr int kDeepestLevel = 200;

    // A file for which `keeps` is true stays, and so do the directories that it is in.
    explicit WildcardRemover(platform::FileSystem& files,
                             std::function<bool(const std::string& path)> keeps = {})
        : files_(files), keeps_(std::move(keeps)) {}

    // Deletes the files in `directory` and in everything below it that match `pattern`, and with
    // `deleteDirectories` each directory that is empty then, the given one included. The number of deletions;
    // nothing when the directory isn't there, or is a link, or is none that could belong to a product (empty,
    // relative, a root), or the pattern is empty or names a path. Links are deleted, not followed, also when
    // one takes the place of a directory in the meantime. An entry whose name no path can mean stays, and so
    // do the directories that it is in.
    std::optional<int> deleteByWildcard(const std::string& directory, std::string_view pattern,
                                        bool deleteDirectories);

    // What of the last call couldn't be opened, listed or deleted first, and why; 0 when nothing was in its
    // way.
    const std::string& faultyPath() const { return faultyPath_; }
    int fault() const { return fault_; }

private:
    // What one call is to delete, and the number of deletions so far.
    struct Job {
        std::string_view pattern;
        bool deleteDirectories;
        int deleted = 0;
    };

    bool clean(platform::Directory& directory, const std::string& path, int level, Job& job);
    bool cleanBelow(platform::Directory& parent, const std::string& parentPath, const std::string& name,
                    int level, Job& job);

    bool succeeds(int status, const std::string& path);

    platform::FileSystem& files_;
    std::string faultyPath_;
    int fault_ = 0;
    std::function<bool(const std::string& path)> keeps_;
};
