#include "platform/clock.h"

#include <cerrno>
#include <ctime>

namespace platform {

bool localTime(LocalTime& outTime) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    tzset();
    if (now == -1 || localtime_r(&now, &local) == nullptr) {
        return false;
    }
    outTime = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
               local.tm_hour,        local.tm_min,     local.tm_sec};
    return true;
}

std::uint64_t monotonicMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
}

void sleepMilliseconds(std::uint32_t milliseconds) {
    timespec left{milliseconds / 1000, static_cast<long>(milliseconds % 1000) * 1000000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

}  // namespace platform
