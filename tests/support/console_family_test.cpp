#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "fakes/fake_console.h"
#include "fakes/fake_console_device.h"
#include "support/outils_cprint.h"
#include "support/p_buf_console.h"
#include "support/p_multi_console.h"
#include "support/p_std_err_console.h"
#include "support/p_std_out_console.h"

namespace {

TEST(PStdConsoleTest, PrintsOnItsStream) {
    FakeConsoleDevice device;
    PStdOutConsole out(device);
    PStdErrConsole err(device);
    out.setOptions(0);
    err.setOptions(0);
    out.print("out");
    err.print("err");
    EXPECT_EQ("out\r\n", device.output);
    EXPECT_EQ("err\r\n", device.errors);
}

TEST(PStdConsoleTest, EndsTheTextAtAZeroByteOrItsLength) {
    FakeConsoleDevice device;
    PStdOutConsole out(device);
    PStdErrConsole err(device);
    EXPECT_EQ(0, out.write("abcdef", 3));
    EXPECT_EQ(0, out.write("d\0x", 3));
    EXPECT_EQ(0, out.write("x", 0));
    EXPECT_EQ(0, err.write("abcdef", 3));
    EXPECT_EQ("abcd", device.output);
    EXPECT_EQ("abc", device.errors);
}

TEST(PStdConsoleTest, TellsAFailedOutput) {
    FakeConsoleDevice device;
    device.outputFails = true;
    device.errorFails = true;
    EXPECT_EQ(-1, PStdOutConsole(device).write("x", 1));
    EXPECT_EQ(-1, PStdErrConsole(device).write("x", 1));
}

// Answers with a status of its own and notes in which order it was asked.
class Member : public PConsole {
public:
    Member(std::string& log, char name, int status) : log_(log), name_(name), status_(status) {}
    int open(const char* path, int mode) override {
        log_ += std::string("open") + name_ + path + std::to_string(mode) + " ";
        return 0;
    }
    int close() override {
        log_ += std::string("close") + name_ + " ";
        return 0;
    }
    int write(const char* text, std::int32_t length) override {
        log_ += std::string("write") + name_ + std::string(text, static_cast<std::size_t>(length)) + " ";
        return status_;
    }

private:
    std::string& log_;
    char name_;
    int status_;
};

TEST(PMultiConsoleTest, AsksItsMembersInOrder) {
    std::string log;
    Member first(log, '1', 11);
    Member second(log, '2', 22);
    PMultiConsole console;
    console.add(&first);
    console.add(&second);
    EXPECT_EQ(-1, console.open("p", 7));
    EXPECT_EQ(22, console.write("abc", 2));
    EXPECT_EQ(-1, console.close());
    EXPECT_EQ("open1p7 open2p7 write1ab write2ab close1 close2 ", log);
}

TEST(PMultiConsoleTest, PrintsOneLineToAllWithOnePrefix) {
    FakeConsole first;
    FakeConsole second;
    PMultiConsole console;
    console.setOptions(PConsole::kLineNumbers);
    console.add(&first);
    console.add(&second);
    console.print("x");
    EXPECT_EQ("   0:  x\r\n", first.text());
    EXPECT_EQ("   0:  x\r\n", second.text());
    EXPECT_EQ(0, first.getLineNumber());
}

TEST(PMultiConsoleTest, DoesNothingWithoutMembers) {
    PMultiConsole console;
    EXPECT_EQ(-1, console.open("p", 0));
    EXPECT_EQ(0, console.write("x", 1));
    EXPECT_EQ(-1, console.close());
    console.print("x");
    EXPECT_EQ(1, console.getLineNumber());
}

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

TEST(ColourPrintTest, DropsTheSequencesWithoutColour) {
    FakeConsoleDevice device;
    device.columns = 80;
    outils_cprint(0, "a\x1B[31mred\x1B[0m b", device);
    EXPECT_EQ("ared b", device.output);
}

TEST(ColourPrintTest, PassesThemOnToATerminalOnly) {
    FakeConsoleDevice terminal;
    terminal.columns = 80;
    outils_cprint(1, "a\x1B[31mred\x1B[0m", terminal);
    EXPECT_EQ("a\x1B[31mred\x1B[0m", terminal.output);
    FakeConsoleDevice pipe;
    outils_cprint(1, "a\x1B[31mred\x1B[0m", pipe);
    EXPECT_EQ("ared", pipe.output);
}

TEST(ColourPrintTest, TellsASequenceWithoutItsEnd) {
    for (const char* text : {"a\x1B[31", "a\x1B[1111111111111111111111m", "a\x1B"}) {
        FakeConsoleDevice device;
        outils_cprint(0, text, device);
        EXPECT_EQ("aoutils_cprint: Incorrect ESC length!", device.output);
    }
}

TEST(ColourPrintTest, TellsAnOutputThatHasFailed) {
    FakeConsoleDevice device;
    device.outputFails = true;
    outils_cprint(0, "a", device);
    EXPECT_EQ("outils_cprint: Invalid handle!", device.errors);
}

TEST(ColourPrintTest, TakesNullAsEmpty) {
    FakeConsoleDevice device;
    outils_cprint(1, nullptr, device);
    EXPECT_EQ("", device.output);
    EXPECT_EQ("", device.errors);
}

}  // namespace
