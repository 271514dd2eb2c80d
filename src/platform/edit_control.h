#pragma once

#include <memory>
#include <string_view>

namespace platform {

// A box of text in a window. On the thread that made the window, or while that thread handles its messages.
class EditControl {
public:
    virtual ~EditControl() = default;

    // Adds to the end, which becomes visible. Text is UTF-8; a line ends with CR LF. Both are false when the
    // window has gone.
    virtual bool append(std::string_view text) = 0;
    virtual bool clear() = 0;
};

// The control with this handle of the system; the window stays its owner's. Null where the handle is none, or
// that of a window of another class than "Edit", and on a system without such windows.
std::unique_ptr<EditControl> editControlOf(void* window);

}  // namespace platform
