#pragma once

#include <string_view>

// What somebody does with keyboard and mouse, given to the system as their devices would: it arrives in the
// window with the focus, or in the one under the pointer.
namespace user_input {

// One press of a key with what is held with it, in the terms of xdotool: "Return", "shift+Tab", "alt+n",
// "Alt_L". False: the name is unknown, or the system refuses it.
bool pressKey(std::string_view name);
// UTF-8, whatever the keyboard's layout is. False: the system refuses it.
bool typeText(std::string_view text);
// These are in pixels of the screen.
bool movePointer(int x, int y);
// Moves the pointer there and presses its left button.
bool clickAt(int x, int y);
// To a place in the client area of the window with this title.
bool movePointerInto(std::string_view title, int x, int y);
// Of the left button, where the pointer is.
bool click();
// Whether the windows of the calling thread have taken what was given to them.
bool isTaken();

}  // namespace user_input
