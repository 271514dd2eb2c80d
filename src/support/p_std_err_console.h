#pragma once

#include "platform/console_device.h"
#include "support/p_console.h"

// A console on standard error.
class PStdErrConsole : public PConsole {
public:
    // `device` is borrowed.
    explicit PStdErrConsole(platform::ConsoleDevice& device) : device_(device) {}

    // The text ends at its first zero byte, if there is one. -1 once the output has failed.
    int write(const char* text, std::int32_t length) override;

private:
    platform::ConsoleDevice& device_;
};
