#include "ui/external_uninstall_page.h"

#include "walk_fixture.h"

namespace {

class ExternalUninstallPageTest : public Walk {
protected:
    ExternalUninstallPageTest() { page.node = 7; }

    PageVisit enter() {
        PageVisit visit{0, -1, ui, page, state};
        externalUninstall.enter(visit);
        return visit;
    }

    DialogDesc& page = addDialog("ExternalUninstall");
    ExternalUninstallPage externalUninstall{actions};
};

TEST_F(ExternalUninstallPageTest, LetsTheUserGoOnWhenNothingIsInstalled) {
    const PageVisit visit = enter();
    EXPECT_TRUE(visit.shown);
    EXPECT_EQ(actions.calls, Calls{"removeExternalProducts(7)"});
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
    ASSERT_NE(page.gate, nullptr);
    EXPECT_TRUE(page.gate->isOpen(ui));
}

TEST_F(ExternalUninstallPageTest, HoldsThePageWhileItUninstalls) {
    actions.products = {{"Demo", false}};
    std::vector<std::int32_t> states;
    std::vector<bool> gates;
    actions.onCall = [&](const std::string&) {
        states.push_back(state.uiState);
        gates.push_back(page.gate->isOpen(ui));
    };
    enter();
    EXPECT_EQ(states, std::vector<std::int32_t>{kUiConditionUnmet});
    EXPECT_EQ(gates, std::vector<bool>{false});
    EXPECT_EQ(ui.calls, (Calls{"showPage(0, -1, 1)", "updateNavigationState()"}));
    EXPECT_TRUE(page.gate->isOpen(ui));
}

TEST_F(ExternalUninstallPageTest, HoldsTheUserWhileAProductIsLeft) {
    actions.products = {{"Demo", false}};
    actions.productIsLeft = true;
    enter();
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    EXPECT_EQ(ui.take().back(), "updateNavigationState()");
    state.uiState = kUiReady;
    enter();  // entered again it only looks
    EXPECT_EQ(actions.calls.size(), 1U);
    EXPECT_EQ(ui.take(), (Calls{"showPage(0, -1, 1)", "updateNavigationState()"}));
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    actions.productIsLeft = false;
    state.uiState = kUiReady;
    enter();
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(ExternalUninstallPageTest, LooksForWhatThePageFound) {
    actions.products = {{"Demo 1", true}, {"Demo 2", false}};
    actions.productIsLeft = true;
    enter();
    actions.askedProducts.clear();
    EXPECT_FALSE(page.gate->isOpen(ui));
    ASSERT_EQ(actions.askedProducts.size(), 1U);
    ASSERT_EQ(actions.askedProducts[0].size(), 2U);
    EXPECT_EQ(actions.askedProducts[0][0].name, "Demo 1");
    EXPECT_TRUE(actions.askedProducts[0][0].in32BitView);
    EXPECT_EQ(actions.askedProducts[0][1].name, "Demo 2");
    EXPECT_FALSE(actions.askedProducts[0][1].in32BitView);
}

TEST_F(ExternalUninstallPageTest, EndsTheRemovalWhenTheSessionIsCancelled) {
    actions.products = {{"Demo", false}};
    enter();
    EXPECT_FALSE(actions.removalWasEnded);
    page.gate = nullptr;
    actions.onCall = [this](const std::string&) { state.cancelled = true; };
    enter();
    EXPECT_TRUE(actions.removalWasEnded);
}

TEST_F(ExternalUninstallPageTest, StopsTheWalkUntilTheProductIsGone) {
    addDialog("Next");
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    actions.products = {{"Demo", false}};
    actions.productIsLeft = true;
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(walk.shift(&ui, 1), -1);
    expectAt(1);
    EXPECT_EQ(actions.calls.size(), 1U);  // the uninstallers ran once
    actions.productIsLeft = false;
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
}

TEST_F(ExternalUninstallPageTest, LeadsOnWithAProductThatStaysWhereThePageIsWeak) {
    addDialog("Next");
    page.special = kDialogWeakCondition;
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    actions.products = {{"Demo", false}};
    actions.productIsLeft = true;
    placeAt(0);
    walk.shift(&ui, 1);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
}

}  // namespace
