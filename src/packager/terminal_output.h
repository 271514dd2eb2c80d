#pragma once

#include "packager/packager_output.h"

namespace platform {
class ConsoleDevice;
}

// The tool's output on the process's standard streams.
class TerminalOutput : public PackagerOutput {
public:
    // `console` is borrowed.
    explicit TerminalOutput(platform::ConsoleDevice& console) : console_(console) {}

    void print(std::string_view line) override;
    void warn(std::string_view line) override;
    void progress(std::string_view step, int percent) override;
    bool finish() override;

private:
    void clearProgress();

    platform::ConsoleDevice& console_;
    bool showsProgress_ = false;  // there is a progress line on the terminal
};
