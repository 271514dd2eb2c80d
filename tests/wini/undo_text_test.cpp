#include "wini/undo_text.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"

namespace {

using Fields = std::vector<std::string_view>;

TEST(UndoTextTest, IsItsFieldsWithSeparators) {
    EXPECT_EQ(UndoText::of({"CREATE"}), "CREATE");
    EXPECT_EQ(UndoText::of({"ADD", "PATH", "a b"}), "ADD\tPATH\ta b");
    EXPECT_EQ(UndoText::of({"REPLACE", "X", ""}), "REPLACE\tX\t");
}

TEST(UndoTextTest, KnowsWhatAFieldCanHold) {
    EXPECT_TRUE(UndoText::isField(" a b"));
    EXPECT_FALSE(UndoText::isField("a "));
    EXPECT_TRUE(UndoText::isLastField(" a"));
    EXPECT_TRUE(UndoText::isLastField(""));
    EXPECT_FALSE(UndoText::isField(""));
    EXPECT_FALSE(UndoText::isLastField("a "));
    for (const std::string_view text : {std::string_view("a\tb"), std::string_view("a\nb"),
                                        std::string_view("a\rb"), std::string_view("a\0b", 3)}) {
        EXPECT_FALSE(UndoText::isField(text));
        EXPECT_FALSE(UndoText::isLastField(text));
    }
}

TEST(UndoTextTest, FitsARecordUpToTheLimitOfItsLine) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string_view("ENV\t").size();
    EXPECT_TRUE(UndoText::fitsRecord("ENV", std::string(room, 'x')));
    EXPECT_FALSE(UndoText::fitsRecord("ENV", std::string(room + 1, 'x')));
}

TEST(UndoTextTest, IsSplitAsARecordIsRead) {
    EXPECT_EQ(UndoText::split("ADD\tPATH\ta\tb", 3), (Fields{"ADD", "PATH", "a\tb"}));
    EXPECT_EQ(UndoText::split("ADD\t\t\tPATH", 3), (Fields{"ADD", "PATH"}));
    EXPECT_EQ(UndoText::split("ADD\t", 3), Fields{"ADD"});
    EXPECT_EQ(UndoText::split("ADD", 3), Fields{"ADD"});
    EXPECT_EQ(UndoText::split("", 3), Fields{});
    EXPECT_EQ(UndoText::split(nullptr, 3), Fields{});
    EXPECT_EQ(UndoText::split("\tx", 3), (Fields{"", "x"}));
}

}  // namespace
