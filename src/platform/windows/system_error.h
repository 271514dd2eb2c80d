#pragma once

#include <windows.h>

namespace platform {

// The number of the call that just failed; never 0, which would read as success.
inline int failureNumber() {
    const DWORD number = GetLastError();
    return static_cast<int>(number != ERROR_SUCCESS ? number : ERROR_GEN_FAILURE);
}

inline int statusOf(BOOL succeeded) {
    return succeeded != 0 ? 0 : failureNumber();
}

}  // namespace platform
