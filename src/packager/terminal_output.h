#pragma once

#include "packager/packager_output.h"
#include "support/terminal.h"

// The tool's output on the process's standard streams.
class TerminalOutput : public PackagerOutput {
public:
    explicit TerminalOutput(platform::ConsoleDevice& device);

    void print(std::string_view line) override;
    void tell(std::string_view line) override;
    void progress(const char* step, int percent) override;
    bool finish() override;

private:
    void clearProgress();

    platform::ConsoleDevice& device_;
    SystemTerminal terminal_;
    bool showsProgress_ = false;  // a progress line stands on the terminal
};
