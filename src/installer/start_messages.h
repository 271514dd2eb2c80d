#pragma once

#include <functional>
#include <string_view>

#include "platform/message_box.h"

namespace platform {
class ConsoleDevice;
}

// What the program says while no front end could: in a graphical run in a box of the system, otherwise on the
// standard streams.
class StartMessages {
public:
    // As platform::showMessage.
    using Box =
        std::function<void(std::string_view text, std::string_view caption, platform::MessageIcon icon)>;

    // The console outlives this object.
    StartMessages(platform::ConsoleDevice& console, Box box);

    // Whether the run has a window; it has none at first.
    void setGraphical(bool isGraphical) { isGraphical_ = isGraphical; }

    // A text of a fixed form, which a console run prints to standard output.
    void show(std::string_view text, platform::MessageIcon icon);
    // Lines that a console run prints to standard error.
    void note(std::string_view text, platform::MessageIcon icon = platform::MessageIcon::kError);
    // To standard error in each run: for what nobody has to agree to.
    void remark(std::string_view text);
    // Exactly this, to standard output.
    void print(std::string_view text);

private:
    platform::ConsoleDevice& console_;
    Box box_;
    bool isGraphical_ = false;
};
