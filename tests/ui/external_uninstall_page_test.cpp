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
    actions.products.names = {"Demo"};
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
    actions.products.names = {"Demo"};
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
    actions.products = {{"Demo 1", "Demo 2"}, true};
    actions.productIsLeft = true;
    enter();
    actions.askedProducts.clear();
    EXPECT_FALSE(page.gate->isOpen(ui));
    ASSERT_EQ(actions.askedProducts.size(), 1U);
    EXPECT_EQ(actions.askedProducts[0].names, (Calls{"Demo 1", "Demo 2"}));
    EXPECT_TRUE(actions.askedProducts[0].in32BitView);
}

}  // namespace
