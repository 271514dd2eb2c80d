#pragma once

#include <string>

namespace platform {

struct Volume;

// As FileSystem::findVolume, for a path of the system. Returns 0 or errno.
int volumeOf(const std::string& path, Volume& outVolume);

}  // namespace platform
