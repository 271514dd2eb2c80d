#include "ui/external_uninstall_page.h"

#include "walk_fixture.h"

namespace {

class ExternalUninstallPageTest : public Walk {
protected:
    DialogDesc& page = addDialog("ExternalUninstall");

    void describe(const std::string& elements) {
        page.node = addXml("ExternalUninstall", "<ExternalUninstall>" + elements + "</ExternalUninstall>");
    }
    PageVisit enter() {
        PageVisit visit{0, -1, ui, page, state};
        externalUninstall.enter(visit);
        return visit;
    }
    // An uninstallation takes the application off the list.
    void uninstallForReal() {
        actions.onCall = [this](const std::string& call) {
            std::erase_if(system.installed, [&](const WalkSystem::InstalledApplication& application) {
                return call.starts_with("uninstallApplication(" + application.name + ",");
            });
        };
    }
};

TEST_F(ExternalUninstallPageTest, DoesNothingWhenNothingIsInstalled) {
    describe("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    const PageVisit visit = enter();
    EXPECT_TRUE(visit.shown);
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_TRUE(ui.calls.empty());
    ASSERT_NE(page.condition, nullptr);
    EXPECT_EQ(page.condition->evaluate(&system, &ui), 1);
}

TEST_F(ExternalUninstallPageTest, UninstallsAnApplicationAndGoesOn) {
    describe("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    system.installed = {{"Demo", "", false}};
    uninstallForReal();
    enter();
    EXPECT_EQ(actions.calls, Calls{"uninstallApplication(Demo, null, native, wait)"});
    EXPECT_EQ(ui.calls, (Calls{"showPage(0, -1, 1)", "updateNavigationState()",
                               "addFileLine(\"Uninstalling \"Demo\" ...\", 1)"}));
    EXPECT_EQ(page.condition->evaluate(&system, &ui), 1);
}

TEST_F(ExternalUninstallPageTest, HoldsTheUserWhileAnApplicationIsLeft) {
    describe("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    system.installed = {{"Demo", "", false}};
    enter();
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    EXPECT_EQ(ui.take().back(), "updateNavigationState()");
    state.uiState = kUiReady;
    enter();  // entered again it only looks
    EXPECT_EQ(actions.calls.size(), 1U);
    EXPECT_EQ(ui.take(), (Calls{"showPage(0, -1, 1)", "updateNavigationState()"}));
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    system.installed.clear();
    state.uiState = kUiReady;
    enter();
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(ExternalUninstallPageTest, FindsApplicationsByAPartOfTheirName) {
    describe(
        "<ExternalLegacyApplication Details=\";substring;\" Publisher=\"Acme\">Demo"
        "</ExternalLegacyApplication>");
    system.installed = {{"Demo 1", "Acme", false},
                        {"Demo 2", "Other", false},
                        {"My Demo", "Acme", false},
                        {"Tool", "Acme", false}};
    enter();
    EXPECT_EQ(actions.calls, (Calls{"uninstallApplication(Demo 1, null, native, wait)",
                                    "uninstallApplication(My Demo, null, native, wait)"}));
    EXPECT_EQ(ui.countOf("addFileLine(\"Uninstalling"), 2);
}

TEST_F(ExternalUninstallPageTest, SearchesWithoutAPublisher) {
    describe("<ExternalLegacyApplication Details=\"substring\">Demo</ExternalLegacyApplication>");
    enter();
    EXPECT_EQ(system.calls, Calls{"findEntriesByPublisher(Demo, )"});
}

TEST_F(ExternalUninstallPageTest, LooksIntoThe32BitView) {
    describe("<ExternalLegacyApplication Details=\"x86\">Demo</ExternalLegacyApplication>");
    system.installed = {{"Demo", "", false}};
    enter();
    EXPECT_TRUE(actions.calls.empty());
    page.condition = nullptr;
    system.installed = {{"Demo", "", true}};
    enter();
    EXPECT_EQ(actions.calls, Calls{"uninstallApplication(Demo, null, x86, wait)"});
    EXPECT_EQ(page.condition->evaluate(&system, &ui), 0);
}

TEST_F(ExternalUninstallPageTest, HandsExpandedArgumentsOn) {
    variables.setVariable("LONG", std::string(1500, 'x').c_str());
    describe("<ExternalLegacyApplication Arguments=\"-q [LONG][LONG]\">Demo</ExternalLegacyApplication>");
    system.installed = {{"Demo", "", false}};
    enter();
    EXPECT_EQ(actions.calls,
              Calls{"uninstallApplication(Demo, -q " + std::string(3000, 'x') + ", native, wait)"});
}

TEST_F(ExternalUninstallPageTest, PassesOverOtherElementsAndFalseConditions) {
    describe(
        "<ExternalLegacyApplication Condition=\"0\">Demo</ExternalLegacyApplication>"
        "<Other>Demo</Other><ExternalLegacyApplication/>");
    system.installed = {{"Demo", "", false}};
    enter();
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
}

}  // namespace
