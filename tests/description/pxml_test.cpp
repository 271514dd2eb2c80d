#include "description/pxml.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class PXMLTest : public testing::Test {
protected:
    std::int32_t at(const char* path) { return document_.findPath(path); }

    PXML document_;
};

using PXMLPaths = PXMLTest;
using PXMLAttributes = PXMLTest;
using PXMLBuilding = PXMLTest;
using PXMLTable = PXMLTest;

TEST_F(PXMLTable, EmptyDocumentAnswersEveryLookupWithNone) {
    std::vector<std::int32_t> found;
    EXPECT_EQ(document_.getNodeCount(), 0);
    EXPECT_EQ(document_.findByName("a"), -1);
    EXPECT_EQ(document_.findChild(-1, "a"), -1);
    EXPECT_EQ(document_.findPath("a"), -1);
    EXPECT_EQ(document_.findRelative(-1, "a"), -1);
    EXPECT_TRUE(document_.childrenOf(-1).empty());
    EXPECT_EQ(document_.getAttribute(0, "a"), std::nullopt);
    EXPECT_FALSE(document_.setAttribute(0, "a", "b"));
    EXPECT_EQ(document_.getNode(0), nullptr);
    EXPECT_EQ(document_.getText(0), std::nullopt);
    EXPECT_EQ(document_.getName(-1), "");
    EXPECT_EQ(document_.walkFrom(0, found), 0);
}

TEST_F(PXMLTable, NodesStandInTheOrderOfTheirOpeningTags) {
    document_.parseText("<r><a><b/></a><c/></r>");
    ASSERT_EQ(document_.getNodeCount(), 4);
    const char* names[] = {"r", "a", "b", "c"};
    const std::int32_t parents[] = {-1, 0, 1, 0};
    for (std::int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(document_.getName(i), names[i]);
        EXPECT_EQ(document_.getNode(i)->parent, parents[i]);
        EXPECT_EQ(document_.getNode(i)->index, i);
    }
}

TEST_F(PXMLTable, FindByNameGoesOnBehindTheGivenNodeAtAnyDepth) {
    document_.parseText("<r><x/><a><x/></a><x/></r>");
    EXPECT_EQ(document_.findByName("x"), 1);
    EXPECT_EQ(document_.findByName("x", 1), 3);
    EXPECT_EQ(document_.findByName("x", 2), 3);
    EXPECT_EQ(document_.findByName("x", 3), 4);
    EXPECT_EQ(document_.findByName("x", 4), -1);
    EXPECT_EQ(document_.findByName("X"), -1);
}

TEST_F(PXMLTable, FindChildRespectsCaseAndParent) {
    document_.parseText("<r><Child/><b><child/></b><child/><child/></r>");
    EXPECT_EQ(document_.findChild(0, "child"), 4);
    EXPECT_EQ(document_.findChild(0, "child", 4), 5);
    EXPECT_EQ(document_.findChild(0, "child", 5), -1);
    EXPECT_EQ(document_.findChild(0, "Child"), 1);
    EXPECT_EQ(document_.findChild(2, "child"), 3);
    EXPECT_EQ(document_.findChild(-1, "r"), 0);
    EXPECT_EQ(document_.findChild(77, "child"), -1);
}

TEST_F(PXMLTable, ListChildrenAppendsDirectChildrenInOrder) {
    document_.parseText("<r><a><b/></a><c/></r>");
    std::vector<std::int32_t> found{42};
    document_.listChildren(0, found);
    EXPECT_EQ(found, (std::vector<std::int32_t>{42, 1, 3}));
    found.clear();
    document_.listChildren(-1, found);
    EXPECT_EQ(found, (std::vector<std::int32_t>{0}));
    found.clear();
    document_.listChildren(99, found);
    document_.listChildren(-5, found);
    EXPECT_TRUE(found.empty());
}

TEST_F(PXMLPaths, MissingLevelsAreSkippedByFindPathOnly) {
    document_.parseText("<Root><Child>x</Child></Root>");
    EXPECT_EQ(document_.findPath("Root/Nothing/Child"), 1);
    EXPECT_EQ(document_.findRelative(-1, "Root/Nothing/Child"), -1);
    EXPECT_EQ(document_.findRelative(0, "Nothing/Child"), -1);
    EXPECT_EQ(document_.findRelative(0, "Child"), 1);
}

TEST_F(PXMLPaths, EmptyLastComponentMatchesNothing) {
    document_.parseText("<Root><>x</></Root>");
    EXPECT_EQ(document_.findPath("Root/"), -1);
    EXPECT_EQ(document_.findPath(""), -1);
    EXPECT_EQ(document_.findPath("/"), -1);
    EXPECT_EQ(document_.findPath("/Root"), 0);
    EXPECT_EQ(document_.findPath("//Root"), 0);
}

