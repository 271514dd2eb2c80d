#include "platform/clock.h"

#include <windows.h>

namespace platform {

bool localTime(LocalTime& outTime) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    outTime.year = now.wYear;
    outTime.month = now.wMonth;
    outTime.day = now.wDay;
    outTime.hour = now.wHour;
    outTime.minute = now.wMinute;
    outTime.second = now.wSecond;
    return true;
}

std::uint64_t monotonicMilliseconds() {
    LARGE_INTEGER frequency;
    LARGE_INTEGER count;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    // In two parts, so that the product can't overflow however long the machine runs.
    const std::int64_t seconds = count.QuadPart / frequency.QuadPart;
    const std::int64_t rest = count.QuadPart % frequency.QuadPart;
    return static_cast<std::uint64_t>(seconds * 1000 + rest * 1000 / frequency.QuadPart);
}

void sleepMilliseconds(std::uint32_t milliseconds) {
    Sleep(milliseconds);
}

}  // namespace platform
