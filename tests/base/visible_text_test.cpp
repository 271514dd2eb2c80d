#include "base/visible_text.h"

#include <gtest/gtest.h>

namespace {

using OUtils::visibleText;

TEST(VisibleTextTest, KeepsWhatIsReadable) {
    const std::string text = "a\tb\nf\xC3\xBCr 5 \xE2\x82\xAC \xF0\x9F\x98\x80 \xC2\xA0~";
    EXPECT_EQ(text, visibleText(text));
    EXPECT_EQ("", visibleText(""));
}

TEST(VisibleTextTest, ReplacesControlCharacters) {
    EXPECT_EQ("?[2Ja?b?", visibleText("\x1B[2Ja\bb\x7F"));
    EXPECT_EQ("a?b", visibleText(std::string_view("a\0b", 3)));
    EXPECT_EQ("?31m ?", visibleText("\xC2\x9B"
                                    "31m \xC2\x80"));
}

TEST(VisibleTextTest, KeepsACarriageReturnOnlyInALineEnd) {
    EXPECT_EQ("one\r\ntwo", visibleText("one\r\ntwo"));
    EXPECT_EQ("one?two?", visibleText("one\rtwo\r"));
}

TEST(VisibleTextTest, ReplacesWhatTurnsTheDirection) {
    for (const char* mark : {"\xD8\x9C", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xA8", "\xE2\x80\xA9",
                             "\xE2\x80\xAA", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x81\xA9"}) {
        EXPECT_EQ("a?b", visibleText("a" + std::string(mark) + "b"));
    }
}

TEST(VisibleTextTest, LeavesTheNeighboursOfWhatItReplaces) {
    for (const char* other : {" ", "~", "\xC2\xA0", "\xE2\x80\x8D", "\xE2\x80\x90", "\xE2\x80\xA7",
                              "\xE2\x80\xAF", "\xE2\x81\xA5", "\xE2\x81\xAA"}) {
        EXPECT_EQ(other, visibleText(other));
    }
}

// Two texts that are written one after the other must not form a control character together.
TEST(VisibleTextTest, ReplacesEachByteThatIsNotUtf8) {
    EXPECT_EQ("a?", visibleText("a\xC2"));
    EXPECT_EQ("?a", visibleText("\x9B"
                                "a"));
    EXPECT_EQ("???", visibleText("\xE2\x80\xC0"));
}

}  // namespace
