#include "engine/description_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;

class DescriptionTagsTest : public TagsTest {};

TEST_F(DescriptionTagsTest, FindGroupsAtAnyDepthWhoseConditionIsNotFalse) {
    describe("<G Condition='1==2'/><A><G Name='one'/></A><G Condition='(' Name='two'/>");
    const std::int32_t first = tags_.nextGroup("G", -1);
    EXPECT_STREQ(tags_.attribute(first, "Name"), "one");
    const std::int32_t second = tags_.nextGroup("G", first);
    EXPECT_STREQ(tags_.attribute(second, "Name"), "two");
    EXPECT_EQ(tags_.nextGroup("G", second), -1);
    EXPECT_STREQ(tags_.attribute(tags_.firstOf("G"), "Condition"), "1==2");
}

TEST_F(DescriptionTagsTest, TakeAMissingConditionOfAnAttributeForFalse) {
    describe("<G Yes='1==1' No='1==2' Empty=''/>");
    const std::int32_t node = tags_.firstOf("G");
    EXPECT_TRUE(tags_.isSet(node, "Yes"));
    EXPECT_FALSE(tags_.isSet(node, "No"));
    EXPECT_TRUE(tags_.isSet(node, "Empty"));
    EXPECT_FALSE(tags_.isSet(node, "Absent"));
    EXPECT_TRUE(tags_.holds(nullptr));
}

TEST_F(DescriptionTagsTest, ExpandTextsOfAnyLength) {
    variables_.setVariable("V", std::string(1000, 'v').c_str());
    std::string source;
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        source += "[V]-";
        expected += std::string(1000, 'v') + "-";
    }
    EXPECT_EQ(tags_.expand(source.c_str()), expected);
    EXPECT_EQ(tags_.expand(nullptr), "");
    EXPECT_EQ(tags_.expand(std::string(4095, 'x').c_str()), std::string(4095, 'x'));
}

TEST_F(DescriptionTagsTest, EmptyATextThatLacksAVariableOnlyWhereAsked) {
    EXPECT_EQ(tags_.expand("a[NONE]b"), "a[NONE]b");
    EXPECT_EQ(tags_.expand("a[NONE]b", true), "");
}

TEST_F(DescriptionTagsTest, ListChildrenInOrder) {
    describe("<G><A/><B/><A/></G>");
    std::vector<std::string> names;
    for (const std::int32_t node : tags_.childrenOf(tags_.firstOf("G"))) {
        names.emplace_back(tags_.nameOf(node));
    }
    EXPECT_THAT(names, ElementsAre("A", "B", "A"));
}

TEST_F(DescriptionTagsTest, CleanPaths) {
    EXPECT_EQ(collapsedPath("C://a\\\\b"), "C:/a\\b");
    EXPECT_EQ(normalizedPath(" //host/share//x "), "\\\\host\\share\\x");
}

}  // namespace
