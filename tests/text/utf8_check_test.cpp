#include "text/utf8_check.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8Check, AcceptsTheBordersOfEachLength) {
    for (const char* text :
         {"", "a", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF3\xBF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_FALSE(findInvalidUtf8(text).has_value()) << text;
    }
}

TEST(Utf8Check, RejectsWhatNoCharacterStartsWith) {
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xF5\x80\x80\x80", "\xFE", "\xFF"}) {
        EXPECT_EQ(0U, findInvalidUtf8(text)) << text;
    }
}

TEST(Utf8Check, RejectsOverlongFormsSurrogatesAndValuesAboveTheRange) {
    for (const char* text : {"\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(0U, findInvalidUtf8(text)) << text;
    }
}

TEST(Utf8Check, RejectsSequencesCutAtEachLength) {
    const std::string_view whole = "\xF0\x90\x80\x80";
    for (std::size_t length = 1; length < whole.size(); ++length) {
        EXPECT_EQ(0U, findInvalidUtf8(whole.substr(0, length)));
        EXPECT_EQ(0U, findInvalidUtf8(std::string(whole.substr(0, length)) + "abc"));
    }
}

TEST(Utf8Check, CountsCharactersNotBytes) {
    EXPECT_EQ(3U, findInvalidUtf8("a\xC3\xA9\xE2\x82\xAC\x80z"));
}

}  // namespace
