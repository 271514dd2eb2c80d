// Looks at the windows of other programs and acts as their user, for tests that run a program as a whole.
//
//     window_probe
//
// Reads commands from the standard input, one a line in UTF-8, and answers each with one line of JSON: an
// object, with the member "error" if the command failed. Windows are named by their number "hwnd", places are
// pixels of the screen.
//
//     tree          "windows": the visible windows of other programs
//     key NAME...   presses keys, in the terms of xdotool: Return, shift+Tab, alt+n, Alt_L
//     type TEXT     types the rest of the line
//     click X Y     moves the pointer there, and presses its left button
//     close HWND    what the close box of the window does
//     quit          ends the program, as the end of the input does

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/windows/user_input.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/window_probe/asking_thread.h"
#include "platform/windows/window_probe/json_text.h"
#include "platform/windows/window_probe/window_tree.h"

namespace {

std::string failed(const std::string& reason) {
    return json::Object().addText("error", platform::wideOf(reason)).str();
}

std::string outcome(bool isDone, const std::string& command) {
    return isDone ? json::Object().addFlag("ok", true).str() : failed("refused: " + command);
}

std::string pressKeys(std::istringstream& arguments) {
    std::string name;
    bool isDone = false;
    while (arguments >> name) {
        isDone = user_input::pressKey(name);
        if (!isDone) {
            return failed("no such key: " + name);
        }
    }
    return outcome(isDone, "key");
}

std::string typeRest(std::istringstream& arguments) {
    arguments.get();
    std::string text;
    std::getline(arguments, text);
    return outcome(user_input::typeText(text), "type");
}

BOOL CALLBACK noteToolTip(HWND window, LPARAM isShown) {
    wchar_t name[32] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    if (IsWindowVisible(window) != 0 && std::wstring_view(name) == L"tooltips_class32") {
        *reinterpret_cast<bool*>(isShown) = true;
    }
    return TRUE;
}

bool isToolTipShown() {
    bool isShown = false;
    EnumWindows(noteToolTip, reinterpret_cast<LPARAM>(&isShown));
    return isShown;
}

// The tip of one control may cover the next one until the pointer leaves.
bool leaveToolTips() {
    constexpr int kPatience = 1000;
    bool isDone = user_input::movePointer(0, 0);
    for (int i = 0; i < kPatience && isDone && isToolTipShown(); ++i) {
        Sleep(10);
    }
    return isDone && !isToolTipShown();
}

std::string clickAt(std::istringstream& arguments) {
    int x = 0;
    int y = 0;
    if (!(arguments >> x >> y)) {
        return failed("click needs X and Y");
    }
    return outcome(leaveToolTips() && user_input::clickAt(x, y), "click");
}

std::string closeWindow(std::istringstream& arguments) {
    LONG_PTR number = 0;
    arguments >> number;
    HWND const window = reinterpret_cast<HWND>(number);
    return outcome(IsWindow(window) != 0 && PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0) != 0, "close");
}

std::string answer(const std::string& line, AskingThread& asking) {
    std::istringstream arguments(line);
    std::string command;
    arguments >> command;
    if (command == "tree") {
        return json::Object().add("windows", windowTree(asking)).str();
    }
    if (command == "key") {
        return pressKeys(arguments);
    }
    if (command == "type") {
        return typeRest(arguments);
    }
    if (command == "click") {
        return clickAt(arguments);
    }
    if (command == "close") {
        return closeWindow(arguments);
    }
    return failed("no such command: " + command);
}

}  // namespace

int main() {
    SetProcessDPIAware();
    AskingThread asking;
    for (std::string line; std::getline(std::cin, line) && line != "quit" && line != "quit\r";) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::cout << answer(line, asking) << std::endl;
    }
    // A thread that asks a window that hangs is not waited for.
    std::_Exit(0);
}
