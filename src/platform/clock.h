#pragma once

#include <cstdint>

namespace platform {

struct LocalTime {
    int year = 0;   // four digits
    int month = 0;  // 1 to 12
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// False when the local time can't be had.
bool localTime(LocalTime& outTime);

// Milliseconds since some fixed moment; never goes back.
std::uint64_t monotonicMilliseconds();

void sleepMilliseconds(std::uint32_t milliseconds);

}  // namespace platform
