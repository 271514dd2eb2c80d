#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/memory/memory_console_device.h"

// A console that nobody sits at. Keeps what is written to both streams in one order.
class RehearsedConsole : public MemoryConsoleDevice {
public:
    bool put(std::string_view text) override {
        text_ += text;
        return true;
    }
    bool putError(std::string_view text) override {
        text_ += text;
        return true;
    }
    // What has been written since the last call of this or of takeLines, byte by byte.
    std::string takeText() { return std::exchange(text_, {}); }
    // The same as a terminal shows it: of a line that was written over, the last state; without empty lines
    // and blanks at the ends of lines.
    std::vector<std::string> takeLines();

private:
    std::string text_;
};
