#pragma once

#include <string>
#include <string_view>

namespace platform {

// Loads the shared library whose whole content is `image`, which needs no file for that, and gives the
// address of its function of this name. The library stays until the process ends. Null: `outReason` gets one
// line, the system's own where it has one, such as the name of another library that is missing. Always null
// on Windows, which loads libraries from files alone. The system's loader believes what it reads, and a cut
// image can end the process: the caller has checked it.
void* loadMemoryLibrary(std::string_view image, const std::string& function, std::string& outReason);

}  // namespace platform
