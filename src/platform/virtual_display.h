#pragma once

#include <memory>
#include <string>

namespace platform {

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

}  // namespace platform
