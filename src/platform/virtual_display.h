#pragma once

#include <memory>
#include <string>

namespace platform {

class Environment;

// A display in memory, on which nobody looks. It ends with this object, and with the process in any case.
class VirtualDisplay {
public:
    virtual ~VirtualDisplay() = default;
    // What programs find it by, for the variable DISPLAY.
    virtual std::string name() const = 0;
};

// Starts one with a screen of this size in pixels. To be called on the thread that the program ends with.
// Null: there is none, and `outReason` gets one line on what is missing.
std::unique_ptr<VirtualDisplay> startVirtualDisplay(int width, int height, std::string& outReason);

// Sets the size of letters, in percent, for windows of programs that this one starts. False for all but 100
// where only the user's own setting counts.
bool setLetterSize(Environment& environment, int percent);

}  // namespace platform
