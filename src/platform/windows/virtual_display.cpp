#include "platform/virtual_display.h"

namespace platform {

std::unique_ptr<VirtualDisplay> startVirtualDisplay(int /*width*/, int /*height*/, std::string& outReason) {
    outReason = "there are no displays in memory on this system; --display draws on yours";
    return nullptr;
}

bool setLetterSize(Environment& /*environment*/, int percent) {
    return percent == 100;
}

}  // namespace platform
