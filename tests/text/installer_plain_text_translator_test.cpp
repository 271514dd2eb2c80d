#include "text/installer_plain_text_translator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "play_events.h"

namespace {

// Wraps whole paragraphs to 20 bytes without padding, and indents each level by two blanks.
PlainTextSettings console() {
    PlainTextSettings settings;
    settings.wrap = true;
    settings.collectInline = true;
    settings.justify = false;
    settings.fillChar = ' ';
    settings.levelIndent = 2;
    settings.width = 20;
    return settings;
}

std::string plain(std::string_view script, const PlainTextSettings& settings = {}) {
    InstallerPlainTextTranslator translator(settings);
    return played(translator, script);
}

TEST(InstallerPlainTextTranslator, HasTheDefaultSettings) {
    const PlainTextSettings settings;
    EXPECT_FALSE(settings.ansiBold);
    EXPECT_TRUE(settings.indentLists);
    EXPECT_FALSE(settings.wrap);
    EXPECT_FALSE(settings.collectInline);
    EXPECT_TRUE(settings.justify);
    EXPECT_EQ(settings.fillChar, '\t');
    EXPECT_EQ(settings.bulletChar, '-');
    EXPECT_EQ(settings.levelIndent, 1U);
    EXPECT_EQ(settings.width, 0U);
}

struct EventCase {
    const char* script;
    const char* plainResult;  // default settings
    const char* boldResult;   // with ansiBold
};

TEST(InstallerPlainTextTranslator, EveryEventHasItsOutput) {
    const EventCase cases[] = {
        {"<doc></doc>", "", ""},
        {"<h1>a</h1>", "a\n\n", "\033[1ma\033[0m\n\n"},
        {"<h6>a</h6>", "a\n\n", "\033[1ma\033[0m\n\n"},
        {"<ul></ul>", "", ""},
        {"<ul><li>a</li><li>b</li></ul>", "- a\n- b\n", "- a\n- b\n"},
        {"<ol><li>a</li><li>b</li></ol>", "1. a\n2. b\n", "1. a\n2. b\n"},
        {"<al><li>a</li><li>b</li></al>", "a. a\nb. b\n", "a. a\nb. b\n"},
        {"<b>a</b>", "a", "\033[1ma\033[0m"},
        {"<i>a</i>", "a", "\033[1ma\033[0m"},
        {"<b><i>a</i></b>", "a", "\033[1m\033[1ma\033[0m\033[0m"},
        {"<q>a</q>", "a", "a"},
        {"<p>a</p>", "a\n", "a\n"},
        {"<p></p>", "\n", "\n"},
        {"<p>a<b>b</b>c</p>", "abc\n", "a\033[1mb\033[0mc\n"},
        {"<c>a<i>b</i></c>", "ab", "a\033[1mb\033[0m"},
        {"a", "a", "a"},
    };
    PlainTextSettings bold;
    bold.ansiBold = true;
    for (const EventCase& one : cases) {
        EXPECT_EQ(plain(one.script), one.plainResult) << one.script;
        EXPECT_EQ(plain(one.script, bold), one.boldResult) << one.script;
    }
}

TEST(InstallerPlainTextTranslator, WritesTheEventsOfWrappedParagraphs) {
    const EventCase cases[] = {
        {"<doc></doc>", "", ""},
        {"<h1>a</h1>", "a\n\n\n", "\033[1ma\n\033[0m\n\n"},
        {"<ul><li>a</li><li>b</li></ul>", "- a\n\n- b\n\n", "- a\n\n- b\n\n"},
        {"<b>a</b>", "a\n", "\033[1ma\033[0m\n"},
        {"<i>a</i>", "a\n", "\033[1ma\033[0m\n"},
        {"<b><i>a</i></b>", "a\n", "\033[1m\033[1ma\033[0m\033[0m\n"},
        {"<p>a</p>", "a\n\n", "a\n\n"},
        {"<p></p>", "\n\n", "\n\n"},
        {"<p>a<b>b</b>c</p>", "abc\n\n", "a\033[1mb\033[0mc\n\n"},
        {"<p>a<b>b<i>c</i></b>d</p>", "abcd\n\n", "a\033[1mb\033[1mc\033[0m\033[0md\n\n"},
        {"<c>a<i>b</i></c>", "ab\n", "a\033[1mb\033[0m\n"},
        {"<c>a</c><c>b</c>", "a\nb\n", "a\nb\n"},
        {"<q><p>a</p></q>", "a\n\n", "a\n\n"},
        {"a", "a\n", "a\n"},
    };
    PlainTextSettings bold = console();
    bold.ansiBold = true;
    for (const EventCase& one : cases) {
        EXPECT_EQ(plain(one.script, console()), one.plainResult) << one.script;
        EXPECT_EQ(plain(one.script, bold), one.boldResult) << one.script;
    }
}

TEST(InstallerPlainTextTranslator, AHeadingHasNoUnderlineAndEndsWithTwoLineFeeds) {
    EXPECT_EQ(plain("<h1>Title</h1><p>text</p>"), "Title\n\ntext\n");
    EXPECT_EQ(plain("<h2>Title</h2>", console()), "Title\n\n\n") << "the text's own line feed comes first";
}

TEST(InstallerPlainTextTranslator, WrapsEachTextOnItsOwnWithoutCollecting) {
    PlainTextSettings settings = console();
    settings.collectInline = false;
    EXPECT_EQ(plain("<p>a<b>b</b>c</p>", settings), "a\nb\nc\n\n");
    settings.ansiBold = true;
    EXPECT_EQ(plain("<p>a<b>b</b>c</p>", settings), "a\n\033[1mb\n\033[0mc\n\n");
}

TEST(InstallerPlainTextTranslator, CollectsOnlyTheTerminalsMarksWithoutWrapping) {
    PlainTextSettings settings;
    settings.collectInline = true;
    EXPECT_EQ(plain("<p>a<b>b</b>c</p>", settings), "abc\n");
    settings.ansiBold = true;
    EXPECT_EQ(plain("<p>a<b>b</b>c</p>", settings), "abc\033[1m\033[0m\n");
}

TEST(InstallerPlainTextTranslator, LeavesTextsAsTheyAreWithoutWrapping) {
    PlainTextSettings settings;
    settings.width = 3;
    EXPECT_EQ(plain("<p>aa  bb cc</p>", settings), "aa  bb cc\n");
    EXPECT_EQ(plain("<ul><li>aa bb cc</li></ul>", settings), "- aa bb cc\n");
}

TEST(InstallerPlainTextTranslator, LeavesATextThatFitsAsItIs) {
    PlainTextSettings settings = console();
    settings.width = 8;
    settings.justify = true;
    EXPECT_EQ(plain("<p>aa    bb</p>", settings), "aa    bb\n\n") << "neither split nor padded";
    EXPECT_EQ(plain("<p>aa     bb</p>", settings), "aa bb\n\n") << "a byte too many, so it is split";
    EXPECT_EQ(plain("<p>aaaaaaaa</p>", settings), "aaaaaaaa\n\n");
}

TEST(InstallerPlainTextTranslator, PadsOnlyWhenTheSettingsSaySo) {
    PlainTextSettings settings = console();
    EXPECT_EQ(plain("<p>one two three four five six</p>", settings), "one two three four\nfive six\n\n");
    settings.justify = true;
    EXPECT_EQ(plain("<p>one two three four five six</p>", settings), "one  two three four\nfive six\n\n")
        << "the last line is not padded";
    EXPECT_EQ(plain("<p>one two three longer-word</p>", settings), "one   two   three\nlonger-word\n\n")
        << "6 blanks for 3 words, of which the last one's 2 aren't written";
}

TEST(InstallerPlainTextTranslator, AWordThatIsTooLongIsNotPadded) {
    PlainTextSettings settings = console();
    settings.justify = true;
    settings.width = 8;
    EXPECT_EQ(plain("<p>aa longer-than-that bb</p>", settings), "aa\nlonger-than-that\nbb\n\n");
    EXPECT_EQ(plain("<p>longer-than-that bb</p>", settings), "longer-than-that\nbb\n\n");
}

TEST(InstallerPlainTextTranslator, EmphasisIsWrappedWithItsParagraph) {
    EXPECT_EQ(plain("<p>one two <b>three four</b> five <i>six</i></p>", console()),
              "one two three four\nfive six\n\n");
}

TEST(InstallerPlainTextTranslator, IndentsTheLinesOfAnItemAfterItsMarker) {
    const EventCase cases[] = {
        {"<ul><li>one two three four five</li></ul>", "- one two three\n  four five\n\n", nullptr},
        {"<ol><li>one two three four five</li></ol>", "1. one two three\n   four five\n\n", nullptr},
        {"<al><li>one two three four five</li></al>", "a. one two three\n   four five\n\n", nullptr},
    };
    for (const EventCase& one : cases) {
        EXPECT_EQ(plain(one.script, console()), one.plainResult) << one.script;
    }
}

TEST(InstallerPlainTextTranslator, IndentsTheTextOfTheNinthItemForTheTenth) {
    std::string script = "<ol>";
    for (int i = 1; i <= 8; ++i) {
        script += "<li>a</li>";
    }
    script += "<li>one two three four five</li></ol>";
    const std::string text = plain(script, console());
    EXPECT_EQ(text.substr(text.find("9. ")), "9. one two three\n    four five\n\n");
}

TEST(InstallerPlainTextTranslator, IndentsNestedListsByTheirLevel) {
    PlainTextSettings settings = console();
    const char* const script =
        "<ul><li>a<ol><li>b<al><li>one two three four</li></al></li></ol></li><li>c</li></ul>";
    EXPECT_EQ(plain(script, settings),
              "- a\n"
              "  1. b\n"
              "    a. one two\n"
              "       three four\n"
              "\n\n\n"
              "- c\n"
              "\n");
    settings.fillChar = '.';
    settings.levelIndent = 1;
    settings.bulletChar = '+';
    EXPECT_EQ(plain(script, settings),
              "+ a\n"
              ".1. b\n"
              "..a. one two three\n"
              ".....four\n"
              "\n\n\n"
              "+ c\n"
              "\n");
    settings.indentLists = false;
    EXPECT_EQ(plain(script, settings), "+ a\n1. b\na. one two three four\n\n\n\n+ c\n\n");
}

TEST(InstallerPlainTextTranslator, GivesTextsTheWholeWidthWhenListsAreNotIndented) {
    PlainTextSettings settings = console();
    settings.indentLists = false;
    EXPECT_EQ(plain("<ul><li>one two three four five</li></ul>", settings), "- one two three four\nfive\n\n");
}

TEST(InstallerPlainTextTranslator, IndentsALaterParagraphOfAnItemWhenItIsWrapped) {
    EXPECT_EQ(
        plain("<ul><li><p>one two three four five</p><p>six seven eight nine ten</p></li></ul>", console()),
        "- one two three\n"
        "  four five\n"
        "\n"
        "  six seven eight\n"
        "  nine ten\n"
        "\n\n");
    EXPECT_EQ(plain("<ul><li><p>a</p><p>b</p></li></ul>", console()), "- a\n\nb\n\n\n")
        << "a line that fits isn't";
}

TEST(InstallerPlainTextTranslator, IndentsAHeadingOrQuoteInAnItemWhenItIsWrapped) {
    EXPECT_EQ(plain("<ul><li><h2>one two three four five</h2></li></ul>", console()),
              "-   one two three\n  four five\n\n\n\n");
    EXPECT_EQ(plain("<ul><li><q><p>one two three four five</p></q></li></ul>", console()),
              "-   one two three\n  four five\n\n\n");
}

TEST(InstallerPlainTextTranslator, StartsTheNextItemAfterItsMarkerAgain) {
    EXPECT_EQ(plain("<ul><li><p>a</p><p>b</p></li><li><p>one two three four five</p></li></ul>", console()),
              "- a\n\nb\n\n\n- one two three\n  four five\n\n\n");
}

TEST(InstallerPlainTextTranslator, StartsANestedListAfterItsMarker) {
    EXPECT_EQ(plain("<ul><li><p>a</p><p>b</p><ul><li>one two three four</li></ul></li></ul>", console()),
              "- a\n\nb\n\n  - one two three\n    four\n\n\n");
}

TEST(InstallerPlainTextTranslator, DoesNotIndentTextAfterAList) {
    EXPECT_EQ(plain("<ul><li>a</li></ul><p>one two three four five</p>", console()),
              "- a\n\none two three four\nfive\n\n");
}

TEST(InstallerPlainTextTranslator, LettersContinueAsTheNextByteValues) {
    std::string script = "<al>";
    for (int i = 0; i < 30; ++i) {
        script += "<li>x</li>";
    }
    const std::string text = plain(script + "</al>");
    EXPECT_NE(text.find("z. x\n{. x\n|. x\n}. x\n~. x\n"), std::string::npos) << text;
}

TEST(InstallerPlainTextTranslator, LetterMarkersPassThroughAllBytes) {
    std::string script = "<al>";
    for (int i = 0; i < 300; ++i) {
        script += "<li>x</li>";
    }
    InstallerPlainTextTranslator translator;
    EventPlayer(translator).play(script + "</al>");
    const std::string text = translator.getResult();
    ASSERT_EQ(text.size(), 300U * 5);
    EXPECT_EQ(text[255 * 5], static_cast<char>('a' + 255 - 256));
    EXPECT_EQ(text[159 * 5], '\0') << "even the zero byte";
}

TEST(InstallerPlainTextTranslator, CountsBytesForUtf8Too) {
    PlainTextSettings settings = console();
    settings.width = 6;
    EXPECT_EQ(plain("<p>\xC3\xA4\xC3\xA4 bb</p>", settings), "\xC3\xA4\xC3\xA4\nbb\n\n");
    EXPECT_EQ(plain("<p>aa bbb</p>", settings), "aa bbb\n\n");
}

TEST(InstallerPlainTextTranslator, WidthZeroGivesEachWordALine) {
    PlainTextSettings settings = console();
    settings.width = 0;
    settings.justify = true;
    EXPECT_EQ(plain("<p>a b</p>", settings), "a\nb\n\n");
    EXPECT_EQ(plain("<ul><li>a b</li></ul>", settings), "- a\n  b\n\n");
}

TEST(InstallerPlainTextTranslator, AcceptsExtremeSettings) {
    PlainTextSettings settings = console();
    settings.width = std::numeric_limits<std::uint32_t>::max();
    settings.levelIndent = std::numeric_limits<std::uint32_t>::max();
    EXPECT_EQ(plain("<ul><li>a<ul><li>b</li></ul></li></ul>", settings),
              "- a\n" + std::string(InstallerPlainTextTranslator::kLargestLevelIndent, ' ') + "- b\n\n\n");
    settings.width = 1;
    EXPECT_EQ(plain("<ul><li>a<ul><li>b c</li></ul></li></ul>", settings),
              "- a\n" + std::string(128, ' ') + "- b\n" + std::string(130, ' ') + "c\n\n\n");
}

TEST(InstallerPlainTextTranslator, IndentsDeepListsUpToALimit) {
    std::string begin;
    std::string end;
    for (int i = 0; i < 1000; ++i) {
        begin += "<ul><li>x";
        end += "</li></ul>";
    }
    const std::string text = plain(begin + end, console());
    EXPECT_NE(text.find("\n" + std::string(128, ' ') + "- x\n"), std::string::npos);
    EXPECT_EQ(text.find(std::string(131, ' ')), std::string::npos);
}

TEST(InstallerPlainTextTranslator, EmphasisBeyondTheCountersDoesNoHarm) {
    std::string script;
    for (int i = 0; i < 300; ++i) {
        script += "<b>";
    }
    script += "x";
    for (int i = 0; i < 300; ++i) {
        script += "</b>";
    }
    EXPECT_NE(plain(script, console()).find('x'), std::string::npos);
}

TEST(InstallerPlainTextTranslator, EndsWithoutBeginsDoNoHarm) {
    EXPECT_EQ(plain("</li></ul></ul><li>a</li>"), "\na\n");
}

TEST(InstallerPlainTextTranslator, SizesThatNoTextHasAreNotReserved) {
    InstallerPlainTextTranslator translator;
    translator.reserve(std::numeric_limits<std::size_t>::max());
    translator.reserve(0);
    translator.reserve(100000);
    EXPECT_EQ(played(translator, "a"), "a");
}

std::string withoutWhiteSpaceAndTags(const std::string& text) {
    std::string letters;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '<') {
            i = std::min(text.find('>', i), text.size());
        } else if (text[i] >= 'a' && text[i] <= 'z') {
            letters += text[i];
        }
    }
    return letters;
}

TEST(InstallerPlainTextTranslator, AnyEventsKeepAllLettersInABoundedOutput) {
    for (std::uint32_t seed = 0; seed < 300; ++seed) {
        std::string script = RandomEvents(seed).document(8);
        // Markers made of letters would be counted as text.
        for (std::size_t at = script.find("al>"); at != std::string::npos; at = script.find("al>")) {
            script.replace(at, 3, "ol>");
        }
        PlainTextSettings settings = console();
        settings.justify = seed % 2 == 0;
        settings.width = 100;
        const std::string text = plain(script, settings);
        EXPECT_EQ(withoutWhiteSpaceAndTags(text), withoutWhiteSpaceAndTags(script)) << script;
        EXPECT_LT(text.size(), 1000 + script.size() * 20) << script;
    }
}

}  // namespace
