#include "support/p_std_err_console.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_console_device.h"

namespace {

TEST(PStdErrConsoleTest, PrintsOnItsStreamAlone) {
    MemoryConsoleDevice device;
    PStdErrConsole console(device);
    console.setOptions(0);
    console.print("line");
    EXPECT_EQ("line\r\n", device.errors);
    EXPECT_EQ("", device.output);
    EXPECT_EQ("", device.pending);
}

TEST(PStdErrConsoleTest, EndsTheTextAtAZeroByteOrItsLength) {
    MemoryConsoleDevice device;
    PStdErrConsole console(device);
    EXPECT_EQ(0, console.write("abcdef", 3));
    EXPECT_EQ(0, console.write("d\0x", 3));
    EXPECT_EQ(0, console.write("x", 0));
    EXPECT_EQ("abcd", device.errors);
}

TEST(PStdErrConsoleTest, ReportsAFailedOutput) {
    MemoryConsoleDevice device;
    device.errorFails = true;
    EXPECT_EQ(-1, PStdErrConsole(device).write("x", 1));
}

}  // namespace
