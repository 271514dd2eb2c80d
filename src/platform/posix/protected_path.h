#pragma once

#include <string>

#include "platform/file_system.h"

namespace platform {

// FileSystem::isProtected, for a real path. In directories further up than the file's own, others may make
// entries as long as they can't touch those of somebody else (the sticky bit).
bool isProtectedPath(const std::string& realPath, Protection protection);

}  // namespace platform
