#include "platform/console_device.h"

#include "base/visible_text.h"

namespace platform {

bool ConsoleDevice::write(std::string_view text) {
    return put(OUtils::visibleText(text));
}

bool ConsoleDevice::writeError(std::string_view text) {
    return putError(OUtils::visibleText(text));
}

std::optional<ReadStatus> ConsoleDevice::editLine(std::string_view, LineCompletion, std::string& outLine,
                                                  std::size_t) {
    outLine.clear();
    return std::nullopt;
}

}  // namespace platform
