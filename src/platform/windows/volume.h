#pragma once

#include <string>

namespace platform {

struct Volume;

// As FileSystem::findVolume, for a path of the system. Returns 0 or the system's error number.
int volumeOf(const std::wstring& path, Volume& outVolume);

}  // namespace platform
