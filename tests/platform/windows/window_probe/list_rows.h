#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/windows/window_probe/window_messages.h"

struct ListRow {
    std::wstring text;
    int image = -1;
};

// The rows of a list view of another program. Empty when it doesn't answer.
std::vector<ListRow> listRows(HWND list, WindowMessages& messages);
