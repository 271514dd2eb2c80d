#include "support/p_buf_console.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

std::vector<std::string> linesOf(PReadableConsole& console) {
    std::vector<std::string> lines;
    std::string line;
    for (int i = 0; i < console.getLineCount(); ++i) {
        EXPECT_TRUE(console.getLine(i, line));
        lines.push_back(line);
    }
    EXPECT_FALSE(console.getLine(console.getLineCount(), line));
    EXPECT_FALSE(console.getLine(-1, line));
    EXPECT_EQ("", line);
    return lines;
}

TEST(PBufConsoleTest, GivesItsLinesBack) {
    PBufConsole console;
    console.setOptions(0);
    console.print("one");
    console.print("%s", "");
    console.printRaw("pen");
    EXPECT_EQ((std::vector<std::string>{"one", ""}), linesOf(console));
    console.printRaw("ding\nnext\n");
    EXPECT_EQ((std::vector<std::string>{"one", "", "pending", "next"}), linesOf(console));
}

TEST(PBufConsoleTest, KeepsTheLastLines) {
    PBufConsole console(3);
    console.setOptions(0);
    for (int i = 0; i < 8; ++i) {
        console.print("%i", i);
    }
    EXPECT_EQ((std::vector<std::string>{"5", "6", "7"}), linesOf(console));
}

TEST(PBufConsoleTest, CutsALongLine) {
    PBufConsole console;
    console.setOptions(0);
    console.print("%s", std::string(510, 'a').c_str());
    console.print("%s", std::string(600, 'b').c_str());
    console.print("c");
    EXPECT_EQ((std::vector<std::string>{std::string(510, 'a'), std::string(510, 'b'), "c"}),
              linesOf(console));
}

TEST(PBufConsoleTest, ClearForgetsEverything) {
    PBufConsole console(2);
    console.printRaw("a\nb\nc\nd");
    EXPECT_EQ(0, console.clear());
    EXPECT_EQ(0, console.getLineCount());
    console.printRaw("e\nf\ng\n");
    EXPECT_EQ((std::vector<std::string>{"f", "g"}), linesOf(console));
}

TEST(PBufConsoleTest, HoldsOneLineAtLeast) {
    PBufConsole console(-5);
    console.printRaw("a\nb\n");
    EXPECT_EQ((std::vector<std::string>{"b"}), linesOf(console));
}

TEST(PBufConsoleTest, TakesLinesFromSeveralThreads) {
    PBufConsole console(100);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&console] {
            for (int line = 0; line < 200; ++line) {
                console.printRaw("abc\n");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::vector<std::string>(100, "abc"), linesOf(console));
}

}  // namespace
