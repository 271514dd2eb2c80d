#include "ui/gui/rich_text_commands.h"

#include <utility>

#include <gtest/gtest.h>

#include "rich_text_script.h"

namespace {

using Kind = RichTextCommand::Kind;

TEST(RichTextCommands, RecordsInOrder) {
    RichTextCommands commands;
    commands.begin(Kind::kBeginAlignment, 1);
    commands.begin(Kind::kBeginUnderline);
    commands.write("one");
    commands.endStyle();
    commands.addParagraph("two");
    commands.addParagraph();
    commands.setPointSize(9);
    EXPECT_EQ(richTextScript(commands.get()), "(centre)(u)\"one\"/[two][](size 9)");
}

TEST(RichTextCommands, EndsNoStyleThatIsNotOpen) {
    RichTextCommands commands;
    commands.endStyle();
    commands.begin(Kind::kBeginBold);
    commands.endStyle();
    commands.endStyle();
    EXPECT_EQ(richTextScript(commands.get()), "(b)/");
    commands.begin(Kind::kBeginItalic);
    commands.clear();
    commands.endStyle();
    EXPECT_TRUE(commands.get().empty());
}

TEST(RichTextCommands, OwnsItsTexts) {
    RichTextCommands commands;
    for (int i = 0; i < 1000; ++i) {
        std::string text = std::to_string(i);
        commands.write(text);
        text.assign("overwritten");
    }
    const RichTextCommands moved = std::move(commands);
    EXPECT_EQ(moved.get().front().text, "0");
    EXPECT_EQ(moved.get().back().text, "999");
}

TEST(RichTextCommands, WritesNoEmptyTexts) {
    RichTextCommands commands;
    commands.write("");
    EXPECT_TRUE(commands.get().empty());
}

TEST(RichTextCommands, MakesTextsValid) {
    RichTextCommands commands;
    commands.write("\xFC");
    commands.addParagraph("\xE2\x82");
    EXPECT_EQ(richTextScript(commands.get()), "\"\xEF\xBF\xBD\"[\xEF\xBF\xBD\xEF\xBF\xBD]");
}

}  // namespace
