#include "support/p_console.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "fakes/fake_console.h"

namespace {

bool afternoon(platform::LocalTime& out) {
    out = {2016, 11, 15, 3, 45, 50};
    return true;
}

bool noTime(platform::LocalTime& out) {
    out = {2016, 11, 15, 3, 45, 50};
    return false;
}

template <int Month>
bool firstOf(platform::LocalTime& out) {
    out = {1999, Month, 1, 23, 5, 9};
    return true;
}

// Keeps the single writes.
class WriteRecorder : public PConsole {
public:
    int write(const char* text, std::int32_t length) override {
        writes.emplace_back(text, static_cast<std::size_t>(length));
        return 0;
    }
    std::vector<std::string> writes;
};

TEST(PConsoleTest, WritesALineOfTheLogInThreeWrites) {
    WriteRecorder console;
    console.setClock(afternoon);
    console.print("Parsing %s arguments", "command line");
    EXPECT_EQ((std::vector<std::string>{"   0:  [2016/Nov/15|03:45:50]    ", "Parsing command line arguments",
                                        "\r\n"}),
              console.writes);
}

TEST(PConsoleTest, NumbersAndStampsEachMessageByDefault) {
    const PConsole console;
    EXPECT_EQ(3U, console.getOptions());
    EXPECT_EQ(0, console.getLineNumber());
    EXPECT_TRUE(console.isEnabled());
}

TEST(PConsoleTest, WritesAMessageWithoutPrefixWithoutOptions) {
    FakeConsole console;
    console.setOptions(0);
    console.print("bare");
    EXPECT_EQ("bare\r\n", console.text());
    EXPECT_EQ(0, console.getLineNumber());
}

TEST(PConsoleTest, EachOptionAddsItsPart) {
    FakeConsole console;
    console.setClock(afternoon);
    console.setOptions(PConsole::kLineNumbers);
    console.print("a");
    console.setOptions(PConsole::kTimeStamps);
    console.print("b");
    EXPECT_EQ("   0:  a\r\n[2016/Nov/15|03:45:50]    b\r\n", console.text());
    EXPECT_EQ(1, console.getLineNumber());
}

TEST(PConsoleTest, LeavesTheStampEmptyWithoutATime) {
    FakeConsole console;
    console.setOptions(3);
    console.setClock(noTime);
    console.print("a");
    console.setClock(firstOf<13>);
    console.print("b");
    EXPECT_EQ("   0:      a\r\n   1:      b\r\n", console.text());
}

TEST(PConsoleTest, NamesEachMonth) {
    const PConsole::Clock clocks[] = {firstOf<1>, firstOf<2>,  firstOf<3>,  firstOf<4>,
                                      firstOf<5>, firstOf<6>,  firstOf<7>,  firstOf<8>,
                                      firstOf<9>, firstOf<10>, firstOf<11>, firstOf<12>};
    std::string names;
    for (const PConsole::Clock clock : clocks) {
        FakeConsole console;
        console.setOptions(PConsole::kTimeStamps);
        console.setClock(clock);
        console.print("x");
        names += console.text().substr(6, 3);
        EXPECT_EQ("|23:05:09]    x\r\n", console.text().substr(11));
        EXPECT_EQ("/1", console.text().substr(9, 2));
    }
    EXPECT_EQ("JanFebMarAprMayJunJulAugSepOctNovDec", names);
}

TEST(PConsoleTest, TakesTheSystemsClockAgain) {
    FakeConsole console;
    console.setOptions(PConsole::kTimeStamps);
    console.setClock(noTime);
    console.setClock(nullptr);
    console.print("x");
    EXPECT_EQ('[', console.text()[0]);
}

TEST(PConsoleTest, CutsALongMessageAndStillEndsTheLine) {
    FakeConsole console;
    const std::string text(2000, 'm');
    console.print("%s", text.c_str());
    EXPECT_EQ(std::string(1023, 'm') + "\r\n", console.text());
    console.clear();
    console.print("%s", text.substr(0, 1023).c_str());
    EXPECT_EQ(std::string(1023, 'm') + "\r\n", console.text());
}

TEST(PConsoleTest, CountsMessagesAlsoWhenNothingIsWrittenAnywhere) {
    PConsole console;
    console.print("a");
    console.printText("b");
    console.printNumber(1);
    console.printAlert("c");
    EXPECT_EQ(4, console.getLineNumber());
}

TEST(PConsoleTest, DoesAndCountsNothingWhileDisabled) {
    FakeConsole console;
    console.setOptions(3);
    console.setEnabled(false);
    console.print("a");
    console.printAlert("a");
    console.printNumber(1);
    console.printText("a");
    console.printRaw("a");
    EXPECT_EQ(0, console.writes());
    EXPECT_EQ(0, console.getLineNumber());
    console.setEnabled(true);
    console.setOptions(PConsole::kLineNumbers);
    console.print("b");
    EXPECT_EQ("   0:  b\r\n", console.text());
}

TEST(PConsoleTest, PutsTheAlertBeforeTheMessage) {
    FakeConsole console;
    console.setOptions(PConsole::kLineNumbers);
    console.printAlert("%s!", "Fire");
    EXPECT_EQ("   0:  *** ALERT! Fire!\r\n", console.text());
    console.clear();
    console.setOptions(0);
    console.printAlert("%s", std::string(2000, 'm').c_str());
    EXPECT_EQ("*** ALERT! " + std::string(1023, 'm') + "\r\n", console.text());
}

TEST(PConsoleTest, WritesANumberWithItsNarrowLineNumber) {
    FakeConsole console;
    console.setOptions(PConsole::kLineNumbers);
    console.printNumber(-12);
    EXPECT_EQ("0:  -12\r\n", console.text());
}

TEST(PConsoleTest, WritesTextsUnformattedAndUncut) {
    FakeConsole console;
    const std::string text = "%s%n" + std::string(2000, 'm');
    console.printText(text);
    EXPECT_EQ(text + "\r\n", console.text());
    console.clear();
    console.printText("");
    EXPECT_EQ("\r\n", console.text());
    console.clear();
    console.setOptions(3);
    console.printRaw("%d as it is");
    console.printRaw("");
    EXPECT_EQ("%d as it is", console.text());
    EXPECT_EQ(0, console.getLineNumber());
}

TEST(PConsoleTest, GivesEachLineOfSeveralThreadsANumberOfItsOwn) {
    FakeConsole console;
    console.setOptions(PConsole::kLineNumbers);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&console] {
            for (int line = 0; line < 500; ++line) {
                console.print("x");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(2000, console.getLineNumber());
    EXPECT_EQ(6000, console.writes());
}

TEST(PConsoleTest, ByItselfHasNothingToOpen) {
    PConsole console;
    EXPECT_EQ(-1, console.open("x", 0));
    EXPECT_EQ(-1, console.close());
    EXPECT_EQ(-1, console.setDestination(nullptr));
    EXPECT_EQ(-1, console.clear());
    EXPECT_EQ(0, console.write("x", 1));
}

}  // namespace
