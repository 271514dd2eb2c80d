#include "ui/console/progress_line.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_console_device.h"

namespace {

constexpr std::int64_t kMegabyte = 1'000'000;

struct ProgressLineTest : testing::Test {
    ProgressLineTest() { terminal.columns = 40; }

    std::string shown(std::int64_t done, std::int64_t total) {
        terminal.output.clear();
        line.show(done, total);
        return terminal.output;
    }
    void wait(std::uint64_t milliseconds) { now += milliseconds; }

    MemoryConsoleDevice terminal;
    std::uint64_t now = 5000;
    ProgressLine line{terminal, [this] { return now; }};
};

TEST_F(ProgressLineTest, ShowsPercentRateAndName) {
    line.begin("movie.bin");
    wait(2000);
    EXPECT_EQ(shown(500 * kMegabyte, 1000 * kMegabyte), "\r49 %  250 MB/s  movie.bin\r");
    EXPECT_EQ(terminal.pending, "");
}

TEST_F(ProgressLineTest, LeavesNothingBehind) {
    line.begin("movie.bin");
    wait(2000);
    const std::size_t width = shown(kMegabyte, 10 * kMegabyte).size() - 2;
    EXPECT_EQ(shown(10 * kMegabyte, 10 * kMegabyte), "\r" + std::string(width, ' ') + "\r");
    EXPECT_EQ(shown(10 * kMegabyte, 10 * kMegabyte), "");
}

TEST_F(ProgressLineTest, IsSilentForASecond) {
    line.begin("movie.bin");
    wait(999);
    EXPECT_EQ(shown(1, 2), "");
    line.end();
    EXPECT_EQ(terminal.output, "");
}

TEST_F(ProgressLineTest, ChangesAFewTimesInASecond) {
    line.begin("movie.bin");
    wait(1000);
    EXPECT_NE(shown(1, 10), "");
    wait(199);
    EXPECT_EQ(shown(2, 10), "");
    wait(1);
    EXPECT_NE(shown(3, 10), "");
}

TEST_F(ProgressLineTest, CoversALongerLineBeforeIt) {
    line.begin("x");
    wait(1000);
    EXPECT_EQ(shown(100 * kMegabyte, 1000 * kMegabyte), "\r9 %  100 MB/s  x\r");
    wait(100000);
    EXPECT_EQ(shown(200 * kMegabyte, 1000 * kMegabyte), "\r19 %  1 MB/s  x \r");
}

TEST_F(ProgressLineTest, KeepsTheEndOfANameThatIsTooLong) {
    line.begin(std::string(50, 'a') + "end");
    wait(1000);
    const std::string text = shown(1, 10);
    EXPECT_EQ(text.size(), 39U + 2U);
    EXPECT_TRUE(text.ends_with("aend\r"));
}

TEST_F(ProgressLineTest, ShowsHostileNamesHarmlessly) {
    line.begin("a\x1B[2Jb");
    wait(1000);
    EXPECT_TRUE(shown(1, 10).ends_with("a?[2Jb\r"));
}

TEST_F(ProgressLineTest, WritesNothingElsewhere) {
    terminal.columns = 0;
    line.begin("movie.bin");
    wait(2000);
    EXPECT_EQ(shown(1, 10), "");
    line.end();
    EXPECT_EQ(terminal.output, "");
}

TEST_F(ProgressLineTest, EmptyAndHugeAmountsAreNoProblem) {
    line.begin("x");
    wait(1000);
    EXPECT_EQ(shown(0, 0), "");
    EXPECT_EQ(shown(-1, 0), "\r0 %  0 MB/s  x\r");
    wait(1000);
    EXPECT_TRUE(shown(INT64_MAX / 2, INT64_MAX).starts_with("\r49 %"));
}

}  // namespace
