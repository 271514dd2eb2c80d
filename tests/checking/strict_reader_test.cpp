#include "checking/strict_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> refusal(std::string_view text) {
    Findings findings(text);
    StrictReader reader(text, findings);
    EXPECT_FALSE(reader.read()) << text;
    return shown(findings.sorted());
}

// Findings in a text that is well-formed all the same.
std::vector<std::string> remarks(std::string_view text) {
    Findings findings(text);
    StrictReader reader(text, findings);
    EXPECT_TRUE(reader.read()) << text;
    return shown(findings.sorted());
}

TEST(StrictReader, TellsWhereEverythingStands) {
    const std::string_view text = "<A>\n  <B x='1'  yz = \"22\"/> t&amp;\r\nu<C/>v</A>";
    Findings findings(text);
    StrictReader reader(text, findings);
    ASSERT_TRUE(reader.read());
    EXPECT_TRUE(findings.empty());
    ASSERT_EQ(reader.elements().size(), 3U);
    const StrictElement& top = reader.elements()[0];
    EXPECT_EQ(top.name, "A");
    EXPECT_EQ(top.parent, -1);
    EXPECT_EQ(top.at, 0U);
    EXPECT_EQ(top.textAt, text.find("t&amp;"));
    EXPECT_EQ(top.text, "\n   t&\nuv");
    const StrictElement& child = reader.elements()[1];
    EXPECT_EQ(child.parent, 0);
    EXPECT_EQ(child.at, text.find("<B"));
    EXPECT_EQ(child.textAt, 0U);
    ASSERT_EQ(child.attributes.size(), 2U);
    EXPECT_EQ(child.attributes[0].nameAt, text.find("x="));
    EXPECT_EQ(child.attributes[0].valueAt, text.find("1'"));
    EXPECT_EQ(child.attributes[1].name, "yz");
    EXPECT_EQ(child.attributes[1].value, "22");
    EXPECT_EQ(child.attributes[1].nameAt, text.find("yz"));
    EXPECT_EQ(child.attributes[1].valueAt, text.find("22"));
    EXPECT_EQ(child.attributes[1].valueEnd, text.find("22") + 2);
}

TEST(StrictReader, RefusesWhatIsNotXml) {
    const struct {
        std::string_view text;
        const char* finding;
    } kCases[] = {
        {"", "1:1 form-empty"},
        {"text alone", "1:1 form-empty"},
        {"<A>\n <B>\n</A>", "3:1 form-mismatched-tag"},
        {"<A>\n <B>", "2:2 form-unclosed"},
        {"<A>\n <B", "2:2 form-unclosed"},
        {"<A><!-- x", "1:4 form-unclosed"},
        {"<A>\n <B>&am", "2:5 form-unclosed"},
        {"<?xml version='1.0'?>", "1:1 form-empty"},
        {"<A><!-- a -- b </A>", "1:11 form-comment"},
        {"<A x='&lt;&#65;&nbsp;'/>", "1:16 form-reference"},
        {"<A", "1:1 form-unclosed"},
        {"<A>&</A>", "1:4 form-reference"},
        {"<A>a & b</A>", "1:6 form-reference"},
        {"<A>&copy;</A>", "1:4 form-reference"},
        {"<A x='&nbsp;'/>", "1:7 form-reference"},
        {"<A x=1/>", "1:6 form-unquoted-attribute"},
        {"<A x='1' x='2'/>", "1:10 form-duplicate-attribute"},
        {"<A x='a<b'/>", "1:8 form-less-in-value"},
        {"<A/>\n<B/>", "2:1 form-after-root"},
        {"<A/>\nmore", "2:1 form-after-root"},
        {"<A><!-- a -- b --></A>", "1:11 form-comment"},
        {"<A><!-- a ---></A>", "1:11 form-comment"},
        {"<A>\xFF</A>", "1:4 form-encoding"},
        {"<A>a\xC3(</A>", "1:5 form-encoding"},
        {"<A x='\xED\xA0\x80'/>", "1:7 form-encoding"},
        {"\xFF\xFE<\0A\0", "1:1 form-encoding"},
        {"<?xml version='1.0' encoding='nonsense'?><A/>", "1:1 form-encoding"},
        {"<!DOCTYPE A><A/>", "1:1 form-doctype"},
        {"<!DOCTYPE A [<!ENTITY e 'x'>]><A>&e;</A>", "1:1 form-doctype"},
        {"<A><3/></A>", "1:5 form-not-well-formed"},
        {"<A x></A>", "1:5 form-not-well-formed"},
        {"<A>\x01</A>", "1:4 form-not-well-formed"},
    };
    for (const auto& test : kCases) {
        EXPECT_THAT(refusal(test.text), ElementsAre(test.finding)) << test.text;
    }
    EXPECT_THAT(refusal(std::string_view("<A>\0</A>", 8)), ElementsAre("1:4 form-zero-byte"));
}

TEST(StrictReader, NamesWhatASetupReadsDifferently) {
    EXPECT_THAT(remarks("<A>&#65;</A>"), ElementsAre("1:4 form-character-reference"));
    EXPECT_THAT(remarks("<A x='&#x41;'/>"), ElementsAre("1:7 form-character-reference"));
    EXPECT_THAT(remarks("<A><!-- &#65; --><?a &#65;?></A>"), IsEmpty());
    EXPECT_THAT(remarks("<A><![CDATA[x]]></A>"), ElementsAre("1:4 form-cdata"));
    EXPECT_THAT(remarks("<?xml version='1.0' encoding='ISO-8859-1'?><A>\xE4</A>"),
                ElementsAre("1:1 form-encoding"));
    EXPECT_THAT(remarks("<?xml version='1.0' encoding='utf-8'?><A/>"), IsEmpty());
}

TEST(StrictReader, AcceptsWhatIsWellFormed) {
    EXPECT_THAT(remarks("\xEF\xBB\xBF<A/>"), IsEmpty());
    EXPECT_THAT(remarks("<A>&lt;&gt;&amp;&quot;&apos;</A>"), IsEmpty());
    EXPECT_THAT(remarks("<A><!---a--><!----><!-- b --></A>\n<!-- end -->\n"), IsEmpty());
    EXPECT_THAT(remarks("<A xmlns:x='urn:y' x:b='1'/>"), IsEmpty());
}

TEST(StrictReader, ReadsDeepNestingWithoutRecursion) {
    constexpr int kDepth = 100'000;
    std::string text;
    for (int i = 0; i < kDepth; ++i) {
        text += "<A>";
    }
    EXPECT_THAT(refusal(text), ElementsAre("1:" + std::to_string(3 * kDepth - 2) + " form-unclosed"));
    for (int i = 0; i < kDepth; ++i) {
        text += "</A>";
    }
    EXPECT_THAT(remarks(text), IsEmpty());
}

}  // namespace
