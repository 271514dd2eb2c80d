#include "text/basic_html_translator.h"

#include <gtest/gtest.h>

#include "play_events.h"

namespace {

// Settings that write nothing but the body, indented from the margin.
HTMLSettings bodyOnly() {
    HTMLSettings settings;
    settings.emitHead = false;
    settings.emitFoot = false;
    settings.baseLevel = 0;
    return settings;
}

std::string html(std::string_view script, const HTMLSettings& settings = bodyOnly()) {
    BasicHTMLTranslator translator(settings);
    return played(translator, script);
}

TEST(BasicHTMLTranslator, HasTheDefaultSettings) {
    const HTMLSettings settings;
    EXPECT_TRUE(settings.emitHead && settings.emitFoot && settings.indent && settings.newlines);
    EXPECT_EQ(settings.indentWidth, 1);
    EXPECT_EQ(settings.baseLevel, 2);
    EXPECT_EQ(settings.indentChar, '\t');
    EXPECT_EQ(settings.newlineChar, '\n');
    EXPECT_TRUE(settings.title.empty() && settings.customHead.empty() && settings.customFoot.empty());
}

constexpr const char* kHead =
    "<!DOCTYPE html>\n"
    "<html>\n"
    "\t<head>\n"
    "\t\t<title>[Untitled]</title>\n"
    "\t\t<meta http-equiv=\"content-type\" content=\"text/html; charset=UTF-8\">\n"
    "\t</head>\n"
    "\t<body>\n";
constexpr const char* kFoot = "\t</body>\n</html>\n";

TEST(BasicHTMLTranslator, ADocumentHasHeadAndFoot) {
    EXPECT_EQ(html("<doc></doc>", {}), std::string(kHead) + kFoot);
    EXPECT_EQ(html("<doc><p>a</p></doc>", {}), std::string(kHead) + "\t\t<p>a</p>\n" + kFoot);
}

TEST(BasicHTMLTranslator, HeadAndFootAreSwitchedOffIndependently) {
    HTMLSettings settings;
    settings.emitHead = false;
    EXPECT_EQ(html("<doc></doc>", settings), kFoot);
    settings.emitHead = true;
    settings.emitFoot = false;
    EXPECT_EQ(html("<doc></doc>", settings), kHead);
}

TEST(BasicHTMLTranslator, TheTitleReplacesItsPlaceholder) {
    HTMLSettings settings;
    settings.title = "Notes & more";
    const std::string text = html("<doc></doc>", settings);
    EXPECT_NE(text.find("\t\t<title>Notes & more</title>\n"), std::string::npos);
    EXPECT_EQ(text.find("[Untitled]"), std::string::npos);
}

TEST(BasicHTMLTranslator, CustomHeadAndFootReplaceTheDefaultRows) {
    HTMLSettings settings;
    settings.customHead = "<x>";
    settings.customFoot = "</x>";
    settings.title = "unused";
    EXPECT_EQ(html("<doc></doc>", settings), "<x></x>");
    settings.emitHead = false;
    settings.emitFoot = false;
    EXPECT_EQ(html("<doc></doc>", settings), "");
}

TEST(BasicHTMLTranslator, RowsOfTheHeadAreIndentedByTheirLevels) {
    HTMLSettings settings;
    settings.indentWidth = 3;
    settings.indentChar = ' ';
    settings.newlineChar = '|';
    EXPECT_EQ(html("<doc></doc>", settings),
              "<!DOCTYPE html>|<html>|   <head>|      <title>[Untitled]</title>|"
              "      <meta http-equiv=\"content-type\" content=\"text/html; charset=UTF-8\">|"
              "   </head>|   <body>|   </body>|</html>|");
    settings.newlines = false;
    settings.indentWidth = 0;
    EXPECT_EQ(html("<doc></doc>", settings),
              "<!DOCTYPE html><html><head><title>[Untitled]</title>"
              "<meta http-equiv=\"content-type\" content=\"text/html; charset=UTF-8\">"
              "</head><body></body></html>");
}

TEST(BasicHTMLTranslator, TheIndentFlagAffectsOnlyTheBody) {
    HTMLSettings settings;
    settings.indent = false;
    EXPECT_EQ(html("<doc><p>a</p></doc>", settings), std::string(kHead) + "<p>a</p>\n" + kFoot);
}

struct EventCase {
    const char* script;
    const char* result;
};

TEST(BasicHTMLTranslator, EveryEventHasItsOutput) {
    const EventCase cases[] = {
        {"<h1>a</h1>", "<h1>a</h1>\n"},
        {"<h2>a</h2>", "<h2>a</h2>\n"},
        {"<h3>a</h3>", "<h3>a</h3>\n"},
        {"<h4>a</h4>", "<h4>a</h4>\n"},
        {"<h5>a</h5>", "<h5>a</h5>\n"},
        {"<h6>a</h6>", "<h6>a</h6>\n"},
        {"<ul></ul>", "<ul>\n</ul>\n"},
        {"<ol></ol>", "<ol>\n</ol>\n"},
        {"<al></al>", "<ol type=\"a\">\n</ol>\n"},
        {"<li>a</li>", "<li>a</li>\n"},
        {"<b>a</b>", "<strong>a</strong>"},
        {"<i>a</i>", "<em>a</em>"},
        {"<q></q>", "<blockquote>\n</blockquote>\n"},
        {"<p>a</p>", "<p>a</p>\n"},
        {"<c>a</c>", "a"},
        {"a", "a"},
    };
    for (const EventCase& one : cases) {
        EXPECT_EQ(html(one.script), one.result) << one.script;
    }
}

TEST(BasicHTMLTranslator, BlocksInAnItemEndItsLineAndAreIndented) {
    const EventCase cases[] = {
        {"<li><h1>a</h1></li>", "<li>\n\t<h1>a</h1>\n</li>\n"},
        {"<li><ul></ul></li>", "<li>\n\t<ul>\n\t</ul>\n</li>\n"},
        {"<li><q></q></li>", "<li>\n\t<blockquote>\n\t</blockquote>\n</li>\n"},
        {"<li><p>a</p></li>", "<li>\n\t<p>a</p>\n</li>\n"},
        {"<li><p>a</p><p>b</p></li>", "<li>\n\t<p>a</p>\n\t<p>b</p>\n</li>\n"},
        {"<li>a<b>b</b><i>c</i></li>", "<li>a<strong>b</strong><em>c</em></li>\n"},
        {"<li><c>a<b>b</b></c></li>", "<li>a<strong>b</strong></li>\n"},
        {"<q><p>a</p></q>", "<blockquote>\n\t<p>a</p>\n</blockquote>\n"},
        {"<q><q><h2>a</h2></q></q>",
         "<blockquote>\n\t<blockquote>\n\t\t<h2>a</h2>\n\t</blockquote>\n</blockquote>\n"},
    };
    for (const EventCase& one : cases) {
        EXPECT_EQ(html(one.script), one.result) << one.script;
    }
}

TEST(BasicHTMLTranslator, IndentsEachNestedListOneLevelMore) {
    EXPECT_EQ(html("<ul><li>a<ol><li>b</li></ol></li><li>c</li></ul>"),
              "<ul>\n"
              "\t<li>a\n"
              "\t\t<ol>\n"
              "\t\t\t<li>b</li>\n"
              "\t\t</ol>\n"
              "\t</li>\n"
              "\t<li>c</li>\n"
              "</ul>\n");
}

TEST(BasicHTMLTranslator, TheBodyStartsAtTheBaseLevel) {
    HTMLSettings settings = bodyOnly();
    settings.baseLevel = 2;
    settings.indentWidth = 2;
    settings.indentChar = '.';
    EXPECT_EQ(html("<q><p>a</p></q>", settings), "....<blockquote>\n......<p>a</p>\n....</blockquote>\n");
}

TEST(BasicHTMLTranslator, FlatOutputHasNeitherIndentationNorNewlines) {
    HTMLSettings settings = bodyOnly();
    settings.baseLevel = 2;
    settings.indent = false;
    settings.newlines = false;
    EXPECT_EQ(html("<h1>t</h1><ul><li><p>a</p></li><li>b</li></ul><q><p>c</p></q>", settings),
              "<h1>t</h1><ul><li><p>a</p></li><li>b</li></ul><blockquote><p>c</p></blockquote>");
    settings.indent = true;
    EXPECT_EQ(html("<li><p>a</p></li>", settings), "\t\t<li>\t\t\t<p>a</p>\t\t</li>");
}

TEST(BasicHTMLTranslator, TheFourSpecialCharactersAreEscaped) {
    BasicHTMLTranslator translator(bodyOnly());
    translator.text("a<b & \"c\" > 'd'");
    EXPECT_EQ(translator.getText(), "a&lt;b &amp; &quot;c&quot; &gt; 'd'");
    translator.text("&");
    translator.text("<>");
    translator.text("");
    translator.text("\xC3\xA4\xFF;");
    EXPECT_EQ(translator.getText(), "a&lt;b &amp; &quot;c&quot; &gt; 'd'&amp;&lt;&gt;\xC3\xA4\xFF;");
}

TEST(BasicHTMLTranslator, BeginDocumentStartsANewDocument) {
    BasicHTMLTranslator translator(bodyOnly());
    EventPlayer(translator).play("<ul><p>a</p>");
    EXPECT_EQ(played(translator, "<doc><p>b</p></doc>"), "<p>b</p>\n");
}

TEST(BasicHTMLTranslator, SizesThatNoTextHasAreNotReserved) {
    BasicHTMLTranslator translator(bodyOnly());
    translator.reserve(static_cast<std::size_t>(-1));
    translator.reserve(0);
    translator.reserve(100000);
    EXPECT_EQ(played(translator, "a"), "a");
}

TEST(BasicHTMLTranslator, EndsWithoutBeginsDoNoHarm) {
    EXPECT_EQ(html("</ul></ul></q></li>a"), "</ul>\n</ul>\n</blockquote>\n</li>\na");
}

TEST(BasicHTMLTranslator, AnyEventsGiveBalancedTags) {
    for (std::uint32_t seed = 0; seed < 300; ++seed) {
        const std::string script = RandomEvents(seed).document(8);
        const std::string text = html(script, {});
        const auto count = [&text](std::string_view what) {
            std::size_t found = 0;
            for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
                ++found;
            }
            return found;
        };
        for (const std::string tag : {"ul>", "li>", "strong>", "em>", "blockquote>", "p>", "h1>", "h6>"}) {
            EXPECT_EQ(count("<" + tag), count("</" + tag)) << tag << " " << script;
        }
        EXPECT_EQ(count("<ol"), count("</ol>")) << script;
        EXPECT_LT(text.size(), 2000 + script.size() * 12) << script;
    }
}

}  // namespace
