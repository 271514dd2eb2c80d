#include "engine/changes/element_groups.h"

#include <gmock/gmock.h>

#include "engine/changes/change_fixture.h"

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
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)", "addFileLine(null, 1)"));
}

TEST_F(ElementGroupsTest, EndsAGroupWithItsFailureAlone) {
    describe("<Add><A/><B/></Add><Add><C/></Add>");
    bool succeeded = true;
    EXPECT_THAT(visit("A", succeeded), ElementsAre("A", "C"));
    EXPECT_FALSE(succeeded);
}

}  // namespace
