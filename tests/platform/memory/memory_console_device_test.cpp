#include "platform/memory/memory_console_device.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using platform::ReadStatus;

class MemoryConsoleDeviceTest : public testing::Test {
protected:
    MemoryConsoleDevice console_;
    std::string line_ = "old";
    int key_ = 99;
};

TEST_F(MemoryConsoleDeviceTest, GivesItsScriptAndThenItsEnd) {
    console_.lines = {"abc", ""};
    console_.keys = {'y'};
    EXPECT_EQ(ReadStatus::kLine, console_.readLine(line_, 2));
    EXPECT_EQ("ab", line_);
    EXPECT_EQ(ReadStatus::kLine, console_.readLine(line_, 10));
    EXPECT_EQ("c\n", line_);
    EXPECT_EQ(ReadStatus::kLine, console_.readLine(line_, 10));
    EXPECT_EQ("\n", line_);
    EXPECT_EQ(ReadStatus::kEnd, console_.readLine(line_, 10));
    EXPECT_EQ("", line_);
    EXPECT_EQ(ReadStatus::kLine, console_.readKey(key_));
    EXPECT_EQ('y', key_);
    EXPECT_EQ(ReadStatus::kEnd, console_.readKey(key_));
    EXPECT_EQ(0, key_);
}

TEST_F(MemoryConsoleDeviceTest, GivesNothingAfterAnInterruption) {
    console_.lines = {"a"};
    console_.keys = {'y'};
    console_.interruptInput();
    EXPECT_EQ(ReadStatus::kInterrupted, console_.readLine(line_, 10));
    EXPECT_EQ("", line_);
    EXPECT_EQ(ReadStatus::kInterrupted, console_.readKey(key_));
    EXPECT_EQ(0, key_);
}

TEST_F(MemoryConsoleDeviceTest, FlushesTheQuestionBeforeARead) {
    console_.write("question");
    EXPECT_EQ("question", console_.pending);
    console_.readLine(line_, 10);
    EXPECT_EQ("", console_.pending);
    console_.write(" key");
    console_.readKey(key_);
    EXPECT_EQ("", console_.pending);
    EXPECT_EQ("question key", console_.output);
}

TEST_F(MemoryConsoleDeviceTest, FailsForGoodWhenItsOutputIsFull) {
    console_.outputLimit = 3;
    EXPECT_TRUE(console_.write("abc"));
    EXPECT_TRUE(console_.flush());
    EXPECT_FALSE(console_.write("d"));
    EXPECT_FALSE(console_.write(""));
    EXPECT_FALSE(console_.flush());
    EXPECT_EQ("abc", console_.output);
}

TEST_F(MemoryConsoleDeviceTest, DoesNotEchoWhileUnechoedInputLives) {
    {
        const platform::UnechoedInput unechoed(console_);
        EXPECT_FALSE(console_.echo);
        console_.write("secret");
    }
    EXPECT_TRUE(console_.echo);
    EXPECT_EQ("secret", console_.writtenUnechoed);
}

TEST_F(MemoryConsoleDeviceTest, HasAWindowWhenItsOutputIsATerminal) {
    int columns = 5;
    int rows = 5;
    EXPECT_FALSE(console_.windowSize(columns, rows));
    EXPECT_EQ(0, columns);
    EXPECT_EQ(0, rows);
    EXPECT_FALSE(console_.isOutputTerminal());
    EXPECT_FALSE(console_.isInputTerminal());
    console_.columns = 80;
    console_.rows = 25;
    console_.inputIsTerminal = true;
    EXPECT_TRUE(console_.windowSize(columns, rows));
    EXPECT_EQ(80, columns);
    EXPECT_EQ(25, rows);
    EXPECT_TRUE(console_.isOutputTerminal());
    EXPECT_TRUE(console_.isInputTerminal());
}

}  // namespace
