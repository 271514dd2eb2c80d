#include <gtest/gtest.h>

#include <string>

#include "text/basic_html_translator.h"
#include "text/tgm_parser.h"

namespace {

std::string parsed(std::string_view text, TGMParseResult& result) {
    TGMParser parser;
    parser.parse(result, text);
    HTMLSettings settings;
    settings.emitHead = false;
    settings.emitFoot = false;
    settings.baseLevel = 0;
    BasicHTMLTranslator translator(settings);
    parser.walk(translator);
    return translator.takeResult();
}

TEST(TGMParserView, ReadsATextWithoutATerminator) {
    TGMParseResult result;
    EXPECT_EQ(parsed(std::string_view("# abc", 4), result), "<h1>ab</h1>\n");
    EXPECT_TRUE(result.succeeded());
}

TEST(TGMParserView, ATextEndsAtItsFirstZeroByte) {
    TGMParseResult result;
    EXPECT_EQ(parsed(std::string_view("# ab\0a**", 8), result), "<h1>ab</h1>\n");
    EXPECT_TRUE(result.succeeded());
}

TEST(TGMParserView, NothingIsAnEmptyText) {
    TGMParseResult result;
    for (const std::string_view text :
         {std::string_view(), std::string_view(""), std::string_view("\0a", 2)}) {
        parsed(text, result);
        EXPECT_EQ(result.errors, kTgmEmptyText);
    }
}

TEST(TGMParserView, TheTreeNeedsTheTextNoLonger) {
    TGMParser parser;
    TGMParseResult result;
    {
        std::string text = "a *b* c\\*";
        parser.parse(result, std::string_view(text));
        text.assign(text.size(), '#');
    }
    BasicHTMLTranslator translator;
    parser.walk(translator);
    EXPECT_NE(translator.takeResult().find("a <em>b</em> c"), std::string::npos);
}

}  // namespace
