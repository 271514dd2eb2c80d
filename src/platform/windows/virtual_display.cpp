#include "platform/virtual_display.h"

namespace platform {

std::unique_ptr<VirtualDisplay> startVirtualDisplay(int /*width*/, int /*height*/, std::string& outReason) {
    outReason = "there are no displays in memory on this system";
    return nullptr;
}

}  // namespace platform
