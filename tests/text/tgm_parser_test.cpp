#include "text/tgm_parser.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "text/tgm_limits.h"
#include "text/tgm_test_support.h"
#include "text/tgm_translator.h"

namespace {

// Records each event.
class EventLog : public TGMTranslator {
public:
    void beginDocument() override { events += "D("; }
    void endDocument() override { events += ")"; }
    void beginHeader(int level) override { events += "H" + std::to_string(level) + "("; }
    void endHeader(int level) override { events += ")" + std::to_string(level); }
    void beginList(TGMListKind kind) override { events += "L" + std::to_string(kind) + "("; }
    void endList(TGMListKind kind) override { events += ")" + std::to_string(kind); }
    void beginItem() override { events += "I("; }
    void endItem() override { events += ")"; }
    void beginBold() override { events += "B("; }
    void endBold() override { events += ")"; }
    void beginItalic() override { events += "E("; }
    void endItalic() override { events += ")"; }
    void beginQuote() override { events += "Q("; }
    void endQuote() override { events += ")"; }
    void beginParagraph() override { events += "P("; }
    void endParagraph() override { events += ")"; }
    void beginComposite() override { events += "C("; }
    void endComposite() override { events += ")"; }
    void text(std::string_view bytes) override { events += "'" + std::string(bytes) + "'"; }
    void reserve(std::size_t size) override { events += "R" + std::to_string(size) + " "; }

