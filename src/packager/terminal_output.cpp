#include "packager/terminal_output.h"

#include <string>

#include "platform/console_device.h"

void TerminalOutput::print(std::string_view line) {
    clearProgress();
    console_.write(std::string(line) + "\n");
}

void TerminalOutput::warn(std::string_view line) {
    clearProgress();
    console_.flush();
    console_.writeError(std::string(line) + "\n");
}

void TerminalOutput::progress(std::string_view step, int percent) {
    if (!console_.isOutputTerminal()) {
        return;
    }
    const std::string text = std::string(step) + ": " + std::to_string(percent) + " %";
    console_.writeControl("\r" + text + std::string(text.size() < 30 ? 30 - text.size() : 0, ' '));
    console_.flush();
    showsProgress_ = true;
}

void TerminalOutput::clearProgress() {
    if (showsProgress_) {
        console_.writeControl("\r" + std::string(40, ' ') + "\r");
        showsProgress_ = false;
    }
}

bool TerminalOutput::finish() {
    clearProgress();
    return console_.flush();
}
