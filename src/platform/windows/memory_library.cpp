#include "platform/memory_library.h"

namespace platform {

void* loadMemoryLibrary(std::string_view /*image*/, const std::string& /*function*/, std::string& outReason) {
    outReason = "libraries can't be loaded from memory";
    return nullptr;
}

}  // namespace platform
