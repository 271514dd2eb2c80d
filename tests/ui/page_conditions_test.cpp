#include "ui/page_conditions.h"

#include "walk_fixture.h"

namespace {

class PageConditionsTest : public Walk {};

TEST_F(PageConditionsTest, ShowAPageUnlessItsConditionIsFalse) {
    DialogDesc& frame = addFrame("Frame", {"Sub"});
    EXPECT_TRUE(conditions.isVisible(0, -1));
    frame.conditionText.assign("0");
    frame.subDialogs[0].conditionText.assign("1==1");
    EXPECT_FALSE(conditions.isVisible(0, -1));
    EXPECT_TRUE(conditions.isVisible(0, 0));
    frame.subDialogs[0].conditionText.assign("1==2");
    EXPECT_FALSE(conditions.isVisible(0, 0));
}

TEST_F(PageConditionsTest, ShowAPageWhoseConditionIsBroken) {
    addDialog("Page").conditionText.assign("broken");
    EXPECT_TRUE(conditions.isVisible(0, -1));
}

TEST_F(PageConditionsTest, OpenAPageWithoutAGate) {
    DialogDesc& page = addDialog("Page");
    EXPECT_TRUE(conditions.isOpen(page, &ui));
    const auto gate = setGate(page, {0, 1, -1});
    EXPECT_FALSE(conditions.isOpen(page, &ui));
    EXPECT_TRUE(conditions.isOpen(page, &ui));
    EXPECT_TRUE(conditions.isOpen(page, &ui));
    EXPECT_EQ(gate->evaluations, 3);
}

}  // namespace
