#include "rehearsal/line_difference.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

Lines difference(const Lines& expected, const Lines& found) {
    return lineDifference(expected, found, std::equal_to<>());
}

TEST(LineDifferenceTest, IsEmptyForEqualLines) {
    EXPECT_EQ(difference({}, {}), Lines());
    EXPECT_EQ(difference({"a", "b"}, {"a", "b"}), Lines());
}

TEST(LineDifferenceTest, ShowsWhatIsMissingAndWhatIsNew) {
    EXPECT_EQ(difference({"a", "b", "c"}, {"a", "x", "c"}), (Lines{" a", "-b", "+x", " c"}));
    EXPECT_EQ(difference({}, {"a"}), Lines{"+a"});
    EXPECT_EQ(difference({"a"}, {}), Lines{"-a"});
    EXPECT_EQ(difference({"a", "a"}, {"a"}), (Lines{" a", "-a"}));
    EXPECT_EQ(difference({"b", "a", "c"}, {"a", "c", "d"}), (Lines{"-b", " a", " c", "+d"}));
}

TEST(LineDifferenceTest, LeavesOutWhatIsFarFromAChange) {
    EXPECT_EQ(difference({"1", "2", "3", "4", "5", "x", "6", "7", "8", "9"},
                         {"1", "2", "3", "4", "5", "6", "7", "8", "9"}),
              (Lines{"...", " 3", " 4", " 5", "-x", " 6", " 7", " 8", "..."}));
}

TEST(LineDifferenceTest, AsksWhatFits) {
    const LinesFit always = [](const std::string&, const std::string&) { return true; };
    EXPECT_EQ(lineDifference({"a"}, {"b"}, always), Lines());
}

TEST(LineDifferenceTest, ShowsVeryDifferentListsOneAfterTheOther) {
    Lines expected;
    Lines found;
    for (int i = 0; i < 4000; ++i) {
        expected.push_back("e" + std::to_string(i));
        found.push_back("f" + std::to_string(i));
    }
    const Lines lines = difference(expected, found);
    ASSERT_EQ(lines.size(), 8000U);
    EXPECT_EQ(lines[3999], "-e3999");
    EXPECT_EQ(lines[4000], "+f0");
}

}  // namespace
