#include "engine/changes/element_groups.h"

#include <gmock/gmock.h>

#include "engine/changes/change_fixture.h"
#include "fakes/shown_calls.h"

namespace {

using testing::ElementsAre;

class ElementGroupsTest : public ChangeTest {
protected:
    // Visits the groups called Add; the child named like `failing` fails. The names of the visited children.
    std::vector<std::string> visit(const std::string& failing, bool& outSucceeded) {
        std::vector<std::string> visited;
        outSucceeded = applyGroups(context_, "Add", [&](std::int32_t child) {
            visited.emplace_back(tags_.nameOf(child));
            return visited.back() != failing;
        });
        return visited;
    }
};

TEST_F(ElementGroupsTest, VisitsTheChildrenOfAllGroupsInOrder) {
    describe(
        "<Add><A/><B Condition='1==2'/><C/></Add><X><Add Condition='1==1'><D/></Add></X><Add "
        "Condition='1==2'><E/></Add>");
    bool succeeded = false;
    EXPECT_THAT(visit("", succeeded), ElementsAre("A", "C", "D"));
    EXPECT_TRUE(succeeded);
    EXPECT_THAT(shownCalls(ui_), ElementsAre("addFileLine(null, 1)", "addFileLine(null, 1)"));
}

TEST_F(ElementGroupsTest, EndsAGroupWithItsFailureAlone) {
    describe("<Add><A/><B/></Add><Add><C/></Add>");
    bool succeeded = true;
    EXPECT_THAT(visit("A", succeeded), ElementsAre("A", "C"));
    EXPECT_FALSE(succeeded);
}

TEST_F(ElementGroupsTest, HandlesEventsBeforeEachChild) {
    describe("<Add><A/><B Condition='1==2'/><C/></Add><Add><D/></Add>");
    bool succeeded = false;
    visit("", succeeded);
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 4);
}

}  // namespace
