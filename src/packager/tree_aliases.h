#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "support/md5.h"

namespace platform {
class FileSystem;
}

// Chooses the aliases of the files of trees: each content gets one, and none stands for two contents. They
// depend on the description and on what the files hold, not on the machine.
class TreeAliases {
public:
    // `files` is borrowed; `root` is the directory that all paths below count from.
    TreeAliases(platform::FileSystem& files, std::string root) : files_(files), root_(std::move(root)) {}

    // The alias is taken by another element of the description. `path`: the file that it stands for, empty
    // when there is none. With a `size`, equal files may have the alias, too. All calls come before those of
    // aliasOf.
    void reserve(const std::string& alias, const std::string& path, std::optional<std::int64_t> size);

    // The alias for a file of this many bytes: that of an equal one, or a free one, the default if possible.
    // Without a size the content is nobody else's.
    std::string aliasOf(const std::string& path, std::optional<std::int64_t> size);

private:
    struct Known {
        std::string path;
        std::string alias;
    };
    // The files of one size. Only where there are several, their digests are asked for.
    struct Group {
        std::optional<Known> only;
        std::map<Md5Digest, std::vector<Known>> byDigest;
    };

    std::string freeAliasFor(const std::string& path);
    bool take(const std::string& alias, const std::string& path);
    // The bucket for the file in its group; null where it is the only one, or can't be read.
    std::vector<Known>* bucketOf(Group& group, const std::string& path);
    static void add(Group& group, std::vector<Known>* bucket, Known known);
    std::string placeOf(const std::string& path) const { return root_ + "/" + path; }

    platform::FileSystem& files_;
    std::string root_;
    std::unordered_map<std::string, std::string> pathByAlias_;
    std::unordered_map<std::string, std::string> aliasByPath_;
    std::unordered_map<std::int64_t, Group> groups_;  // by size
};