    std::string events;
};

std::string eventsOf(const std::string& text) {
    TGMParser parser;
    parser.parse(text);
    EventLog log;
    parser.walk(log);
    return log.events;
}

TEST(TGMParser, NullTextIsAnErrorOfItsOwn) {
    TGMParser parser;
    const TGMParseResult result = parser.parse(std::nullopt);
    EXPECT_EQ(kTgmNullText, result.errors);
    EXPECT_EQ(UINT32_MAX, result.line);
    EXPECT_EQ(nullptr, parser.getRoot());
}

TEST(TGMParser, EmptyTextIsAnErrorAndNotAnEmptyDocument) {
    const ParsedText parsed = parseText("");
    EXPECT_EQ(kTgmEmptyText, parsed.result.errors);
    EXPECT_EQ("", parsed.tree);
}

TEST(TGMParser, BlankTextIsAnEmptyDocument) {
    EXPECT_EQ("+[DOC ]\n", treeOf("\n"));
    EXPECT_EQ("+[DOC ]\n", treeOf(" \t\r\n  "));
    EXPECT_EQ("+[DOC ]\n", treeOf("\r"));
}

TEST(TGMParser, DeletesAllCarriageReturns) {
    EXPECT_EQ(treeOf("- ab\n\n\nc"), treeOf("\r-\r a\rb\r\n\r\n\n\rc\r"));
}

TEST(TGMParser, LoneSpanOnTheLastLineKeepsItsDelimiters) {
    EXPECT_EQ("+[DOC ]\n|     +[ITAL] : *word*\n", treeOf("*word*"));
    EXPECT_EQ("+[DOC ]\n|     +[ITAL] : *word*\n", treeOf("*word*\n"));
}

TEST(TGMParser, LoneSpanBeforeABlankLineIsAParagraphWithoutDelimiters) {
    const std::string paragraph = "+[DOC ]\n|     +[PAR ]\n|     |     +[ITAL] : word\n";
    EXPECT_EQ(paragraph, treeOf("*word*\n\n"));
    EXPECT_EQ(paragraph + "|     +[PLN ] : x\n", treeOf("*word*\n\nx"));
}

TEST(TGMParser, UnresolvedEmphasisFailsTheWholeText) {
    EXPECT_EQ(kTgmInvalidEmphasis, parseText("a**").result.errors);
    EXPECT_EQ(kTgmInvalidEmphasis, parseText("good\n\na**\n\n*good*").result.errors);
}

TEST(TGMParser, DoubleSpanClosesAtOneDelimiterAndAnyCharacter) {
    EXPECT_EQ("+[DOC ]\n|     +[PAR ]\n|     |     +[BOLD] : ab\n", treeOf("**ab*c\n\n"));
}

TEST(TGMParser, DelimiterAfterASpanIsLiteralAndReadAgainInItsPiece) {
    // The pieces are "a" and the plain "_b_"; a plain piece is then resolved like any plain text.
    EXPECT_EQ("+[DOC ]\n|     +[CMPS]\n|     |     +[ITAL] : a\n|     |     +[ITAL] : _b_\n",
              treeOf("*a*_b_"));
}

TEST(TGMParser, EscapedDelimitersAreTextWithoutBackslashes) {
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : *not*\n", treeOf("\\*not\\*"));
}

TEST(TGMParser, MarkersOfListsNeedTheirBlank) {
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : 12.text\n", treeOf("12.text"));
    EXPECT_EQ("+[DOC ]\n|     +[OLNU]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : text\n",
              treeOf("12. text"));
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : A. text\n", treeOf("A. text"));
    EXPECT_EQ("+[DOC ]\n|     +[OLAL]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : text\n",
              treeOf("a. text"));
}

TEST(TGMParser, SevenHashesAreAQuote) {
    EXPECT_EQ("+[DOC ]\n|     +[BLKQ]\n|     |     +[PLN ] : x\n", treeOf("#######x"));
}

TEST(TGMParser, QuoteAtTheVeryEndLosesItsLastLine) {
    EXPECT_EQ("+[DOC ]\n|     +[BLKQ]\n|     |     +[PLN ] : one\n", treeOf("> one\n> two"));
    EXPECT_EQ("+[DOC ]\n|     +[BLKQ]\n|     |     +[PLN ] : one\n", treeOf("> one"));
    EXPECT_EQ("+[DOC ]\n|     +[BLKQ]\n|     |     +[PLN ] : one\ntwo\n|     +[PLN ] : x\n",
              treeOf("> one\n> two\n\nx"));
}

TEST(TGMParser, ListUnderAParagraphStaysTextOnlyWithLazyLists) {
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : para\n- x\n", treeOf("para\n- x"));
    const std::string apart = "+[PLN ] : para\n|     |     +[UNLI]\n";
    const std::string quoted = treeOf("> para\n> - x\n\n");
    EXPECT_NE(std::string::npos, quoted.find(apart)) << quoted;
}

TEST(TGMParser, BlankLinesBetweenAllItemsMakeAListLoose) {
    EXPECT_NE(std::string::npos, treeOf("- a\n\n- b\n\n- c").find("+[PAR ] : c"));
    EXPECT_NE(std::string::npos, treeOf("- a\n\n- b\n- c").find("+[PLN ] : c"));
}

TEST(TGMParser, WalkReservesTheSizeAndVisitsInOrder) {
    EXPECT_EQ("R32768 D(H2('h')2P('p 'E('e')' 'B('b'))L0(I(P('u')))0C('x'E('y')))",
              eventsOf("## h\np _e_ **b**\n\n- u\n\nx*y*"));
}

TEST(TGMParser, WalkWithoutATreeDoesNothing) {
    EXPECT_EQ("", eventsOf(""));
    TGMParser parser;
    EventLog log;
    parser.walk(log);
    EXPECT_EQ("", log.events);
}

TEST(TGMParser, SecondParseReplacesTheTree) {
    TGMParser parser;
    parser.parse("a**");
    EXPECT_TRUE(parser.parse("b").succeeded());
    EXPECT_EQ("b", parser.getRoot()->children.at(0)->text.view());
    parser.parse(std::nullopt);
    EXPECT_EQ(nullptr, parser.getRoot());
}

TEST(TGMParser, ReadsATextWithoutATerminator) {
    EXPECT_EQ("+[DOC ]\n|     +[ H1 ] : ab\n", treeOf(std::string_view("# abc", 4)));
}

TEST(TGMParser, EndsATextAtItsFirstZeroByte) {
    EXPECT_EQ("+[DOC ]\n|     +[ H1 ] : ab\n", treeOf(std::string_view("# ab\0a**", 8)));
}

TEST(TGMParser, TakesATextThatBeginsWithAZeroByteAsEmpty) {
    for (const std::string_view text : {std::string_view(), std::string_view("\0a", 2)}) {
        EXPECT_EQ(kTgmEmptyText, parseText(text).result.errors);
    }
}

TEST(TGMParser, KeepsItsTreeWhenTheTextIsGone) {
    TGMParser parser;
    {
        std::string text = "a *b* c\\*";
        parser.parse(text);
        text.assign(text.size(), '#');
    }
    EventLog log;
    parser.walk(log);
    EXPECT_EQ("R32768 D(C('a 'E('b')' c*'))", log.events);
}

}  // namespace
