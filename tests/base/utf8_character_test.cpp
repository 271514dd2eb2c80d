#include "base/utf8_character.h"

#include <gtest/gtest.h>

namespace {

using OUtils::utf8CharacterLength;
using OUtils::validUtf8;

TEST(Utf8CharacterTest, MeasuresTheFirstCharacter) {
    EXPECT_EQ(1U, utf8CharacterLength("ab"));
    EXPECT_EQ(2U, utf8CharacterLength("\xC3\xBCx"));
    EXPECT_EQ(3U, utf8CharacterLength("\xE2\x82\xACx"));
    EXPECT_EQ(4U, utf8CharacterLength("\xF0\x9F\x98\x80x"));
    EXPECT_EQ(1U, utf8CharacterLength(std::string_view("\0", 1)));
}

TEST(Utf8CharacterTest, FindsNoneInBrokenBytes) {
    EXPECT_EQ(0U, utf8CharacterLength(""));
    EXPECT_EQ(0U, utf8CharacterLength("\x9B"));
    EXPECT_EQ(0U, utf8CharacterLength("\xC3"));
    EXPECT_EQ(0U, utf8CharacterLength("\xC0\x9B"));          // overlong
    EXPECT_EQ(0U, utf8CharacterLength("\xED\xA0\x80"));      // surrogate
    EXPECT_EQ(0U, utf8CharacterLength("\xF4\x90\x80\x80"));  // above U+10FFFF
}

TEST(Utf8CharacterTest, ReplacesEachByteThatIsNoUtf8) {
    EXPECT_EQ("", validUtf8(""));
    EXPECT_EQ("a\xC3\xBC\xE2\x82\xAC", validUtf8("a\xC3\xBC\xE2\x82\xAC"));
    EXPECT_EQ(
        "\xEF\xBF\xBD"
        "b",
        validUtf8("\xFC"
                  "b"));
    EXPECT_EQ("a\xEF\xBF\xBD\xEF\xBF\xBD", validUtf8("a\xE2\x82"));
    EXPECT_EQ(std::string_view("\0\n", 2), validUtf8(std::string_view("\0\n", 2)));
}

}  // namespace
