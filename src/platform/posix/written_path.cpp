#include "platform/written_path.h"

#include "platform/posix/native_path.h"

namespace platform {

std::string writtenPath(std::string_view path) {
    return nativePath(path);
}

}  // namespace platform
