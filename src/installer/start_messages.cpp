#include "installer/start_messages.h"

#include <string>
#include <utility>

#include "platform/console_device.h"

namespace {

constexpr char kCaption[] = "Tandrel Software installer";

}  // namespace

StartMessages::StartMessages(platform::ConsoleDevice& console, Box box)
    : console_(console), box_(std::move(box)) {}

void StartMessages::show(std::string_view text, platform::MessageIcon icon) {
    if (isGraphical_) {
        box_(text, kCaption, icon);
    } else {
        print(std::string(text) + "\n");
    }
}

void StartMessages::note(std::string_view text, platform::MessageIcon icon) {
    if (isGraphical_) {
        box_(text, kCaption, icon);
    } else {
        remark(text);
    }
}

void StartMessages::remark(std::string_view text) {
    console_.writeError(std::string(text) + "\n");
}

void StartMessages::print(std::string_view text) {
    console_.write(text);
    console_.flush();
}
