#include "platform/message_box.h"

#include "platform/console_device.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

UINT styleOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::kError:
            return MB_ICONERROR;
        case MessageIcon::kWarning:
            return MB_ICONEXCLAMATION;
        case MessageIcon::kInformation:
            return MB_ICONINFORMATION;
    }
    return MB_ICONERROR;
}

// Nobody sees the desktop of a service, and a box on it would wait forever.
bool isDesktopVisible() {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof(flags), nullptr) !=
               0 &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

void showMessage(std::string_view text, std::string_view caption, MessageIcon icon) {
    const bool shown = isDesktopVisible() && MessageBoxW(nullptr, wideOf(text).c_str(),
                                                         wideOf(caption).c_str(), MB_OK | styleOf(icon)) > 0;
    if (!shown) {
        systemConsole().writeError(std::string(caption) + ": " + std::string(text) + "\n");
    }
}

}  // namespace platform