TEST_F(PXMLPaths, TrailingSlashIsIgnoredByFindRelative) {
    document_.parseText("<a><b><c/></b></a>");
    EXPECT_EQ(document_.findRelative(0, "b/c/"), 2);
    EXPECT_EQ(document_.findRelative(0, "/b/c"), 2);
    EXPECT_EQ(document_.findRelative(0, ""), -1);
    EXPECT_EQ(document_.findRelative(0, "b//c"), -1);
}

TEST_F(PXMLPaths, StartAtTheLastHitFindsTheNextSibling) {
    document_.parseText("<r><i><u>1</u></i><i><u>2</u><u>3</u></i></r>");
    EXPECT_EQ(document_.findPath("r/i"), 1);
    EXPECT_EQ(document_.findPath("i", 1), 3);
    EXPECT_EQ(document_.findPath("i", 3), -1);
    EXPECT_EQ(document_.findPath("u", 4), 5);
}

TEST_F(PXMLPaths, StartBoundsEveryLevelOfThePath) {
    document_.parseText("<r><a><b/></a><c/><a><b/></a></r>");
    EXPECT_EQ(document_.findPath("a/b", 3), 5);
    EXPECT_EQ(document_.findPath("r/a", 3), 4) << "the missing first level is skipped";
    EXPECT_EQ(document_.findPath("a", 99), -1);
}

TEST_F(PXMLPaths, TraceHoldsWhatWasFoundOnTheWay) {
    document_.parseText("<r><a><b/></a></r>");
    std::vector<std::int32_t> trace;
    EXPECT_EQ(document_.findPath("r/no/a/b", -1, &trace), 2);
    EXPECT_EQ(trace, (std::vector<std::int32_t>{0, 1, 2}));
    trace.clear();
    EXPECT_EQ(document_.findPath("r/a/no", -1, &trace), -1);
    EXPECT_EQ(trace, (std::vector<std::int32_t>{0, 1}));
}

TEST_F(PXMLAttributes, NamesIgnoreCaseAndTheLaterOneCounts) {
    document_.parseText("<e COLOR='1' Valign=\"2\" a='3' NAME='4' name='5' a='6'/>");
    EXPECT_EQ(document_.getAttribute(0, "color"), "1");
    EXPECT_EQ(document_.getAttribute(0, "VAlign"), "2");
    EXPECT_EQ(document_.getAttribute(0, "A"), "6");
    EXPECT_EQ(document_.getAttribute(0, "Name"), "5");
    EXPECT_EQ(document_.getNode(0)->attributes.size(), 6U);
    EXPECT_EQ(document_.getAttribute(0, "colo"), std::nullopt);
    EXPECT_EQ(document_.getAttribute(1, "a"), std::nullopt);
}

TEST_F(PXMLAttributes, SettingReplacesTheOneThatCountsOrAppends) {
    document_.parseText("<e a='1' A='2'/>");
    EXPECT_TRUE(document_.setAttribute(0, "a", "3"));
    ASSERT_EQ(document_.getNode(0)->attributes.size(), 2U);
    EXPECT_EQ(document_.getNode(0)->attributes[0].value, "1");
    EXPECT_EQ(document_.getNode(0)->attributes[1].value, "3");
    EXPECT_TRUE(document_.setAttribute(0, "b", std::nullopt));
    ASSERT_EQ(document_.getNode(0)->attributes.size(), 3U);
    EXPECT_EQ(document_.getAttribute(0, "b"), std::nullopt);
    EXPECT_FALSE(document_.setAttribute(1, "b", "x"));
    EXPECT_FALSE(document_.setAttribute(-1, "b", "x"));
}

TEST_F(PXMLAttributes, ReplacedValuesStayReadable) {
    document_.parseText("<e a='old'/>");
    const std::optional<std::string_view> old = document_.getAttribute(0, "a");
    for (int i = 0; i < 1000; ++i) {
        document_.setAttribute(0, "a", std::to_string(i));
    }
    EXPECT_EQ(old, "old");
    EXPECT_EQ(document_.getAttribute(0, "a"), "999");
}

TEST_F(PXMLBuilding, PathIsMadeAndReusedAndItsTextReplaced) {
    const std::int32_t first = document_.addPath(-1, "DefValues/Value", "one", false);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(document_.getText(0), "");
    EXPECT_EQ(document_.getNode(0)->textLength, 0);
    EXPECT_EQ(document_.getNode(1)->textLength, 3);
    EXPECT_EQ(document_.addPath(-1, "DefValues/Value", "three", false), first);
    EXPECT_EQ(document_.getText(1), "three");
    EXPECT_EQ(document_.getNode(1)->textLength, 5);
    EXPECT_EQ(document_.getNodeCount(), 2);
}

TEST_F(PXMLBuilding, AlwaysNewRepeatsTheLastElementOnly) {
    document_.addPath(-1, "DefValues/Value", "1", true);
    EXPECT_EQ(document_.addPath(-1, "DefValues/Value", "2", true), 2);
    EXPECT_EQ(document_.addPath(0, "Value", "3", true), 3);
    std::vector<std::int32_t> values;
    document_.listChildren(document_.findByName("DefValues"), values);
    EXPECT_EQ(values, (std::vector<std::int32_t>{1, 2, 3}));
}

