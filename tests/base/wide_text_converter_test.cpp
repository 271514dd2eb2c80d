#include "base/wide_text_converter.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>

namespace {

using OUtils::WideTextConverter;

std::u16string toWide(const std::string& text) {
    WideTextConverter converter(text.c_str());
    return converter.wide();
}

std::string toUtf8(const std::u16string& text) {
    WideTextConverter converter(text.c_str());
    return converter.utf8();
}

std::string roundTrip(const std::string& text) {
    return toUtf8(toWide(text));
}

// The code unit pair that stands for one raw byte.
std::u16string rawByte(unsigned char byte) {
    const char32_t offset = 0x100000U + byte - 0x10000U;
    return {static_cast<char16_t>(0xD800 + (offset >> 10)), static_cast<char16_t>(0xDC00 + (offset & 0x3FF))};
}

TEST(Utf8ToWideTest, ConvertsSequencesOfEachLength) {
    EXPECT_EQ(u"a\u00E9\u20AC\U0001F600", toWide("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"));
    EXPECT_EQ("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", toUtf8(u"a\u00E9\u20AC\U0001F600"));
}

TEST(Utf8ToWideTest, ConvertsTheLimitsOfEachLength) {
    EXPECT_EQ(u"\u007F\u0080\u07FF\u0800\uFFFF", toWide("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"));
    EXPECT_EQ(u"\U00010000", toWide("\xF0\x90\x80\x80"));
    EXPECT_EQ(u"\U0010FFFF", toWide("\xF4\x8F\xBF\xBF"));
}

TEST(Utf8ToWideTest, KeepsALoneByte) {
    EXPECT_EQ(rawByte(0xE9), toWide("\xE9"));
    EXPECT_EQ("\xE9", roundTrip("\xE9"));
    EXPECT_EQ("caf\xE9 au lait", roundTrip("caf\xE9 au lait"));
}

TEST(Utf8ToWideTest, PassesOnEachByteOfABadSequence) {
    EXPECT_EQ(rawByte(0xC0) + rawByte(0x80), toWide("\xC0\x80"));  // overlong
    EXPECT_EQ(rawByte(0xE2) + rawByte(0x82), toWide("\xE2\x82"));  // cut
    EXPECT_EQ(rawByte(0xE2) + u"a", toWide("\xE2"
                                           "a"));
    EXPECT_EQ(rawByte(0x80), toWide("\x80"));
    EXPECT_EQ(rawByte(0xFE) + rawByte(0xFF), toWide("\xFE\xFF"));
}

TEST(Utf8ToWideTest, PassesOnTheBytesOfWhatUtf16CannotHold) {
    EXPECT_EQ(5U * 2, toWide("\xF8\x88\x80\x80\x80").size());
    EXPECT_EQ(6U * 2, toWide("\xFC\x84\x80\x80\x80\x80").size());
    EXPECT_EQ(4U * 2, toWide("\xF4\x90\x80\x80").size());
}

TEST(Utf8ToWideTest, KeepsOverlongSequencesOfEachLength) {
    for (const char* text : {"\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xF8\x87\xBF\xBF\xBF",
                             "\xFC\x83\xBF\xBF\xBF\xBF"}) {
        EXPECT_EQ(text, roundTrip(text));
        EXPECT_EQ(std::string(text).size() * 2, toWide(text).size());
    }
}

TEST(Utf8ToWideTest, KeepsTheEncodedFormOfARawByte) {
    const std::string encoded = "\xF4\x80\x83\xA9";  // the code point that stands for the byte 0xE9
    EXPECT_EQ(encoded, roundTrip(encoded));
}

// Such a name would turn into one with a separator.
TEST(Utf8ToWideTest, MakesNoAsciiCharacterOfAnotherCodePoint) {
    EXPECT_EQ("\xF4\x80\x81\x9C", toUtf8(rawByte('\\')));
    EXPECT_EQ(rawByte('\\'), toWide("\xF4\x80\x81\x9C"));
    for (int code = 0; code < 0x80; ++code) {
        const std::u16string wide = rawByte(static_cast<unsigned char>(code));
        const std::string text = OUtils::wideToUtf8(wide);
        EXPECT_EQ(4U, text.size()) << code;
        EXPECT_EQ(wide, OUtils::utf8ToWide(text)) << code;
    }
}

TEST(Utf8ToWideTest, KeepsTwoHalvesInSequencesOfTheirOwn) {
    for (const char* text : {"\xED\xA0\x80\xED\xB0\x80", "\xED\xAF\xBF\xED\xBF\xBFz",
                             "\xED\xA0\x80\xED\xA0\x80\xED\xB0\x80\xED\xB0\x80"}) {
        EXPECT_EQ(text, roundTrip(text));
    }
}

TEST(Utf8ToWideTest, KeepsAnyMixOfSequencesAndPartsOfThem) {
    const std::string parts[] = {"a",
                                 "\xC3\xA9",
                                 "\xE2\x82\xAC",
                                 "\xF0\x9F\x98\x80",
                                 "\xED\xA0\x80",
                                 "\xED\xB0\x80",
                                 "\xED",
                                 "\x80",
                                 "\xF4\x80\x82\x80",
                                 "\xE9",
                                 "\xF0\x9F",
                                 "\xED\xA0"};
    std::mt19937 random(4711);
    std::uniform_int_distribution<std::size_t> pick(0, std::size(parts) - 1);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int i = 0; i < 6; ++i) {
            text += parts[pick(random)];
        }
        ASSERT_EQ(text, roundTrip(text)) << "round " << round;
    }
}

