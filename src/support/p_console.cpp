#include "support/p_console.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "base/text_functions.h"

namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr char kAlert[] = "*** ALERT! ";
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr int kMessageCapacity = PConsole::kMessageLimit + 1;

// Empty when the time can't be had.
std::string stampOf(PConsole::Clock clock) {
    platform::LocalTime time;
    if (!clock(time) || time.month < 1 || time.month > 12) {
        return {};
    }
    return OUtils::formatText("[%i/%s/%i|%02i:%02i:%02i]", time.year, kMonths[time.month - 1], time.day,
                              time.hour, time.minute, time.second);
}

}  // namespace

int PConsole::open(std::string_view /*path*/, int /*mode*/) {
    return -1;
}

int PConsole::close() {
    return -1;
}

int PConsole::setDestination(void* /*target*/) {
    return -1;
}

int PConsole::write(const char* /*text*/, std::int32_t /*length*/) {
    return 0;
}

int PConsole::clear() {
    return -1;
}

void PConsole::printLine(bool wideNumber, std::string_view message) {
    std::string prefix;
    const std::uint32_t options = options_;
    if ((options & kLineNumbers) != 0) {
        const std::int32_t number = lineNumber_++;
        prefix = OUtils::formatText(wideNumber ? "%4i:  " : "%i:  ", number);
    }
    if ((options & kTimeStamps) != 0) {
        prefix += stampOf(clock_) + "    ";
    }
    writeText(prefix);
    writeText(message);
    writeText(kLineEnd);
}

void PConsole::print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    printFormatted(format, arguments);
    va_end(arguments);
}

void PConsole::printFormatted(const char* format, va_list arguments) {
    if (!enabled_) {
        return;
    }
    char message[kMessageCapacity] = "";
    std::vsnprintf(message, sizeof message, format, arguments);
    printLine(true, message);
}

void PConsole::printAlert(const char* format, ...) {
    if (!enabled_) {
        return;
    }
    char message[kMessageCapacity] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    printLine(true, kAlert + std::string(message));
}

void PConsole::printNumber(std::int32_t value) {
    if (enabled_) {
        printLine(false, std::to_string(value));
    }
}

void PConsole::printText(std::string_view text) {
    if (enabled_) {
        printLine(true, text);
    }
}

void PConsole::printRaw(std::string_view text) {
    if (enabled_) {
        writeText(text);
    }
}
