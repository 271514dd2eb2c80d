#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <string_view>

#include "base/errors.h"
#include "platform/clock.h"

// The sink of diagnostic text. The formatting is done here, once; derived classes only write bytes. This
// class itself writes nothing. Several threads may print through one object; the three writes of a line
// (prefix, message, line end) may then interleave with those of another line.
class PConsole {
public:
    enum Options : std::uint32_t {
        kLineNumbers = 1,  // each message begins with the line number
        kTimeStamps = 2,   // each message begins with the time stamp
    };
    // A message of print and printAlert is cut to this many bytes.
    static constexpr int kMessageLimit = 1023;

    // Gives the local time; false when it can't be had.
    using Clock = bool (*)(platform::LocalTime& outTime);

    PConsole() = default;
    PConsole(const PConsole&) = delete;
    PConsole& operator=(const PConsole&) = delete;
    virtual ~PConsole() = default;

    // The meaning of both and of the results is the derived class's; -1 here.
    virtual int open(std::string_view path, int mode);
    virtual int close();
    // A target other than a path, such as a window; -1 here.
    virtual int setDestination(void* target);
    // Writes `length` bytes as they are. 0 or an error number.
    virtual int write(const char* text, std::int32_t length);
    // Forgets the text written so far, where that can be done; -1 here.
    virtual int clear();

    // One line: prefix, the message formatted as by printf, CR LF. Nothing happens, and nothing is counted,
    // while the console is disabled.
    void print(const char* format, ...) TANDREL_PRINTF(2, 3);
    // The same for a function that has taken the arguments itself.
    void printFormatted(const char* format, va_list arguments);
    // The same with "*** ALERT! " before the message.
    void printAlert(const char* format, ...) TANDREL_PRINTF(2, 3);
    void printNumber(std::int32_t value);
    // One line with a text that isn't formatted, and so isn't cut either.
    void printText(std::string_view text);
    // The text alone, without prefix and line end.
    void printRaw(std::string_view text);

    void setEnabled(bool enabled) { enabled_ = enabled; }
    bool isEnabled() const { return enabled_; }
    void setOptions(std::uint32_t options) { options_ = options; }
    std::uint32_t getOptions() const { return options_; }
    // The number of the next line; starts at 0.
    std::int32_t getLineNumber() const { return lineNumber_; }
    // Null takes the system's clock again.
    void setClock(Clock clock) { clock_ = clock == nullptr ? platform::localTime : clock; }

private:
    void printLine(bool wideNumber, std::string_view message);
    void writeText(std::string_view text) { write(text.data(), static_cast<std::int32_t>(text.size())); }

    std::atomic<std::int32_t> lineNumber_{0};
    std::atomic<bool> enabled_{true};
    std::uint32_t options_ = kLineNumbers | kTimeStamps;
    Clock clock_ = platform::localTime;
};
