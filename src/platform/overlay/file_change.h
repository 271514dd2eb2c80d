#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace platform {

// What became of one path. What was made and is gone again is no change.
struct FileChange {
    enum class What {
        kCreated,
        kChanged,   // its content or its rights
        kReplaced,  // by something new
        kMoved,     // here, with all that is below it
        kDeleted,
    };

    What what = What::kCreated;
    std::string path;
    PathKind kind = PathKind::kFile;  // of what is there now; of what was deleted
    std::string from = {};            // what was moved: where the machine has it
    bool replaces = false;            // and something was in its place
    std::int64_t size = -1;           // of a file that is there, in bytes
    bool hasNewContent = false;
    bool hasNewRights = false;
};

}  // namespace platform
