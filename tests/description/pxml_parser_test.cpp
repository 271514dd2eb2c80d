#include "description/pxml_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class PXMLParserTest : public testing::Test {
protected:
    void parse(std::string_view text) { document_.parseText(text); }
    std::string textOf(std::int32_t node) { return std::string(document_.getText(node).value_or("(none)")); }
    std::int32_t lengthOf(std::int32_t node) { return document_.getNode(node)->textLength; }

    PXML document_;
};

TEST_F(PXMLParserTest, FiveEntitiesAreDecodedOthersStay) {
    parse("<a>a &amp; b &lt;&gt;&quot;&apos; &foo; &#65; &amp;lt; & &am</a>");
    EXPECT_EQ(textOf(0), "a & b <>\"' &foo; &#65; &lt; & &am");
    EXPECT_EQ(lengthOf(0), static_cast<std::int32_t>(textOf(0).size()));
}

TEST_F(PXMLParserTest, MixedContentKeepsTheInnermostTextOnly) {
    parse("<a>x<b>y</b>z</a>");
    EXPECT_EQ(textOf(0), "(none)");
    EXPECT_EQ(textOf(1), "y");
}

TEST_F(PXMLParserTest, CommentDiscardsTheTextAheadOfIt) {
    parse("<a>x<!-- c --></a>");
    EXPECT_EQ(textOf(0), "");
    EXPECT_EQ(lengthOf(0), 0);
}

TEST_F(PXMLParserTest, TextBehindACommentStays) {
    parse("<a><!-- c > - -- > -->x</a>");
    EXPECT_EQ(textOf(0), "x");
}

TEST_F(PXMLParserTest, ThreeDashesDoNotEndAComment) {
    parse("<a><!-- c --->x</a><b/>-->y</a>");
    EXPECT_EQ(textOf(0), "y");
    EXPECT_EQ(document_.getNodeCount(), 1);
}

TEST_F(PXMLParserTest, ShortCommentEndsAtOnce) {
    parse("<a><!---->x</a>");
    EXPECT_EQ(textOf(0), "x");
}

TEST_F(PXMLParserTest, EndlessCommentStopsTheParse) {
    parse("<a><b>1</b><!-- <c>2</c></a>");
    EXPECT_EQ(document_.getNodeCount(), 2);
    EXPECT_EQ(textOf(1), "1");
}

TEST_F(PXMLParserTest, InstructionIsSkippedAndItsEndCountsAsText) {
    parse("<?xml version=\"1.0\"?><a><?pi?></a>");
    EXPECT_EQ(document_.getName(0), "a");
    EXPECT_EQ(textOf(0), "?>");
}

TEST_F(PXMLParserTest, InstructionWithoutQuestionMarkEndsBeforeItsBracket) {
    parse("<?pi x><a>t</a>");
    EXPECT_EQ(textOf(0), "t");
    PXML endless;
    endless.parseText("<?pi x");
    EXPECT_EQ(endless.getNodeCount(), 0);
}

TEST_F(PXMLParserTest, AnythingAheadOfTheFirstTagIsSkipped) {
    parse("\xEF\xBB\xBFjunk & more <a>t</a>");
    EXPECT_EQ(textOf(0), "t");
}

TEST_F(PXMLParserTest, SecondTopLevelElementIsLost) {
    parse("<a>1</a><b>2</b>");
    EXPECT_EQ(document_.getNodeCount(), 1);
    PXML selfClosed;
    selfClosed.parseText("<a/><b/>");
    EXPECT_EQ(selfClosed.getNodeCount(), 1);
}

TEST_F(PXMLParserTest, SelfClosingElementHasEmptyTextOfLengthOne) {
    parse("<a x='1'/>");
    EXPECT_EQ(textOf(0), "");
    EXPECT_EQ(lengthOf(0), 1);
    EXPECT_EQ(document_.getAttribute(0, "x"), "1");
}

TEST_F(PXMLParserTest, TextIsTrimmedAndBlankTextIsEmpty) {
    parse("<r><a> \t\r\n x y \n</a><b> \n </b></r>");
    EXPECT_EQ(textOf(1), "x y");
    EXPECT_EQ(lengthOf(1), 3);
    EXPECT_EQ(textOf(2), "");
    EXPECT_EQ(lengthOf(2), 0);
}

TEST_F(PXMLParserTest, QuotesMayHoldTheOtherQuote) {
    parse("<a x='say \"hi\"' y=\"it's\"/>");
    EXPECT_EQ(document_.getAttribute(0, "x"), "say \"hi\"");
    EXPECT_EQ(document_.getAttribute(0, "y"), "it's");
}

TEST_F(PXMLParserTest, RawBracketInAValueEndsTheTag) {
    parse("<a x='1>2'>t</a>");
    EXPECT_EQ(document_.getAttribute(0, "x"), std::nullopt);
    EXPECT_EQ(textOf(0), "2'>t");
}

