#pragma once

#include <string>
#include <vector>

namespace platform {
class FileSystem;
}

// True when a file can be created in one of `directories`, which only an administrator may write to. The test
// is one of effect: no token or group is asked. The probe file is deleted again.
bool hasAdministrativePrivileges(platform::FileSystem& files, const std::vector<std::string>& directories);
