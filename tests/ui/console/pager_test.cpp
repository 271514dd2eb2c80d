#include "ui/console/pager.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <string_view>

#include "platform/memory/memory_console_device.h"

namespace {

constexpr const char* kPause = "\nPress ENTER for the next page...";

struct PagerTest : testing::Test {
    MemoryConsoleDevice terminal;
    bool cancelled = false;
    int pauses = 0;
    std::deque<PageTurn> turns;  // then the next page each time
    std::function<void()> duringPause;

    std::string print(const std::string& text, bool quiet = false) {
        Pager pager(
            terminal, quiet,
            [this](std::string_view question) {
                ++pauses;
                terminal.output += question;
                if (duringPause) {
                    duringPause();
                }
                if (turns.empty()) {
                    return PageTurn::kNext;
                }
                const PageTurn turn = turns.front();
                turns.pop_front();
                return turn;
            },
            [this] { return cancelled; });
        pager.print(text);
        return terminal.output;
    }
    void open(int rows) {
        terminal.columns = 80;
        terminal.rows = rows;
    }
};

const std::string kNextPage = std::string(kPause) + "\n\n\n";

TEST_F(PagerTest, PrintsTheWholeTextWithoutAWindow) {
    EXPECT_EQ(print("a\nb\nc\n"), "a\nb\nc\n");
    EXPECT_EQ(pauses, 0);
    EXPECT_GT(terminal.flushes, 0);
}

TEST_F(PagerTest, PrintsTheWholeTextInAWindowOfTwoRows) {
    open(2);
    EXPECT_EQ(print("a\nb\nc\n"), "a\nb\nc\n");
    EXPECT_EQ(pauses, 0);
}

TEST_F(PagerTest, AsksInOtherWords) {
    open(3);
    Pager pager(
        terminal, false,
        [this](std::string_view question) {
            terminal.output += question;
            return PageTurn::kNext;
        },
        [] { return false; });
    pager.setQuestion("weiter?");
    pager.print("a\nb\n");
    EXPECT_NE(terminal.output.find("a\n\nweiter?\n\n\n"), std::string::npos);
    EXPECT_EQ(terminal.output.find("ENTER"), std::string::npos);
}

TEST_F(PagerTest, StopsAfterEachPage) {
    open(4);  // pages of two lines
    EXPECT_EQ(print("a\nb\nc\nd\ne"), "a\nb\n" + kNextPage + "c\nd\n" + kNextPage + "e");
    EXPECT_EQ(pauses, 2);  // 9 bytes less one leave nothing over
}

TEST_F(PagerTest, DecidesAboutTheClosingPauseByTheCountOfBytes) {
    open(4);
    EXPECT_EQ(print("ab"), "ab" + kNextPage);
    terminal.output.clear();
    EXPECT_EQ(print("abc"), "abc");
    terminal.output.clear();
    EXPECT_EQ(print("a\nb\n"), "a\nb\n" + kNextPage + kNextPage);
}

TEST_F(PagerTest, GoesBackByOnePage) {
    open(4);
    turns = {PageTurn::kNext, PageTurn::kBack, PageTurn::kNext};
    EXPECT_EQ(print("a\nb\nc\nd\ne"), "a\nb\n" + kNextPage + "c\nd\n" + kNextPage + "a\nb\n" + kNextPage +
                                          "c\nd\n" + kNextPage + "e");
}

TEST_F(PagerTest, ShowsTheFirstPageAgainWhereNoneIsBeforeIt) {
    open(4);
    turns = {PageTurn::kBack};
    EXPECT_EQ(print("a\nb\nc"), "a\nb\n" + kNextPage + "a\nb\n" + kNextPage + "c");
}

TEST_F(PagerTest, GoesToTheEndWithoutAnotherPause) {
    open(4);
    turns = {PageTurn::kEnd};
    EXPECT_EQ(print("a\nb\nc\nd\ne\nf"), "a\nb\n" + kNextPage + "c\nd\ne\nf");
    EXPECT_EQ(pauses, 1);
}

TEST_F(PagerTest, LosesNothingWhenTheWindowGoesAwayOnTheWayBack) {
    open(3);
    turns = {PageTurn::kBack};
    duringPause = [this] { terminal.columns = 0; };
    EXPECT_EQ(print("a\nb\n"), "a\n" + kNextPage + "a\nb\n");
}

TEST_F(PagerTest, NeverStopsAQuietRun) {
    open(4);
    EXPECT_EQ(print("a\nb\nc\nde", true), "a\nb\nc\nde");  // its bytes would ask for a closing pause
    EXPECT_EQ(pauses, 0);
}

TEST_F(PagerTest, PrintsNothingForACancelledSession) {
    cancelled = true;
    EXPECT_EQ(print("text"), "");
}

TEST_F(PagerTest, StopsWhenTheSessionIsCancelledDuringAPause) {
    open(3);
    duringPause = [this] { cancelled = true; };
    EXPECT_EQ(print("a\nb\nc\n"), "a\n" + kNextPage);
}

TEST_F(PagerTest, PrintsTheRestWhenTheWindowIsGone) {
    open(3);
    duringPause = [this] { terminal.columns = 0; };
    EXPECT_EQ(print("a\nb\nc\n"), "a\n" + kNextPage + "\nb\nc\n");
    EXPECT_EQ(pauses, 1);
}

TEST_F(PagerTest, PrintsTheRestWhenTheWindowIsTooLow) {
    open(3);
    duringPause = [this] { terminal.rows = 2; };
    EXPECT_EQ(print("a\nb\nc\n"), "a\n" + kNextPage + "\nb\nc\n");
}

TEST_F(PagerTest, FollowsAWindowThatGrows) {
    open(3);
    duringPause = [this] { terminal.rows = 5; };  // pages of three lines from now on
    EXPECT_EQ(print("a\nb\nc\nd\ne"), "a\n" + kNextPage + "b\nc\n" + kNextPage + "d\ne" + kNextPage);
}

TEST_F(PagerTest, PrintsAnEmptyText) {
    open(3);
    EXPECT_EQ(print(""), "");
}

}  // namespace