TEST_F(PXMLBuilding, NullValueGivesNoText) {
    const std::int32_t node = document_.addPath(-1, "a", std::nullopt, false);
    EXPECT_EQ(document_.getText(node), std::nullopt);
    EXPECT_EQ(document_.getNode(node)->textLength, 0);
}

TEST_F(PXMLBuilding, BadParentOrEmptyPathGivesNone) {
    EXPECT_EQ(document_.addPath(0, "a", "x", false), -1);
    EXPECT_EQ(document_.addPath(-2, "a", "x", false), -1);
    EXPECT_EQ(document_.addPath(-1, "", "x", false), -1);
    EXPECT_EQ(document_.addPath(-1, "/", "x", false), -1);
    EXPECT_EQ(document_.getNodeCount(), 0);
}

class StoppingDocument : public PXML {
public:
    std::int32_t stopAt = -1;
    std::vector<std::int32_t> depths;
    std::vector<std::int32_t> ancestors;

private:
    int onVisit(std::int32_t ancestor, std::int32_t node, std::int32_t depth,
                std::vector<std::int32_t>& /*trace*/) override {
        ancestors.push_back(ancestor);
        depths.push_back(depth);
        return node == stopAt ? 7 : 0;
    }
};

TEST(PXMLWalk, VisitsInPreorderUntilTheHookStopsIt) {
    StoppingDocument document;
    document.parseText("<r><a><b/><c/></a><d/></r>");
    std::vector<std::int32_t> trace;
    EXPECT_EQ(document.walkFrom(0, trace), 0);
    EXPECT_EQ(trace, (std::vector<std::int32_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(document.depths, (std::vector<std::int32_t>{0, 1, 2, 2, 1}));

    trace.clear();
    EXPECT_EQ(document.walkChildren(1, trace), 0);
    EXPECT_EQ(trace, (std::vector<std::int32_t>{2, 3}));
    EXPECT_EQ(document.ancestors.back(), 1);

    trace.clear();
    document.stopAt = 2;
    EXPECT_EQ(document.walkFrom(0, trace), 7);
    EXPECT_EQ(trace, (std::vector<std::int32_t>{0, 1, 2}));
}

TEST(PXMLWalk, PlainDocumentOnlyFillsTheTrace) {
    PXML document;
    document.parseText("<r><a/></r>");
    std::vector<std::int32_t> trace;
    EXPECT_EQ(document.walkChildren(1, trace), 0);
    EXPECT_TRUE(trace.empty());
    EXPECT_EQ(document.walkFrom(5, trace), 0);
    EXPECT_EQ(document.walkFrom(0, trace), 0);
    EXPECT_EQ(trace.size(), 2U);
}

TEST(PXMLLimits, HundredThousandLevelsAreReadWalkedAndDestroyed) {
    constexpr int kDepth = 100000;
    std::string text;
    for (int i = 0; i < kDepth; ++i) {
        text += "<n>";
    }
    text += "deep";
    for (int i = 0; i < kDepth; ++i) {
        text += "</n>";
    }
    PXML document;
    document.parseText(text);
    ASSERT_EQ(document.getNodeCount(), kDepth);
    EXPECT_EQ(document.getText(kDepth - 1), "deep");
    std::vector<std::int32_t> trace;
    EXPECT_EQ(document.walkFrom(0, trace), 0);
    EXPECT_EQ(trace.size(), static_cast<std::size_t>(kDepth));
}

TEST(PXMLLimits, HundredThousandSiblingsAreFoundOneByOne) {
    constexpr int kCount = 100000;
    std::string text = "<r>";
    for (int i = 0; i < kCount; ++i) {
        text += "<FN Alias='a'>f</FN>";
    }
    text += "</r>";
    PXML document;
    document.parseText(text);
    int byName = 0;
    for (std::int32_t node = document.findByName("FN"); node >= 0; node = document.findByName("FN", node)) {
        ++byName;
    }
    int byChild = 0;
    for (std::int32_t node = document.findChild(0, "FN"); node >= 0;
         node = document.findChild(0, "FN", node)) {
        ++byChild;
    }
    int byPath = 0;
    for (std::int32_t node = document.findPath("r/FN"); node >= 0; node = document.findPath("FN", node)) {
        ++byPath;
    }
    EXPECT_EQ(byName, kCount);
    EXPECT_EQ(byChild, kCount);
    EXPECT_EQ(byPath, kCount);
}

TEST(PXMLLimits, BuildingManyRepeatedElementsStaysQuick) {
    PXML document;
    for (int i = 0; i < 100000; ++i) {
        const std::int32_t node = document.addPath(-1, "DefValues/Value", "v", true);
        document.setAttribute(node, "Name", "n");
    }
    EXPECT_EQ(document.getNodeCount(), 100001);
}

}  // namespace
