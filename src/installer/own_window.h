#pragma once

namespace platform {
class ConsoleDevice;
}

// Where the console's window would vanish with the program, waits for a key, so that a person can read what
// it says.
void keepOwnWindow(platform::ConsoleDevice& console);
