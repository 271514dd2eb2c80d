#include "checking/source_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Reading {
    bool isRead;
    std::vector<std::string> findings;
};

Reading reading(std::string_view text) {
    Findings findings(text);
    SourceDocument document;
    const bool isRead = document.read(text, findings);
    return {isRead, shown(findings.sorted())};
}

TEST(SourceDocument, KnowsWhereTheNodesOfTheSetupsReaderStand) {
    const std::string_view text = "<A>\n <B x='1' X='2'> text </B><C/></A>";
    Findings findings(text);
    SourceDocument document;
    ASSERT_TRUE(document.read(text, findings));
    EXPECT_TRUE(findings.empty());
    const std::int32_t node = document.xml().findByName("B");
    EXPECT_EQ(document.placeOf(node), text.find("<B"));
    EXPECT_EQ(document.placeOfText(node), text.find("text"));
    EXPECT_EQ(document.placeOfAttribute(node, std::size_t{0}), text.find("1'"));
    EXPECT_EQ(document.placeOfAttributeName(node, 0), text.find("x="));
    EXPECT_EQ(document.placeOfAttributeName(node, 1), text.find("X="));
    EXPECT_EQ(document.placeOfAttribute(node, "x"), text.find("2'")) << "the later one counts";
}

TEST(SourceDocument, TakesTheElementForWhatItDoesNotHave) {
    const std::string_view text = "<A><B/></A>";
    Findings findings(text);
    SourceDocument document;
    ASSERT_TRUE(document.read(text, findings));
    EXPECT_EQ(document.placeOfText(1), 3U);
    EXPECT_EQ(document.placeOfAttribute(1, "x"), 3U);
    EXPECT_EQ(document.placeOfAttribute(1, std::size_t{0}), 3U);
    EXPECT_EQ(document.placeOfAttributeName(1, 7), 3U);
    for (const std::int32_t bad : {-1, 2}) {
        EXPECT_EQ(document.placeOf(bad), 0U);
        EXPECT_EQ(document.placeOfText(bad), 0U);
        EXPECT_EQ(document.placeOfAttribute(bad, "x"), 0U);
        EXPECT_EQ(document.placeOfAttributeName(bad, 0), 0U);
    }
}

TEST(SourceDocument, IsReadWhereTheReadersAgree) {
    for (const std::string_view text :
         {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- a > b -->\n<A>\r\n <B/>\r\n</A>\n",
          "<A><!---a--><B/><!----></A>", "<A ><B\n x = '1'\n/></A >", "<A>&lt;&amp;&quot;&apos;&gt;</A>",
          "<A>one\r\ntwo</A>", "<A><B></B>\n<C> </C></A>"}) {
        const Reading read = reading(text);
        EXPECT_TRUE(read.isRead) << text;
        EXPECT_THAT(read.findings, IsEmpty()) << text;
    }
}

TEST(SourceDocument, FindsWhatASetupReadsDifferently) {
    const struct {
        std::string_view text;
        const char* finding;
        bool isRead;
    } kCases[] = {
        {"<A x='a>b'/>", "1:8 form-greater-in-value", false},
        {"<A x='a\nb'/>", "1:7 form-line-break", true},
        {"<A x='a\tb'/>", "1:7 form-line-break", true},
        {"<A>&#65;</A>", "1:4 form-character-reference", true},
        {"<A>a<B/>b</A>", "1:4 form-text-lost", true},
        {"<A>a<!-- c -->b</A>", "1:4 form-text-lost", true},
        {"<A>\n  lost <!-- c --></A>", "2:3 form-text-lost", true},
        {"<A><B/>lost</A>", "1:8 form-text-lost", true},
        {"<A><![CDATA[x]]></A>", "1:4 form-cdata", false},
        {"<A><?a b><c>?><B/></A>", "1:15 form-read-differently", false},
    };
    for (const auto& test : kCases) {
        const Reading read = reading(test.text);
        EXPECT_THAT(read.findings, ElementsAre(test.finding)) << test.text;
        EXPECT_EQ(read.isRead, test.isRead) << test.text;
    }
}

}  // namespace
