#pragma once

#include <windows.h>

#include <optional>
#include <set>
#include <string>

// Asks windows of other programs, which may hang: a thread that didn't answer once isn't asked again by this
// object.
class WindowMessages {
public:
    // Nothing when the window doesn't answer.
    std::optional<LRESULT> ask(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0);
    std::wstring text(HWND window);
    bool isSilent(HWND window) const { return silent_.contains(GetWindowThreadProcessId(window, nullptr)); }
    void noteSilent(HWND window) { silent_.insert(GetWindowThreadProcessId(window, nullptr)); }

private:
    std::set<DWORD> silent_;
};
