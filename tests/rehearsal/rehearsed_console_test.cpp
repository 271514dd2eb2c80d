#include "rehearsal/rehearsed_console.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

TEST(RehearsedConsoleTest, KeepsBothStreamsInOneOrder) {
    RehearsedConsole console;
    console.write("a\n");
    console.writeError("b\n");
    console.write("c");
    EXPECT_EQ(console.takeLines(), (Lines{"a", "b", "c"}));
    EXPECT_EQ(console.takeLines(), Lines());
}

TEST(RehearsedConsoleTest, ShowsTheLastStateOfALine) {
    RehearsedConsole console;
    console.writeControl("10%\r20%\rdone  \n\n\r      \r\nnext\n");
    EXPECT_EQ(console.takeLines(), (Lines{"done", "next"}));
}

TEST(RehearsedConsoleTest, GivesItsTextOnceByteByByte) {
    RehearsedConsole console;
    console.writeControl("10%\r20%\n\n");
    EXPECT_EQ(console.takeText(), "10%\r20%\n\n");
    EXPECT_EQ(console.takeText(), "");
    EXPECT_EQ(console.takeLines(), Lines());
}

}  // namespace
