#include "packager/terminal_output.h"

#include <string>

TerminalOutput::TerminalOutput(platform::ConsoleDevice& device) : device_(device), terminal_(device) {}

void TerminalOutput::print(std::string_view line) {
    clearProgress();
    terminal_.write(line);
    terminal_.write("\n");
}

void TerminalOutput::warn(std::string_view line) {
    clearProgress();
    terminal_.flush();
    device_.writeError(std::string(line) + "\n");
}

void TerminalOutput::progress(std::string_view step, int percent) {
    if (!terminal_.isOutputTerminal()) {
        return;
    }
    const std::string text = std::string(step) + ": " + std::to_string(percent) + " %";
    terminal_.write("\r" + text + std::string(text.size() < 30 ? 30 - text.size() : 0, ' '));
    terminal_.flush();
    showsProgress_ = true;
}

void TerminalOutput::clearProgress() {
    if (showsProgress_) {
        terminal_.write("\r" + std::string(40, ' ') + "\r");
        showsProgress_ = false;
    }
}

bool TerminalOutput::finish() {
    clearProgress();
    return terminal_.flush() && !terminal_.outputFailed();
}