TEST_F(PXMLParserTest, ClosingTagWithAWrongNameClosesAllTheSame) {
    parse("<a><b>1</wrong><c>2</c></a>");
    EXPECT_EQ(document_.getNode(2)->parent, 0);
    EXPECT_EQ(textOf(1), "1");
}

TEST_F(PXMLParserTest, AttributesAreReadThroughLooseSpelling) {
    parse("<a  x = '1'\n y junk= \"2\" z'3'\tw>t</a>");
    EXPECT_EQ(document_.getAttribute(0, "x"), "1");
    EXPECT_EQ(document_.getAttribute(0, "y"), "2");
    EXPECT_EQ(document_.getAttribute(0, "w"), std::nullopt);
    EXPECT_EQ(document_.getNode(0)->attributes.size(), 2U);
}

TEST_F(PXMLParserTest, UnclosedValueEndsTheAttributes) {
    parse("<a x='1' y='2>t</a>");
    EXPECT_EQ(document_.getAttribute(0, "x"), "1");
    EXPECT_EQ(document_.getAttribute(0, "y"), std::nullopt);
}

TEST_F(PXMLParserTest, AttributeValuesAreDecoded) {
    parse("<a x='1 &gt; 2 &amp;&amp; &quot;'/>");
    EXPECT_EQ(document_.getAttribute(0, "x"), "1 > 2 && \"");
}

TEST_F(PXMLParserTest, DocumentTypeReadsAsAnElement) {
    parse("<!DOCTYPE x><a>t</a>");
    EXPECT_EQ(document_.getName(0), "!DOCTYPE");
    EXPECT_EQ(document_.getNode(1)->parent, 0);
}

TEST_F(PXMLParserTest, ClosingTagAtTheTopEndsTheParse) {
    parse("</a><b>t</b>");
    EXPECT_EQ(document_.getNodeCount(), 0);
}

TEST_F(PXMLParserTest, EmptyAndNullTextGiveAnEmptyDocument) {
    parse("");
    parse("no tag at all");
    EXPECT_EQ(document_.getNodeCount(), 0);
}

TEST_F(PXMLParserTest, EveryPrefixIsReadWithoutHarm) {
    const std::string text =
        "<?xml version='1.0'?><!-- c --><r a='1' b=\"&lt;2&gt;\"><x>t &amp; u</x><y/>"
        "<!-- - -- ---> --><z q='3'>z</z></r>";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        PXML document;
        document.parseText(text.substr(0, length));
        EXPECT_LE(document.getNodeCount(), 4);
    }
}

TEST_F(PXMLParserTest, EveryCorruptedByteIsReadWithoutHarm) {
    const std::string text = "<r a='1'><x>t &amp; u</x><!-- c --><y/></r>";
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const char c : {'<', '>', '/', '&', '\'', '"', '-', '!', '?', ' ', '\xFF'}) {
            std::string changed = text;
            changed[at] = c;
            PXML document;
            document.parseText(changed);
        }
    }
}

TEST_F(PXMLParserTest, TextsOfAMegabyteArriveWhole) {
    const std::string large(1 << 20, 'v');
    parse(("<a x='" + large + "&amp;'>" + large + "</a>"));
    EXPECT_EQ(document_.getAttribute(0, "x"), large + "&");
    EXPECT_EQ(textOf(0), large);
    EXPECT_EQ(lengthOf(0), 1 << 20);
}

TEST_F(PXMLParserTest, TellsWhereEachElementStands) {
    const std::string text = "<?x?> <a b='1'> <c/>\n<d>t</other><e><f> </a></e> ";
    std::vector<PXMLSpan> spans(1);
    document_.parseText(text, &spans);
    ASSERT_EQ(spans.size(), 6U);
    const auto cut = [&](std::size_t i) {
        return text.substr(spans[i].begin, spans[i].end - spans[i].begin);
    };
    EXPECT_EQ(text.substr(spans[1].begin, 9), "<a b='1'>");
    EXPECT_EQ(spans[1].end, PXMLSpan::kNoEnd);
    EXPECT_EQ(cut(2), "<c/>");
    EXPECT_EQ(cut(3), "<d>t</other>");
    EXPECT_EQ(cut(4), "<e><f> </a></e>");
    EXPECT_EQ(cut(5), "<f> </a>");
}

TEST_F(PXMLParserTest, TellsWhereTheElementsOfASecondTextStand) {
    parse("<a><b/></a>");
    std::vector<PXMLSpan> spans;
    document_.parseText(" <c></c>", &spans);
    ASSERT_EQ(spans.size(), 1U);
    EXPECT_EQ(spans[0].begin, 1U);
    EXPECT_EQ(spans[0].end, 8U);
}

}  // namespace
