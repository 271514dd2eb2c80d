#include "checking/source_place.h"

#include <gtest/gtest.h>

#include <string>

namespace {

SourcePlace place(std::int32_t line, std::int32_t column) {
    return {line, column};
}

TEST(SourceLines, CountsFromOne) {
    const SourceLines lines("ab\nc");
    EXPECT_EQ(lines.placeOf(0), place(1, 1));
    EXPECT_EQ(lines.placeOf(1), place(1, 2));
    EXPECT_EQ(lines.placeOf(2), place(1, 3));
    EXPECT_EQ(lines.placeOf(3), place(2, 1));
}

TEST(SourceLines, KnowsAllThreeLineEnds) {
    const SourceLines lines("a\r\nb\rc\n\nd");
    EXPECT_EQ(lines.placeOf(3), place(2, 1));
    EXPECT_EQ(lines.placeOf(5), place(3, 1));
    EXPECT_EQ(lines.placeOf(7), place(4, 1));
    EXPECT_EQ(lines.placeOf(8), place(5, 1));
}

TEST(SourceLines, CountsCharactersAndNotBytes) {
    const SourceLines lines("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80x");
    EXPECT_EQ(lines.placeOf(2), place(1, 2));
    EXPECT_EQ(lines.placeOf(5), place(1, 3));
    EXPECT_EQ(lines.placeOf(9), place(1, 4));
}

TEST(SourceLines, GivesTheByteOrderMarkNoColumn) {
    const SourceLines lines("\xEF\xBB\xBF<a\n<b");
    EXPECT_EQ(lines.placeOf(0), place(1, 1));
    EXPECT_EQ(lines.placeOf(3), place(1, 1));
    EXPECT_EQ(lines.placeOf(4), place(1, 2));
    EXPECT_EQ(lines.placeOf(7), place(2, 2));
}

TEST(SourceLines, TakesWhatIsBeyondTheEndForTheEnd) {
    EXPECT_EQ(SourceLines("ab\nc").placeOf(1000), place(2, 2));
    EXPECT_EQ(SourceLines("ab\n").placeOf(3), place(2, 1));
    EXPECT_EQ(SourceLines("").placeOf(7), place(1, 1));
    EXPECT_EQ(SourceLines("\xEF\xBB\xBF").placeOf(0), place(1, 1));
}

TEST(SourceLines, CountsAsWellInALongLine) {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "\xC3\xA4x";
    }
    const std::string both = text + "\n" + text;
    const SourceLines lines(both);
    for (int i = 0; i < 3000; ++i) {
        const auto offset = static_cast<std::size_t>(3 * i);
        EXPECT_EQ(lines.placeOf(offset), place(1, 2 * i + 1));
        EXPECT_EQ(lines.placeOf(text.size() + 1 + offset), place(2, 2 * i + 1));
    }
}

TEST(SourcePlace, IsOrderedByLineThenColumn) {
    EXPECT_LT(place(1, 9), place(2, 1));
    EXPECT_LT(place(2, 1), place(2, 2));
}

}  // namespace
