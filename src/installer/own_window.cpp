#include "installer/own_window.h"

#include "platform/console_device.h"

void keepOwnWindow(platform::ConsoleDevice& console) {
    if (!console.ownsWindow() || !console.isInputTerminal()) {
        return;
    }
    const platform::UnechoedInput unechoed(console);
    console.write("\nPress any key to close this window...");
    int key = 0;
    console.readKey(key);
}
