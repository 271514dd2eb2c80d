#include "platform/written_path.h"

namespace platform {

std::string writtenPath(std::string_view path) {
    return std::string(path);
}

}  // namespace platform
