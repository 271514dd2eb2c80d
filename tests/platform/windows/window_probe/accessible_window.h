#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/windows/window_probe/asking_thread.h"

// What is asked besides the name. Each answer may cost a turn of the other program.
struct AccessibleQuestions {
    bool roleAndState = false;
    bool value = false;
    bool description = false;
    long rows = 0;  // how many of a list have a name of their own
};

// What a window says of itself to a screen reader, as a JSON object: its own object if it answered
// WM_GETOBJECT, or the system's if that answer was 0. Nothing when there is no object, or no answer within
// some seconds.
std::optional<std::string> accessibleWindow(HWND window, LRESULT answer, const AccessibleQuestions& questions,
                                            AskingThread& asking);
