#include "base/text_columns.h"

#include <gtest/gtest.h>

namespace {

using OUtils::columnsOf;

TEST(TextColumns, LettersTakeOneCell) {
    EXPECT_EQ(columnsOf(U'a'), 1);
    EXPECT_EQ(columnsOf(U'\u00E9'), 1);
    EXPECT_EQ(columnsOf(U'\u0416'), 1);
    EXPECT_EQ(columnsOf(U'\u2014'), 1);
    EXPECT_EQ(columnsOf(U'\U0010FFFF'), 1);
}

TEST(TextColumns, EastAsianLettersAndPicturesTakeTwo) {
    for (const char32_t wide : {U'\u1100', U'\u3042', U'\u4E2D', U'\uAC00', U'\uFF21', U'\U0001F600'}) {
        EXPECT_EQ(columnsOf(wide), 2) << static_cast<unsigned>(wide);
    }
}

TEST(TextColumns, MarksAndJoinersTakeNone) {
    for (const char32_t mark : {U'\u0300', U'\u036F', U'\u200B', U'\u200D', U'\uFE0F', U'\uFEFF'}) {
        EXPECT_EQ(columnsOf(mark), 0) << static_cast<unsigned>(mark);
    }
}

TEST(TextColumns, TheEndsOfRangesBelongToThem) {
    EXPECT_EQ(columnsOf(U'\u10FF'), 1);
    EXPECT_EQ(columnsOf(U'\u115F'), 2);
    EXPECT_EQ(columnsOf(U'\u1160'), 1);
    EXPECT_EQ(columnsOf(U'\u0370'), 1);
    EXPECT_EQ(columnsOf(U'\U0003FFFD'), 2);
    EXPECT_EQ(columnsOf(U'\U0003FFFE'), 1);
}

TEST(TextColumns, ATextHasTheCellsOfItsCharacters) {
    EXPECT_EQ(columnsOf(""), 0U);
    EXPECT_EQ(columnsOf("a\xC3\xA9\xE4\xB8\xAD"
                        "e\xCC\x81"),
              5U);
    EXPECT_EQ(columnsOf("\xFF\xE4\xB8"), 3U) << "bytes that aren't UTF-8";
    EXPECT_EQ(columnsOf("\x1B[m"), 3U) << "a control character is shown as a mark";
}

}  // namespace
