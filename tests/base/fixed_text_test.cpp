#include "base/fixed_text.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

static_assert(std::is_trivially_copyable_v<PathText>, "records with fixed texts are moved bit by bit");
static_assert(PathText::capacity() == 1560);

TEST(FixedTextTest, StartsEmpty) {
    const FixedText<8> text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_STREQ("", text.c_str());
}

TEST(FixedTextTest, CutsAtOneBelowItsCapacity) {
    EXPECT_STREQ("1234567", FixedText<8>("1234567").c_str());
    EXPECT_STREQ("1234567", FixedText<8>("12345678").c_str());
    EXPECT_EQ(std::string(1559, 'p'), PathText(std::string(1560, 'p')).c_str());
    EXPECT_EQ(std::string(1559, 'p'), PathText(std::string(1559, 'p')).c_str());
}

TEST(FixedTextTest, EndsAtAZeroByte) {
    EXPECT_EQ("ab", FixedText<8>(std::string_view("ab\0cd", 5)).view());
}

TEST(FixedTextTest, TakesANullTextAsEmpty) {
    FixedText<8> text("abc");
    text.assign(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.isEmpty());
}

TEST(FixedTextTest, TakesAPartOfItself) {
    FixedText<8> text("abcdef");
    text.assign(text.view().substr(2));
    EXPECT_STREQ("cdef", text.c_str());
}

TEST(FixedTextTest, KeepsNothingOfALongerTextAfterItsEnd) {
    FixedText<8> text("abcdef");
    text.assign("x");
    EXPECT_EQ("x", text.view());
}

}  // namespace
