#include "base/char_string.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

TEST(CharStringTest, IsEmptyWithoutText) {
    for (const CharString& text : {CharString(), CharString(nullptr), CharString("")}) {
        EXPECT_TRUE(text.isEmpty());
        EXPECT_EQ(nullptr, text.c_str());
    }
}

TEST(CharStringTest, CopiesTheTextThatItIsMadeFrom) {
    std::string source = "abc";
    const CharString text(source.c_str());
    source[0] = 'x';
    EXPECT_STREQ("abc", text.c_str());
    EXPECT_FALSE(text.isEmpty());
}

TEST(CharStringTest, CopiesShareOneBuffer) {
    const CharString first("abc");
    const CharString second(first);  // NOLINT(performance-unnecessary-copy-initialization)
    CharString third;
    third = second;
    EXPECT_EQ(first.c_str(), second.c_str());
    EXPECT_EQ(first.c_str(), third.c_str());
}

TEST(CharStringTest, TheLastCopyKeepsTheText) {
    CharString last;
    {
        const CharString first("abc");
        last = first;
    }
    EXPECT_STREQ("abc", last.c_str());
}

TEST(CharStringTest, AssigningReleasesTheFormerText) {
    CharString text("abc");
    const CharString& alias = text;
    text = alias;
    EXPECT_STREQ("abc", text.c_str());
    text = CharString("def");
    EXPECT_STREQ("def", text.c_str());
    text = CharString();
    EXPECT_TRUE(text.isEmpty());
}

TEST(CharStringTest, MovingLeavesTheEmptyState) {
    CharString source("abc");
    const CharString target(std::move(source));
    EXPECT_STREQ("abc", target.c_str());
    EXPECT_TRUE(source.isEmpty());  // NOLINT(bugprone-use-after-move)
}

}  // namespace
