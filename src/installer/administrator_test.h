#pragma once

#include <string>
#include <vector>

namespace platform {
class FileSystem;
}

// True when a file can be created in one of `directories`, which only an administrator may write to.
// What counts is the effect: no token or group is checked. The probe file is deleted again.
bool hasAdministrativePrivileges(platform::FileSystem& files, const std::vector<std::string>& directories);
