#include "platform/console_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/windows/child_program.h"

namespace {

using platform::ConsoleDevice;
using platform::ReadStatus;
using platform::systemConsole;
using testing::HasSubstr;

// Not a test: what the child of the next tests does.
TEST(ConsoleChild, DISABLED_answersEachLine) {
    ConsoleDevice& console = systemConsole();
    EXPECT_FALSE(console.isInputTerminal());
    EXPECT_FALSE(console.isOutputTerminal());
    int columns = 0;
    int rows = 0;
    EXPECT_FALSE(console.windowSize(columns, rows));
    std::string line;
    while (console.readLine(line, 100) == ReadStatus::kLine) {
        line.erase(std::remove(line.begin(), line.end(), '\n'), line.end());
        EXPECT_TRUE(console.write("<" + line + ">\n"));
    }
    EXPECT_TRUE(console.writeError("ended\n"));
}

// Not a test either.
TEST(ConsoleChild, DISABLED_isInterrupted) {
    ConsoleDevice& console = systemConsole();
    int key = 0;
    EXPECT_EQ(console.readKey(key), ReadStatus::kLine);
    console.interruptInput();
    console.interruptInput();
    std::string line;
    EXPECT_EQ(console.readLine(line, 100), ReadStatus::kInterrupted);
    console.write("key " + std::to_string(key) + "\n");
}

TEST(SystemConsole, TalksThroughPipesInTheTextFormOfTheSystem) {
    const ChildResult child = runChild("ConsoleChild.DISABLED_answersEachLine", "one\r\nz\xC3\xA9\n\nlast");
    EXPECT_EQ(child.exitCode, 0) << child.output;
    EXPECT_THAT(child.output, HasSubstr("<one>\r\n<z\xC3\xA9>\r\n<>\r\n<last>\r\n"));
    EXPECT_EQ(child.error, "ended\r\n");
}

TEST(SystemConsole, ReadsNothingMoreOnceInterruptedAndFlushesAtTheEnd) {
    const ChildResult child = runChild("ConsoleChild.DISABLED_isInterrupted", "Abc\r\n");
    EXPECT_EQ(child.exitCode, 0) << child.output;
    EXPECT_THAT(child.output, HasSubstr("key 65\r\n"));
}

}  // namespace
