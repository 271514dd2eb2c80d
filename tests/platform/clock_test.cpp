#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

TEST(ClockTest, LocalTimeIsTheCurrentTime) {
    const std::time_t before = std::time(nullptr);
    platform::LocalTime local;
    ASSERT_TRUE(platform::localTime(local));
    const std::time_t after = std::time(nullptr);
    std::tm fields{};
    fields.tm_year = local.year - 1900;
    fields.tm_mon = local.month - 1;
    fields.tm_mday = local.day;
    fields.tm_hour = local.hour;
    fields.tm_min = local.minute;
    fields.tm_sec = local.second;
    fields.tm_isdst = -1;
    const std::time_t told = std::mktime(&fields);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
}

TEST(ClockTest, SleepLastsAtLeastAsLongAsAsked) {
    const std::uint64_t start = platform::monotonicMilliseconds();
    platform::sleepMilliseconds(30);
    // The two clocks may tick in steps of a system timer.
    EXPECT_GE(platform::monotonicMilliseconds() - start + 16, 30U);
}

TEST(ClockTest, MonotonicTimeNeverGoesBack) {
    std::uint64_t last = platform::monotonicMilliseconds();
    for (int i = 0; i < 10000; ++i) {
        const std::uint64_t now = platform::monotonicMilliseconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

}  // namespace
