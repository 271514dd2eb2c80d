#include "previewer/walk_record.h"

#include <gtest/gtest.h>

namespace {

TEST(WalkRecord, IsReadBackAsItWas) {
    const WalkRecord record{{{"install-01-Welcome",
                              {300, 200},
                              {{LayoutFault::Kind::kCut, {1, 2, 3, 4}, "a text"},
                               {LayoutFault::Kind::kOutside, {-5, 6, 7, 8}, ""},
                               {LayoutFault::Kind::kOverlap, {1, 1, 1, 1}, "a / b"}},
                              {"a box: Really?"}},
                             {"install-02-End", {10, 20}, {}, {}}},
                            {"it ended"}};
    EXPECT_EQ(readWalkRecord(textOf(record)), record);
}

TEST(WalkRecord, KeepsEachTextInOneLine) {
    WalkRecord record;
    record.pages.push_back(
        {"install-01-A", {}, {{LayoutFault::Kind::kCut, {}, "two\nlines\tand"}}, {"x\r\ny"}});
    const WalkRecord again = readWalkRecord(textOf(record));
    ASSERT_EQ(again.pages.size(), 1U);
    EXPECT_EQ(again.pages[0].faults[0].text, "two lines and");
    EXPECT_EQ(again.pages[0].notes[0], "x  y");
}

TEST(WalkRecord, LeavesOutWhatItDoesntUnderstand) {
    const WalkRecord record =
        readWalkRecord("cut\t1\t2\nnonsense\npage\tinstall-01-A\tx\t7\nwhat\tis\tthis\n");
    ASSERT_EQ(record.pages.size(), 1U);
    EXPECT_EQ(record.pages[0], (PageRecord{"install-01-A", {0, 7}, {}, {}}));
}

}  // namespace
