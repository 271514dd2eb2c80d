#include "platform/console_device.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_console_device.h"

namespace {

TEST(ConsoleDeviceTest, ReplacesControlAndDirectionCharactersInBothOutputs) {
    MemoryConsoleDevice device;
    EXPECT_TRUE(
        device.write("a\x1B[2Jb\xE2\x80\xAE"
                     "c\n\td"));
    EXPECT_TRUE(
        device.writeError("e\xC2\x9B"
                          "2Jf\n"));
    EXPECT_EQ("a?[2Jb?c\n\td", device.output);
    EXPECT_EQ("e?2Jf\n", device.errors);
}

TEST(ConsoleDeviceTest, ReplacesThemInAPipeAndOnATerminalAlike) {
    for (const int columns : {0, 80}) {
        MemoryConsoleDevice device;
        device.columns = columns;
        EXPECT_TRUE(device.write("\x1B"));
        EXPECT_EQ("?", device.output);
    }
}

TEST(ConsoleDeviceTest, PassesTheCommandsOfTheProgramOn) {
    MemoryConsoleDevice device;
    EXPECT_TRUE(device.writeControl("\r\x1B[1m"));
    EXPECT_EQ("\r\x1B[1m", device.output);
}

TEST(ConsoleDeviceTest, ReportsALostOutput) {
    MemoryConsoleDevice device;
    device.outputLimit = 0;
    device.errorFails = true;
    EXPECT_FALSE(device.write("a"));
    EXPECT_FALSE(device.writeError("a"));
    EXPECT_FALSE(device.writeControl("\r"));
}

}  // namespace
