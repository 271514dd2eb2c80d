#pragma once

#include <windows.h>

namespace platform {

// What the system calls for each control event of the console; asks the handler of setControlHandler.
BOOL WINAPI dispatchControlEvent(DWORD number);

}  // namespace platform
