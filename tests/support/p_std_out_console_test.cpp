#include "support/p_std_out_console.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_console_device.h"

namespace {

TEST(PStdOutConsoleTest, PrintsOnItsStreamAlone) {
    MemoryConsoleDevice device;
    PStdOutConsole console(device);
    console.setOptions(0);
    console.print("line");
    EXPECT_EQ("line\r\n", device.output);
    EXPECT_EQ("", device.errors);
    EXPECT_EQ("", device.pending);
}

TEST(PStdOutConsoleTest, EndsTheTextAtAZeroByteOrItsLength) {
    MemoryConsoleDevice device;
    PStdOutConsole console(device);
    EXPECT_EQ(0, console.write("abcdef", 3));
    EXPECT_EQ(0, console.write("d\0x", 3));
    EXPECT_EQ(0, console.write("x", 0));
    EXPECT_EQ("abcd", device.output);
}

TEST(PStdOutConsoleTest, ReportsAFailedOutput) {
    MemoryConsoleDevice device;
    device.outputLimit = 0;
    EXPECT_EQ(-1, PStdOutConsole(device).write("x", 1));
}

}  // namespace
