#pragma once

#include <sys/types.h>

#include <string>

namespace platform {

enum class ModeRule {
    kWithinUmask,  // as for every new file
    kExact,        // whatever the user's mask says
};

// Gives a file this content in one step: a reader finds the old file or the new one, never a half. A link at
// `path` is replaced, not followed. 0 or errno; after a failure what was there stays, and nothing else.
int replaceFileContent(const std::string& path, const std::string& content, mode_t mode, ModeRule rule);

// As replaceFileContent, with a symbolic link whose text is `target`.
int replaceWithSymlink(const std::string& path, const std::string& target);

}  // namespace platform
