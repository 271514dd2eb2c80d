#include "ui/gui/wx_rich_edit_translator.h"

#include <gtest/gtest.h>

#include "rich_text_script.h"
#include "text/play_events.h"

namespace {

std::string rich(std::string_view script, const RichEditSettings& settings = {}) {
    RichTextCommands commands;
    WxRichEditTranslator translator(commands, settings);
    EventPlayer(translator).play(script);
    return richTextScript(commands.get());
}

RichEditSettings coloured() {
    RichEditSettings settings;
    settings.useColour = true;
    settings.colour = 0x00112233;
    return settings;
}

RichEditSettings flat() {
    RichEditSettings settings;
    settings.indentLists = false;
    return settings;
}

TEST(WxRichEditTranslator, HasTheDefaultSettings) {
    const RichEditSettings settings;
    EXPECT_FALSE(settings.useColour);
    EXPECT_TRUE(settings.indentLists);
    EXPECT_EQ(settings.levelIndent, 120U);
    EXPECT_EQ(settings.colour, 0U);
}

struct EventCase {
    const char* script;
    const char* commands;
};

TEST(WxRichEditTranslator, EveryEventHasItsCommands) {
    const EventCase cases[] = {
        {"<doc></doc>", "(left)/"},
        {"<doc>a</doc>", "(left)\"a\"/"},
        {"<doc><h1>a</h1></doc>", "(left)/(centre)(b)[a]//[](left)/"},
        {"<doc><h6></h6></doc>", "(left)/(centre)(b)//[](left)/"},
        {"<doc><h1>a<i>b</i></h1></doc>", "(left)/(centre)(b)\"a\"(i)\"b\"///[](left)/"},
        {"<doc>a<b>b</b></doc>", "(left)\"a\"(b)\"b\"//"},
        {"<doc>a<i>b</i></doc>", "(left)\"a\"(i)\"b\"//"},
        {"<doc><b>a<i>b</i></b></doc>", "(left)(b)\"a\"(i)\"b\"///"},
        {"<doc><q>a</q></doc>", "(left)\"a\"/"},
        {"<doc><c>a</c></doc>", "(left)\"a\"/"},
        {"<doc><p>a</p></doc>", "(left)[]\"a\"/"},
        {"<doc><p>a</p><p>b</p></doc>", "(left)[]\"a\"[][]\"b\"/"},
        {"<doc><p>a</p>b</doc>", "(left)[]\"a\"[]\"b\"/"},
    };
    for (const EventCase& one : cases) {
        EXPECT_EQ(rich(one.script), one.commands) << one.script;
    }
}

TEST(WxRichEditTranslator, IndentsLists) {
    const EventCase cases[] = {
        {"<doc><ul></ul></doc>", "(left)/"},
        {"<doc><ul><li>a</li><li>b</li></ul></doc>", "(left)/(indent 0)[]\"- a\"(indent 0)[]\"- b\"/"},
        {"<doc><ol><li>a</li><li>b</li></ol></doc>", "(left)/(indent 0)[]\"1. a\"(indent 0)[]\"2. b\"/"},
        {"<doc><al><li>a</li><li>b</li></al></doc>", "(left)/(indent 0)[]\"a. a\"(indent 0)[]\"b. b\"/"},
        {"<doc><ul><li>a</li></ul>b</doc>", "(left)/(indent 0)[]\"- a\"[]\"b\"/"},
        {"<doc><ul><li>a<ol><li>b</li><li>c</li></ol></li><li>d</li></ul></doc>",
         "(left)/(indent 0)[]/\"- a\"(indent 120)[]\"1. b\"/(indent 120)[]\"2. c\"/(indent 0)[]\"- d\"/"},
    };
    for (const EventCase& one : cases) {
        EXPECT_EQ(rich(one.script), one.commands) << one.script;
    }
}

TEST(WxRichEditTranslator, KeepsListsFlatOnRequest) {
    EXPECT_EQ(rich("<doc><ul><li>a</li><li>b</li></ul>c</doc>", flat()), "(left)[]\"- a\"\"- b\"[]\"c\"/");
}

// A marker alone doesn't start the paragraph that it needs; the end of the text does.
TEST(WxRichEditTranslator, EndsWithAParagraphForAnItemWithoutText) {
    EXPECT_EQ(rich("<doc><ul><li></doc>", flat()), "(left)[- ]/");
}

TEST(WxRichEditTranslator, IgnoresAnItemOutsideOfLists) {
    EXPECT_EQ(rich("<doc><li>a</li></doc>"), "(left)\"a\"/");
}

TEST(WxRichEditTranslator, ColoursTheTextAndEachItem) {
    EXPECT_EQ(rich("<doc>a<ul><li>b</li></ul></doc>", coloured()),
              "(colour 1122867)(left)/\"a\"(colour 1122867)(indent 0)[]\"- b\"/");
}

TEST(WxRichEditTranslator, StartsAnew) {
    RichTextCommands commands;
    commands.write("of an earlier document");
    WxRichEditTranslator translator(commands);
    EventPlayer(translator).play("<doc>a</doc>");
    EXPECT_EQ(richTextScript(commands.get()), "(left)\"a\"/");
}

TEST(WxRichEditTranslator, EndsWithoutBeginningsEndNothing) {
    EXPECT_EQ(rich("</doc></b></i></h1></li></ul>"), "[](left)");
}

// Counts what is open, and fails where something ends that isn't.
TEST(WxRichEditTranslator, EndsOnlyOpenStylesInAnyDocument) {
    for (std::uint32_t seed = 0; seed < 300; ++seed) {
        RichTextCommands commands;
        WxRichEditTranslator translator(commands, seed % 2 == 0 ? coloured() : RichEditSettings());
        EventPlayer(translator).play(RandomEvents(seed).document(5));
        int open = 0;
        for (const RichTextCommand& command : commands.get()) {
            const bool opens = command.kind >= RichTextCommand::Kind::kBeginBold &&
                               command.kind <= RichTextCommand::Kind::kBeginLeftIndent;
            open += opens ? 1 : command.kind == RichTextCommand::Kind::kEndStyle ? -1 : 0;
            ASSERT_GE(open, 0) << seed;
        }
    }
}

// Letters go past "z" as bytes, and what comes out is valid nevertheless.
TEST(WxRichEditTranslator, KeepsLongLetteredListsValid) {
    std::string script = "<doc><al>";
    for (int item = 0; item < 40; ++item) {
        script += "<li>x</li>";
    }
    const std::string result = rich(script + "</al></doc>");
    EXPECT_NE(result.find("\"z. x\""), std::string::npos);
    EXPECT_NE(result.find("\"\xEF\xBF\xBD. x\""), std::string::npos);
}

TEST(WxRichEditTranslator, ReservesWithoutTrouble) {
    RichTextCommands commands;
    WxRichEditTranslator translator(commands);
    translator.reserve(SIZE_MAX);
    translator.reserve(100000);
    EventPlayer(translator).play("<doc>a</doc>");
    EXPECT_EQ(richTextScript(commands.get()), "(left)\"a\"/");
}

}  // namespace
