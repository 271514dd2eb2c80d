#pragma once

#include <string_view>

#include "base/errors.h"
#include "platform/console_device.h"

// Prints a text with colour sequences (byte 27 up to the letter `m`) to a console. Without `useColour` the
// sequences are dropped; with it they are passed on to a terminal, which applies them, and dropped where
// there is none; other control characters don't pass. A sequence without its end, or of more than 16 bytes,
// prints "outils_cprint: Incorrect ESC length!" and ends the text; an output that has failed prints
// "outils_cprint: Invalid handle!" to standard error.
void outils_cprint(platform::ConsoleDevice& console, bool useColour, std::string_view text);

// The same with a text formatted as by printf and cut to 4,095 bytes.
void outils_cprintf(platform::ConsoleDevice& console, bool useColour, const char* format, ...)
    TANDREL_PRINTF(3, 4);
