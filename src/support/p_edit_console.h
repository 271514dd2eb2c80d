#pragma once

#include <functional>
#include <memory>

#include "platform/edit_control.h"
#include "support/p_console.h"

// A console on the edit control of a window, which is given as the destination. Without one it is silent. On
// the thread of the window.
class PEditConsole : public PConsole {
public:
    // Finds the control of a window; null where the window has none.
    using Finder = std::function<std::unique_ptr<platform::EditControl>(void* window)>;

    explicit PEditConsole(Finder find = platform::editControlOf);
    ~PEditConsole() override;

    // `target` is the control's handle of the system. 0; -1 for what is no edit control, and then, as for
    // null, there is no destination any more.
    int setDestination(void* target) override;
    // Lets go of the control. -1, as the other consoles.
    int close() override;
    // 0, also without a destination; -1 once the window has gone.
    int write(const char* text, std::int32_t length) override;
    // 0; -1 without a destination.
    int clear() override;

private:
    Finder find_;
    std::unique_ptr<platform::EditControl> control_;
};
