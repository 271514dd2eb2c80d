#include "engine/changes/record_text.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"

namespace {

using Fields = std::vector<std::string_view>;

TEST(RecordTextTest, JoinsFieldsWithSeparators) {
    EXPECT_EQ(RecordText::join({"CREATE"}), "CREATE");
    EXPECT_EQ(RecordText::join({"ADD", "PATH", "a b"}), "ADD\tPATH\ta b");
    EXPECT_EQ(RecordText::join({"REPLACE", "X", ""}), "REPLACE\tX\t");
}

TEST(RecordTextTest, KnowsWhatAFieldCanHold) {
    EXPECT_TRUE(RecordText::isField(" a b"));
    EXPECT_FALSE(RecordText::isField("a "));
    EXPECT_TRUE(RecordText::isLastField(" a"));
    EXPECT_TRUE(RecordText::isLastField(""));
    EXPECT_FALSE(RecordText::isField(""));
    EXPECT_FALSE(RecordText::isLastField("a "));
    for (const std::string_view text : {std::string_view("a\tb"), std::string_view("a\nb"),
                                        std::string_view("a\rb"), std::string_view("a\0b", 3)}) {
        EXPECT_FALSE(RecordText::isField(text));
        EXPECT_FALSE(RecordText::isLastField(text));
    }
}

TEST(RecordTextTest, FitsARecordUpToTheLimitOfItsLine) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string_view("ENV\t").size();
    EXPECT_TRUE(RecordText::fits("ENV", std::string(room, 'x')));
    EXPECT_FALSE(RecordText::fits("ENV", std::string(room + 1, 'x')));
}

TEST(RecordTextTest, SplitsAsARecordIsRead) {
    EXPECT_EQ(RecordText::split("ADD\tPATH\ta\tb", 3), (Fields{"ADD", "PATH", "a\tb"}));
    EXPECT_EQ(RecordText::split("ADD\t\t\tPATH", 3), (Fields{"ADD", "PATH"}));
    EXPECT_EQ(RecordText::split("ADD\t", 3), Fields{"ADD"});
    EXPECT_EQ(RecordText::split("ADD", 3), Fields{"ADD"});
    EXPECT_EQ(RecordText::split("", 3), Fields{});
    EXPECT_EQ(RecordText::split("\tx", 3), (Fields{"", "x"}));
}

TEST(RecordTextTest, SplitsAtEachSeparatorWhenAllFieldsCount) {
    EXPECT_EQ(RecordText::splitAll("2\tHKEY_USERS\ta b"), (Fields{"2", "HKEY_USERS", "a b"}));
    EXPECT_EQ(RecordText::splitAll("a\t\tb\t"), (Fields{"a", "", "b", ""}));
    EXPECT_EQ(RecordText::splitAll("a"), Fields{"a"});
    EXPECT_EQ(RecordText::splitAll(""), Fields{});
}

TEST(RecordTextTest, KnowsThePathsThatARecordOfAFileHolds) {
    EXPECT_TRUE(RecordText::fitsFile("/a b"));
    EXPECT_FALSE(RecordText::fitsFile(""));
    EXPECT_FALSE(RecordText::fitsFile("/a\tb"));
    EXPECT_FALSE(RecordText::fitsFile("/a "));
    const std::string longest(ActionLogFormat::kLineLimit - std::string("FILE\tCREATE\t").size(), 'p');
    EXPECT_TRUE(RecordText::fitsFile(longest));
    EXPECT_FALSE(RecordText::fitsFile(longest + "p"));
}

}  // namespace
