#include "ui/gui/wx_rtf_callback.h"

#include <gtest/gtest.h>

#include "rich_text_script.h"
#include "text/rtf_reader.h"

namespace {

std::string read(std::string_view document, std::int32_t colour = -1) {
    RichTextCommands commands;
    wxRTFCallback callback(commands, colour);
    RtfReader reader;
    reader.setCallback(&callback);
    reader.read(document, RtfMode::kControl, 0);
    return richTextScript(commands.get());
}

struct DocumentCase {
    const char* document;
    const char* commands;
};

TEST(WxRtfCallback, EveryControlWordHasItsCommands) {
    const DocumentCase cases[] = {
        {"a", "\"a\""},
        {"a\\tab b", "\"a\tb\""},
        {"a\\endash b", "\"a-b\""},
        {"\\b a\\pard b", "(b)\"a\"/\"b\""},
        {"a\\par b", "\"a\"[]\"b\""},
        {"a\\par\\par b", "\"a\"[][]\"b\""},
        {"\\qc a\\ql b", "(centre)\"a\"/\"b\""},
        {"\\qr a", "(right)\"a\"/"},
        {"\\qj a", "(justified)\"a\"/"},
        {"\\qc a\\qr b", "(centre)\"a\"/(right)\"b\"/"},
        {"\\b a\\b0 b", "(b)\"a\"/\"b\""},
        {"\\i a\\i0 b", "(i)\"a\"/\"b\""},
        {"\\ul a\\ulnone b", "(u)\"a\"/\"b\""},
        {"\\li720 a", "(indent 127)\"a\"/"},
        {"\\li720 a\\li1440 b", "(indent 127)\"a\"/(indent 254)\"b\"/"},
        {"a\\rquote b\\ldblquote c\\rdblquote", "\"a'b\"c\"\""},
        {"\\'a9\\'ae\\'e9", "\"(c)(r)\""},
        {"a\\~b\\_c\\{\\}\\\\", "\"a b-c{}\\\""},
        {"\\unknown a", "\"a\""},
    };
    for (const DocumentCase& one : cases) {
        EXPECT_EQ(read(one.document), one.commands) << one.document;
    }
}

TEST(WxRtfCallback, EndsAStyleOnce) {
    EXPECT_EQ(read("\\b\\b a\\b0 b\\b0 c"), "(b)/(b)\"a\"/\"b\"\"c\"");
}

TEST(WxRtfCallback, EndsNoStyleThatIsNotOpen) {
    EXPECT_EQ(read("a\\b0\\i0\\ulnone\\ql\\pard b"), "\"a\"\"b\"");
    EXPECT_EQ(read("\\i a\\b0 b"), "(i)\"a\"\"b\"/");
}

TEST(WxRtfCallback, EndsAStyleBelowAnotherOne) {
    EXPECT_EQ(read("\\b a\\i b\\b0 c\\i0 d"), "(b)\"a\"(i)\"b\"//(i)\"c\"/\"d\"");
    EXPECT_EQ(read("\\qc\\b\\i a\\ql b"), "(centre)(b)(i)\"a\"///(b)(i)\"b\"//");
}

TEST(WxRtfCallback, AParagraphEndsTheStyles) {
    EXPECT_EQ(read("\\qc\\b a\\par b\\b0"), "(centre)(b)\"a\"//[]\"b\"");
}

TEST(WxRtfCallback, KeepsTheDefaultColour) {
    EXPECT_EQ(read("\\b a\\par b\\pard c", 0x102030),
              "(colour 1056816)(b)\"a\"/[]\"b\"/(colour 1056816)\"c\"/(colour 1056816)");
}

TEST(WxRtfCallback, BoundsIndents) {
    EXPECT_EQ(read("\\li99999999 a"), "(indent 2000)\"a\"/");
    EXPECT_EQ(read("\\li-720 a"), "(indent 0)\"a\"/");
}

TEST(WxRtfCallback, SetsSizesOfLetters) {
    RichTextCommands commands;
    wxRTFCallback callback(commands);
    callback.addChar("a");
    callback.setFontSize(12);
    callback.setFontSize(0);
    callback.setFontSize(-3);
    EXPECT_EQ(richTextScript(commands.get()), "\"a\"(size 12)(size 0)(size 0)");
}

// The words of a hidden group count nevertheless.
TEST(WxRtfCallback, ShowsNothingOfHiddenGroups) {
    EXPECT_EQ(read("{\\rtf1{\\fonttbl{\\f0 Arial;}}a{\\b b}c}"), "\"a\"(b)\"c\"/");
}

TEST(WxRtfCallback, KeepsCharactersOfSeveralBytesWhole) {
    EXPECT_EQ(read("\xC3\xBC\\b \xE2\x82\xAC"), "\"\xC3\xBC\"(b)\"\xE2\x82\xAC\"/");
}

}  // namespace
