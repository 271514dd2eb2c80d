#pragma once

#include <windows.h>

#include <mutex>
#include <string>
#include <string_view>

namespace platform {

// One output stream: a console window, which takes UTF-16, or a file or pipe, which gets UTF-8 with the line
// ends of a text file here. For any thread.
class ConsoleOutput {
public:
    // Borrows the handle; null or invalid counts as an output that has failed.
    explicit ConsoleOutput(HANDLE handle);
    ConsoleOutput(const ConsoleOutput&) = delete;
    ConsoleOutput& operator=(const ConsoleOutput&) = delete;

    // Keeps the text until there is much of it. False once the output has failed.
    bool write(std::string_view text);
    bool flush();

    bool isTerminal() const { return terminal_; }
    // The visible part of the console, in cells; false when there is none.
    bool windowSize(int& outColumns, int& outRows) const;

private:
    bool flushLocked();
    bool writeToTerminal();
    bool writeToFile();

    HANDLE handle_;
    bool terminal_ = false;
    bool failed_ = false;
    std::string pending_;
    std::mutex mutex_;
};

}  // namespace platform
