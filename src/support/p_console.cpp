#include "support/p_console.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/text_functions.h"

namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr char kAlert[] = "*** ALERT! ";
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr int kMessageCapacity = PConsole::kMessageLimit + 1;

void formatStamp(PConsole::Clock clock, char* out, std::int64_t capacity) {
    platform::LocalTime time;
    if (!clock(time) || time.month < 1 || time.month > 12) {
        return;
    }
    OUtils::formatText(out, capacity, "[%i/%s/%i|%02i:%02i:%02i]", time.year, kMonths[time.month - 1],
                       time.day, time.hour, time.minute, time.second);
}

}  // namespace

int PConsole::open(const char* /*path*/, int /*mode*/) {
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

void PConsole::printLine(bool wideNumber, const char* message) {
    char prefix[128] = "";
    const std::uint32_t options = options_;
    if ((options & kLineNumbers) != 0) {
        const std::int32_t number = lineNumber_++;
        OUtils::formatText(prefix, sizeof prefix, wideNumber ? "%4i:  " : "%i:  ", number);
    }
    if ((options & kTimeStamps) != 0) {
        const std::size_t length = std::strlen(prefix);
        formatStamp(clock_, prefix + length, static_cast<std::int64_t>(sizeof prefix - length));
        std::strncat(prefix, "    ", sizeof prefix - std::strlen(prefix) - 1);
    }
    write(prefix, static_cast<std::int32_t>(std::strlen(prefix)));
    write(message, static_cast<std::int32_t>(std::strlen(message)));
    write(kLineEnd, static_cast<std::int32_t>(std::strlen(kLineEnd)));
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
    char message[sizeof kAlert - 1 + kMessageCapacity] = "";
    std::memcpy(message, kAlert, sizeof kAlert);
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message + sizeof kAlert - 1, kMessageCapacity, format, arguments);
    va_end(arguments);
    printLine(true, message);
}

void PConsole::printNumber(std::int32_t value) {
    if (enabled_) {
        char text[16];
        OUtils::formatText(text, sizeof text, "%i", value);
        printLine(false, text);
    }
}

void PConsole::printText(const char* text) {
    if (enabled_) {
        printLine(true, text == nullptr ? "" : text);
    }
}

void PConsole::printRaw(const char* text) {
    if (enabled_ && text != nullptr) {
        write(text, static_cast<std::int32_t>(std::strlen(text)));
    }
}