TEST(Utf8ToWideTest, KeepsAnyBytes) {
    std::mt19937 random(20240229);
    std::uniform_int_distribution<int> length(0, 40);
    std::uniform_int_distribution<int> byte(1, 255);
    std::uniform_int_distribution<int> lead(0x80, 255);
    for (int round = 0; round < 20000; ++round) {
        std::string text(static_cast<std::size_t>(length(random)), '\0');
        for (char& c : text) {
            c = static_cast<char>(round % 2 == 0 ? byte(random) : lead(random));
        }
        ASSERT_EQ(text, roundTrip(text)) << "round " << round;
    }
}

TEST(Utf8ToWideTest, KeepsEveryPairOfBytes) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(text, roundTrip(text));
        }
    }
}

TEST(Utf8ToWideTest, KeepsAnyCodePoint) {
    for (char32_t point = 1; point < 0x110000; point += point < 0x20000 ? 1 : 97) {
        const bool surrogate = point >= 0xD800 && point < 0xE000;
        const bool standsForAByte = point >= 0x100080 && point <= 0x1000FF;
        if (surrogate || standsForAByte) {
            continue;
        }
        std::u16string wide;
        if (point > 0xFFFF) {
            wide = {static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)),
                    static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF))};
        } else {
            wide = static_cast<char16_t>(point);
        }
        ASSERT_EQ(wide, toWide(toUtf8(wide))) << static_cast<unsigned>(point);
    }
}

TEST(Utf8ToWideTest, KeepsALoneSurrogate) {
    for (const std::u16string& wide : {std::u16string{0xD800}, std::u16string{0xDFFF, u'a'},
                                       std::u16string{u'a', 0xDBFF}, std::u16string{0xDC00, 0xD800}}) {
        EXPECT_EQ(wide, toWide(toUtf8(wide)));
    }
}

TEST(Utf8ToWideTest, TakesAZeroByteAsACharacter) {
    const std::string text("a\0\xE9\0", 4);
    const std::u16string wide = OUtils::utf8ToWide(text);
    EXPECT_EQ(std::u16string(u"a\0", 2) + rawByte(0xE9) + std::u16string(1, u'\0'), wide);
    EXPECT_EQ(text, OUtils::wideToUtf8(wide));
    EXPECT_EQ(u"", OUtils::utf8ToWide(""));
    EXPECT_EQ("", OUtils::wideToUtf8(u""));
}

TEST(Utf8ToWideTest, ReadsNothingBeyondTheEndOfAView) {
    const std::string_view euro = "\xE2\x82\xAC";
    EXPECT_EQ(rawByte(0xE2) + rawByte(0x82), OUtils::utf8ToWide(euro.substr(0, 2)));
    const std::u16string_view pair = u"\U0001F600";
    EXPECT_EQ(u"\xD83D", OUtils::utf8ToWide(OUtils::wideToUtf8(pair.substr(0, 1))));
}

TEST(WideTextConverterTest, GivesTheSamePointerAgain) {
    WideTextConverter fromUtf8("abc");
    EXPECT_EQ(fromUtf8.wide(), fromUtf8.wide());
    WideTextConverter fromWide(u"abc");
    EXPECT_EQ(fromWide.utf8(), fromWide.utf8());
}

TEST(WideTextConverterTest, GivesTheBorrowedTextItself) {
    const char* const text = "abc";
    WideTextConverter converter(text);
    EXPECT_EQ(text, converter.utf8());
}

TEST(WideTextConverterTest, GivesNullForANullText) {
    WideTextConverter fromUtf8(static_cast<const char*>(nullptr));
    EXPECT_EQ(nullptr, fromUtf8.wide());
    WideTextConverter fromWide(static_cast<const char16_t*>(nullptr));
    EXPECT_EQ(nullptr, fromWide.utf8());
}

}  // namespace
