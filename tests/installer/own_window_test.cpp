#include "installer/own_window.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_console_device.h"

namespace {

struct OwnWindowTest : testing::Test {
    OwnWindowTest() {
        terminal.inputIsTerminal = true;
        terminal.columns = 80;
        terminal.isOwnWindow = true;
        terminal.keys = {'x', 'y'};
    }
    MemoryConsoleDevice terminal;
};

TEST_F(OwnWindowTest, StaysUntilAKeyIsPressed) {
    keepOwnWindow(terminal);
    EXPECT_EQ(terminal.output, "\nPress any key to close this window...");
    EXPECT_EQ(terminal.keysRead, 1);
    EXPECT_TRUE(terminal.echo);
}

TEST_F(OwnWindowTest, IsNoMatterWhereOtherProgramsShareIt) {
    terminal.isOwnWindow = false;
    keepOwnWindow(terminal);
    EXPECT_EQ(terminal.output, "");
    EXPECT_EQ(terminal.keysRead, 0);
}

TEST_F(OwnWindowTest, IsNotWaitedForWhereNoKeyCanBePressed) {
    terminal.inputIsTerminal = false;
    keepOwnWindow(terminal);
    EXPECT_EQ(terminal.keysRead, 0);
}

}  // namespace
