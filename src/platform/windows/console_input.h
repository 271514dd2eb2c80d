#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/console_device.h"
#include "platform/windows/background_reader.h"
#include "platform/windows/wide_text.h"

namespace platform {

// Reads single keys as long as it lives: no line editing, no echo, Ctrl-C a key like any other.
class RawConsoleMode {
public:
    // Does nothing when the handle is not a console.
    explicit RawConsoleMode(HANDLE console);
    ~RawConsoleMode();
    RawConsoleMode(const RawConsoleMode&) = delete;
    RawConsoleMode& operator=(const RawConsoleMode&) = delete;

private:
    HANDLE console_;
    DWORD mode_ = 0;
    bool changed_ = false;
};

// One input stream: a console, a pipe or a file. Bytes are UTF-8, line ends become line feeds. Read by one
// thread at a time, interrupted by any.
class ConsoleInput {
public:
    // Borrows the handle; null or invalid counts as an input at its end.
    explicit ConsoleInput(HANDLE handle);
    ConsoleInput(const ConsoleInput&) = delete;
    ConsoleInput& operator=(const ConsoleInput&) = delete;

    // As ConsoleDevice's, without a flush of any output.
    ReadStatus readLine(std::string& outLine, std::size_t maxBytes);
    ReadStatus readKey(int& outKey);
    void beginKeys();
    void endKeys();
    void interrupt();
    bool isTerminal() const { return kind_ == Kind::kConsole; }

private:
    enum class Kind { kNone, kConsole, kStream, kFile };

    static Kind kindOf(HANDLE handle);
    ReadStatus fill();
    ReadStatus readConsoleText(std::string& outBytes);
    void appendTranslated(const std::string& bytes);
    ReadStatus waitForConsoleKey();
    bool takeKeyEvent();
    void wakeConsoleRead();
    std::size_t unread() const { return text_.size() - position_; }

    HANDLE handle_;
    Kind kind_;
    std::string text_;  // translated, with the part before position_ given out
    std::size_t position_ = 0;
    bool heldReturn_ = false;  // a carriage return came last; the next byte decides its meaning
    bool ended_ = false;
    std::optional<RawConsoleMode> rawMode_;  // from beginKeys to endKeys
    std::string keys_;                       // bytes of a pressed key that are still to be given out
    wchar_t highSurrogate_ = 0;
    std::atomic<bool> interrupted_{false};
    std::atomic<bool> readingConsole_{false};
    Handle interruptEvent_;    // set for good by the first interrupt
    BackgroundReader stream_;  // does the reading of kStream
};

}  // namespace platform
