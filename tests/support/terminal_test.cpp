#include "support/terminal.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/fake_console_device.h"
#include "fakes/fake_terminal.h"

namespace {

class SystemTerminalTest : public testing::Test {
protected:
    FakeConsoleDevice device_;
    SystemTerminal terminal_{device_};
    std::string line_ = "old";
    int key_ = 99;
};

TEST_F(SystemTerminalTest, HoldsItsOutputUntilFlush) {
    EXPECT_TRUE(terminal_.write("a"));
    EXPECT_EQ("", device_.output);
    EXPECT_TRUE(terminal_.flush());
    EXPECT_EQ("a", device_.output);
    EXPECT_FALSE(terminal_.outputFailed());
}

TEST_F(SystemTerminalTest, ShowsTheQuestionBeforeItWaitsForTheAnswer) {
    terminal_.write("question");
    terminal_.readLine(line_, 10);
    EXPECT_EQ("question", device_.output);
    terminal_.write(" key");
    terminal_.readKey(key_);
    EXPECT_EQ("question key", device_.output);
}

TEST_F(SystemTerminalTest, RemembersAFailedOutput) {
    device_.outputFails = true;
    EXPECT_FALSE(terminal_.write("a"));
    device_.outputFails = false;
    EXPECT_TRUE(terminal_.outputFailed());
}

TEST_F(SystemTerminalTest, NoticesAnOutputThatFailsAtTheFlushAheadOfARead) {
    terminal_.write("a");
    device_.outputFails = true;
    terminal_.readLine(line_, 10);
    EXPECT_TRUE(terminal_.outputFailed());
}

TEST_F(SystemTerminalTest, GivesALongLineInParts) {
    device_.lines = {"abcdef\n"};
    EXPECT_EQ(TerminalRead::Line, terminal_.readLine(line_, 4));
    EXPECT_EQ("abcd", line_);
    EXPECT_EQ(TerminalRead::Line, terminal_.readLine(line_, 4));
    EXPECT_EQ("ef\n", line_);
}

TEST_F(SystemTerminalTest, GivesNothingAtTheEndOfTheInput) {
    EXPECT_EQ(TerminalRead::End, terminal_.readLine(line_, 10));
    EXPECT_EQ("", line_);
    EXPECT_EQ(TerminalRead::End, terminal_.readKey(key_));
    EXPECT_EQ(0, key_);
}

TEST_F(SystemTerminalTest, GivesKeys) {
    device_.keys = {'y'};
    EXPECT_EQ(TerminalRead::Line, terminal_.readKey(key_));
    EXPECT_EQ('y', key_);
}

TEST_F(SystemTerminalTest, EchoesNothingAsLongAsItIsAskedTo) {
    {
        const UnechoedInput unechoed(terminal_);
        EXPECT_FALSE(device_.echo);
    }
    EXPECT_TRUE(device_.echo);
}

TEST_F(SystemTerminalTest, TellsAnInterruption) {
    device_.lines = {"a\n"};
    device_.keys = {'y'};
    terminal_.interruptInput();
    EXPECT_EQ(TerminalRead::Interrupted, terminal_.readLine(line_, 10));
    EXPECT_EQ("", line_);
    EXPECT_EQ(TerminalRead::Interrupted, terminal_.readKey(key_));
    EXPECT_EQ(0, key_);
}

TEST_F(SystemTerminalTest, TellsWhatTheDeviceIs) {
    int columns = 5;
    int rows = 5;
    EXPECT_FALSE(terminal_.windowSize(columns, rows));
    EXPECT_EQ(0, columns);
    EXPECT_EQ(0, rows);
    EXPECT_FALSE(terminal_.isOutputTerminal());
    EXPECT_FALSE(terminal_.isInputTerminal());
    device_.columns = 80;
    device_.rows = 25;
    device_.inputIsTerminal = true;
    EXPECT_TRUE(terminal_.windowSize(columns, rows));
    EXPECT_EQ(80, columns);
    EXPECT_EQ(25, rows);
    EXPECT_TRUE(terminal_.isOutputTerminal());
    EXPECT_TRUE(terminal_.isInputTerminal());
}

// The scripted terminal keeps the same contract.
TEST(FakeTerminalTest, GivesItsScriptAndThenItsEnd) {
    FakeTerminal terminal;
    terminal.lines = {"abc", ""};
    terminal.keys = {'y'};
    std::string line;
    int key = 0;
    EXPECT_EQ(TerminalRead::Line, terminal.readLine(line, 2));
    EXPECT_EQ("ab", line);
    EXPECT_EQ(TerminalRead::Line, terminal.readLine(line, 10));
    EXPECT_EQ("c\n", line);
    EXPECT_EQ(TerminalRead::Line, terminal.readLine(line, 10));
    EXPECT_EQ("\n", line);
    EXPECT_EQ(TerminalRead::End, terminal.readLine(line, 10));
    EXPECT_EQ("", line);
    EXPECT_EQ(TerminalRead::Line, terminal.readKey(key));
    EXPECT_EQ('y', key);
    EXPECT_EQ(TerminalRead::End, terminal.readKey(key));
    terminal.interruptInput();
    EXPECT_EQ(TerminalRead::Interrupted, terminal.readKey(key));
}

TEST(FakeTerminalTest, FailsWhenItsOutputIsFull) {
    FakeTerminal terminal;
    terminal.outputLimit = 3;
    EXPECT_TRUE(terminal.write("abc"));
    EXPECT_FALSE(terminal.outputFailed());
    EXPECT_FALSE(terminal.write("d"));
    EXPECT_FALSE(terminal.write(""));
    EXPECT_FALSE(terminal.flush());
    EXPECT_TRUE(terminal.outputFailed());
    EXPECT_EQ("abc", terminal.output);
}

}  // namespace
