#include "packager/terminal_output.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_console_device.h"

namespace {

TEST(TerminalOutput, KeepsResultsAndErrorsApart) {
    MemoryConsoleDevice device;
    TerminalOutput output(device);
    output.print("result");
    output.warn("problem");
    EXPECT_TRUE(output.finish());
    EXPECT_EQ(device.output, "result\n");
    EXPECT_EQ(device.errors, "problem\n");
}

TEST(TerminalOutput, ShowsProgressOnATerminalOnly) {
    MemoryConsoleDevice device;
    TerminalOutput output(device);
    output.progress("Reading", 5);
    EXPECT_EQ(device.output, "");
    device.columns = 80;
    output.progress("Reading", 6);
    EXPECT_TRUE(device.output.starts_with("\rReading: 6 %")) << device.output;
    output.print("done");
    EXPECT_TRUE(output.finish());
    EXPECT_TRUE(device.output.ends_with(" \rdone\n")) << device.output;
}

TEST(TerminalOutput, PassesNoCommandOfADocumentToTheTerminal) {
    MemoryConsoleDevice device;
    TerminalOutput output(device);
    output.print("a\x1B[2Jb\r");
    output.warn(
        "a\xE2\x80\xAE"
        "b");
    EXPECT_EQ(device.output, "a?[2Jb\r\n");
    EXPECT_EQ(device.errors, "a?b\n");
}

TEST(TerminalOutput, NoticesALostOutput) {
    MemoryConsoleDevice device;
    TerminalOutput output(device);
    device.outputLimit = 0;
    output.print("result");
    EXPECT_FALSE(output.finish());
}

}  // namespace
