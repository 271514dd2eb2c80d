#pragma once

#include <string>

#include "package/executable_image.h"

namespace platform {
class FileSystem;
}

// The system that the bare image at the path is for. kNone without a path, and for what can't be read or is
// no program: whoever packs the image reports its faults.
ImageKind kindOfImage(const std::string& path, platform::FileSystem& files);
