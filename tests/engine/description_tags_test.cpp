#include "engine/description_tags.h"

#include <gmock/gmock.h>

#include "description/description_fixture.h"
#include "platform/written_path.h"

namespace {

using testing::ElementsAre;

class DescriptionTagsTest : public DescriptionTest {
protected:
    void describe(const std::string& content) {
        parse("<TandrelGroupInstallation>" + content + "</TandrelGroupInstallation>");
    }

    DescriptionTags tags_{document_, expressions_};
};

TEST_F(DescriptionTagsTest, FindsGroupsAtAnyDepthWhoseConditionIsNotFalse) {
    describe("<Add Condition='1==2'/><A><Add Name='one'/></A><Add Condition='(' Name='two'/>");
    const std::int32_t first = tags_.nextGroup("Add", -1);
    EXPECT_EQ(tags_.attribute(first, "Name"), "one");
    const std::int32_t second = tags_.nextGroup("Add", first);
    EXPECT_EQ(tags_.attribute(second, "Name"), "two");
    EXPECT_EQ(tags_.nextGroup("Add", second), -1);
    EXPECT_EQ(tags_.attribute(tags_.firstOf("Add"), "Condition"), "1==2");
}

TEST_F(DescriptionTagsTest, FindsContainersByNamesOfTheirOwn) {
    describe("<Mine Condition='1==2'/><Mine Name='one'/>");
    const std::int32_t first = tags_.nextContainer("Mine", -1);
    EXPECT_EQ(tags_.attribute(first, "Name"), "one");
    EXPECT_EQ(tags_.nextContainer("Mine", first), -1);
}

TEST_F(DescriptionTagsTest, ComparesNamesOfElementsWithoutCase) {
    describe("<testAPP/>");
    EXPECT_TRUE(tags_.isCalled(document_.findByName("testAPP"), "TestApp"));
    EXPECT_FALSE(tags_.isCalled(document_.findByName("testAPP"), "TerminateApp"));
}

TEST_F(DescriptionTagsTest, TakesAMissingConditionOfAnAttributeForFalse) {
    describe("<Add Expand='1==1' Wait='1==2' AsRoot=''/>");
    const std::int32_t node = tags_.firstOf("Add");
    EXPECT_TRUE(tags_.isSet(node, "Expand"));
    EXPECT_FALSE(tags_.isSet(node, "Wait"));
    EXPECT_TRUE(tags_.isSet(node, "AsRoot"));
    EXPECT_FALSE(tags_.isSet(node, "ActionLog"));
    EXPECT_TRUE(tags_.holds(std::nullopt));
}

TEST_F(DescriptionTagsTest, TakesAnEmptyTextForNoneWhereOneIsRequired) {
    describe("<G></G><H/><I> \t\n</I><J>[NONE]</J>");
    for (const char* name : {"G", "H", "I"}) {
        EXPECT_EQ(tags_.requiredTextOf(document_.findByName(name)), std::nullopt) << name;
    }
    EXPECT_EQ(tags_.requiredTextOf(document_.findByName("J")), "[NONE]");
}

TEST_F(DescriptionTagsTest, ExpandsTextsOfAnyLength) {
    variables_.set("V", std::string(1000, 'v'));
    std::string source;
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        source += "[V]-";
        expected += std::string(1000, 'v') + "-";
    }
    EXPECT_EQ(tags_.expand(source), expected);
    EXPECT_EQ(tags_.expand(std::nullopt), "");
    EXPECT_EQ(tags_.expand(std::string(4095, 'x')), std::string(4095, 'x'));
}

TEST_F(DescriptionTagsTest, EmptiesATextThatLacksAVariableOnlyWhereAsked) {
    EXPECT_EQ(tags_.expand("a[NONE]b"), "a[NONE]b");
    EXPECT_EQ(tags_.expand("a[NONE]b", true), "");
}

TEST_F(DescriptionTagsTest, ListsChildrenInOrder) {
    describe("<Registry><A/><B/><A/></Registry>");
    std::vector<std::string> names;
    for (const std::int32_t node : tags_.childrenOf(tags_.firstOf("Registry"))) {
        names.emplace_back(tags_.nameOf(node));
    }
    EXPECT_THAT(names, ElementsAre("A", "B", "A"));
}

TEST_F(DescriptionTagsTest, CleansPaths) {
    EXPECT_EQ(collapsedPath("C://a\\\\b"), "C:/a\\b");
    EXPECT_EQ(normalizedPath(" //host/share//x "), "\\\\host\\share\\x");
}

TEST_F(DescriptionTagsTest, ExpandsForTheSystemWithItsPaths) {
    variables_.set("DIR", "\\opt\\demo");
    EXPECT_EQ(tags_.expandForSystem("[DIR]\\n"), "\\opt\\demo\\n");
    parse("<R><FN Dest='[DIR]'>f</FN></R>");
    expressions_.setPathVariables(PathVariables(document_));
    EXPECT_EQ(tags_.expandForSystem("[DIR]\\n"), platform::writtenPath("\\opt\\demo") + "\\n");
    EXPECT_EQ(tags_.expand("[DIR]\\n"), "\\opt\\demo\\n");
    EXPECT_EQ(tags_.expandForSystem(std::nullopt), "");
    EXPECT_EQ(tags_.expandForSystem("[DIR][NONE]", true), "");
}

}  // namespace
