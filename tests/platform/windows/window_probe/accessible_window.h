#pragma once

#include <windows.h>

#include <optional>
#include <string>

// What a window says of itself to a screen reader, as a JSON object: its name, role, state, value and
// description, and the names, roles and states of its parts. Nothing when it has no answer, or none within
// some seconds. A list has `rows`, whatever it says of its parts; any other window 0.
std::optional<std::string> accessibleWindow(HWND window, long rows);
