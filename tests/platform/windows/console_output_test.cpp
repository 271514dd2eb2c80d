#include "platform/windows/console_output.h"

#include <gtest/gtest.h>

#include "platform/windows/pipe.h"

namespace {

using platform::ConsoleOutput;

TEST(PipeOutput, WritesLineEndsOfATextFileAndUtf8) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer());
    EXPECT_FALSE(output.isTerminal());
    EXPECT_TRUE(output.write("one\nz\xC3\xA9\r\n"));
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(pipe.take(), "one\r\nz\xC3\xA9\r\r\n");
}

TEST(PipeOutput, KeepsTextUntilItIsFlushed) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer());
    EXPECT_TRUE(output.write("text"));
    EXPECT_EQ(pipe.available(), 0U);
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(pipe.take(), "text");
}

TEST(PipeOutput, HandsOnLargeTextsByItself) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer());
    const std::string text(300000, 'x');
    EXPECT_TRUE(output.write(text));
    EXPECT_EQ(pipe.take(), text);
}

TEST(PipeOutput, ReportsThatNobodyReadsAnyMore) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer());
    pipe.closeReader();
    EXPECT_TRUE(output.write("text"));
    EXPECT_FALSE(output.flush());
    EXPECT_FALSE(output.write("more"));
    EXPECT_FALSE(output.flush());
}

TEST(NoOutput, HasFailedFromTheStart) {
    ConsoleOutput output(INVALID_HANDLE_VALUE);
    int columns = 0;
    int rows = 0;
    EXPECT_FALSE(output.write("text"));
    EXPECT_FALSE(output.flush());
    EXPECT_FALSE(output.windowSize(columns, rows));
}

}  // namespace
