#include "platform/windows/console_control.h"

#include <atomic>

#include "platform/console_device.h"

namespace platform {

namespace {

std::atomic<ControlHandler> controlHandler{nullptr};

}  // namespace

BOOL WINAPI dispatchControlEvent(DWORD number) {
    const ControlHandler handler = controlHandler;
    switch (number) {
        case CTRL_C_EVENT:
        case CTRL_BREAK_EVENT:
        case CTRL_CLOSE_EVENT:
        case CTRL_LOGOFF_EVENT:
        case CTRL_SHUTDOWN_EVENT:
            return handler != nullptr && handler(static_cast<ControlEvent>(number)) ? TRUE : FALSE;
        default:
            return FALSE;
    }
}

bool setControlHandler(ControlHandler handler) {
    static_assert(static_cast<DWORD>(ControlEvent::kInterrupt) == CTRL_C_EVENT);
    static_assert(static_cast<DWORD>(ControlEvent::kBreak) == CTRL_BREAK_EVENT);
    static_assert(static_cast<DWORD>(ControlEvent::kClose) == CTRL_CLOSE_EVENT);
    static_assert(static_cast<DWORD>(ControlEvent::kLogoff) == CTRL_LOGOFF_EVENT);
    static_assert(static_cast<DWORD>(ControlEvent::kShutdown) == CTRL_SHUTDOWN_EVENT);
    controlHandler = handler;
    static const bool installed = SetConsoleCtrlHandler(dispatchControlEvent, TRUE) != 0;
    return installed;
}

}  // namespace platform
