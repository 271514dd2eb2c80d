#include "ui/gui/main_frame.h"

#include "contracts/installer_ui.h"
#include "ui/gui/front_end_fixture.h"

namespace {

class MainFrameTest : public FrontEndTest {};

constexpr std::uint32_t kAll = kRefreshElements | kRefreshFields | kRefreshTasks | kRefreshButtons;

TEST_F(MainFrameTest, TheClientAreaIsThatOfTheDialog) {
    session.dialogs[0].width = 601;
    session.dialogs[0].height = 401;
    window.textWidth = 474;
    run([this] { EXPECT_EQ(window.client, (Extent{1202, 802})); });
    EXPECT_EQ(window.title, "Title");
    EXPECT_TRUE(window.isFrameShown);
}

TEST_F(MainFrameTest, AnotherDialogHasItsOwnSize) {
    session.addDialog("Second").width = 300;
    run([this] {
        session.goToDialog(1, &ui);
        EXPECT_EQ(window.client, (Extent{300, 520}));
    });
}

TEST_F(MainFrameTest, EntersTheFirstPageBeforeTheFrameIsShown) {
    addElement(kElementText, "", "Welcome");
    run([this] { EXPECT_TRUE(window.the(ControlKind::kText, "Welcome").isShown); });
    EXPECT_EQ(session.count("goToDialog(0)"), 1);
}

TEST_F(MainFrameTest, EntersTheFirstPageOfATaskListAsWell) {
    session.dialogs[0].special = kDialogHasSubDialogs;
    session.dialogs[0].subDialogs.emplace_back();
    run({});
    EXPECT_EQ(session.count("goToSubdialog(0,0)"), 1);
}

TEST_F(MainFrameTest, GoesOnByItselfWhereAPageAsksForIt) {
    session.onGoToDialog = [](int) { return 1; };
    run([this] { EXPECT_EQ(session.count("shift(1)"), 1); });
}

TEST_F(MainFrameTest, LongWorkOfTheFirstPageIsSeen) {
    bool wasShown = false;
    session.onGoToDialog = [&](int) {
        EXPECT_FALSE(window.isFrameShown);
        now += 1000;
        ui.pumpEvents();
        wasShown = window.isFrameShown;
        EXPECT_EQ(session.count("shift(1)"), 0) << "the page is still at work";
        return 1;
    };
    run([this] { EXPECT_EQ(session.count("shift(1)"), 1); });
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(window.framesShown, 1);
}

TEST_F(MainFrameTest, AButtonStepsAfterItsAction) {
    addButton("Express", kButtonHasAction | kButtonHasShift, "[CUSTOM]='0'", -1);
    run([this] { press("Express"); });
    const auto action = std::find(session.calls.begin(), session.calls.end(), "action([CUSTOM]='0')");
    const auto shift = std::find(session.calls.begin(), session.calls.end(), "shift(-1)");
    ASSERT_NE(shift, session.calls.end());
    EXPECT_LT(action, shift);
    EXPECT_EQ(session.count("triggers(2,0,-1)"), 0) << "a step needs no refresh";
}

TEST_F(MainFrameTest, AnActionWithoutAStepRefreshesThePageAndKeepsTheFocus) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    addButton("Toggle", kButtonHasAction, "[A]='1'");
    run([this] {
        press("Toggle");
        EXPECT_EQ(session.count("triggers(2,0,-1)"), 1);
        EXPECT_EQ(session.count("refreshTaskStates"), 1);
        EXPECT_EQ(window.focus, button("Toggle"));
    });
}

TEST_F(MainFrameTest, ADisabledButtonDoesNothing) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1).enableCondition.assign("no");
    session.conditions["no"] = 0;
    run([this] {
        window.events->onPress(button("Next"));
        EXPECT_TRUE(window.events->onEnter(false));
    });
    EXPECT_EQ(session.count("shift(1)"), 0);
}

TEST_F(MainFrameTest, ReturnPressesTheDefaultButton) {
    addButton("Back", kButtonHasShift, "", -1);
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    run([this] {
        EXPECT_EQ(window.focus, button("Next"));
        EXPECT_EQ(window.defaultButton, button("Next"));
        EXPECT_TRUE(window.events->onEnter(false));
    });
    EXPECT_EQ(session.count("shift(1)"), 1);
}

TEST_F(MainFrameTest, ReturnBelongsToABoxThatUsesIt) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    run([this] { EXPECT_FALSE(window.events->onEnter(true)); });
    EXPECT_EQ(session.count("shift(1)"), 0);
}

TEST_F(MainFrameTest, ReturnDoesNothingOnAPageWithoutADefaultButton) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    session.addDialog("Second");
    addButton("Other", kButtonHasShift, "", 1, 1);
    run([this] {
        session.goToDialog(1, &ui);
        EXPECT_EQ(window.focus, button("Other"));
        EXPECT_FALSE(window.events->onEnter(false));
    });
    EXPECT_EQ(session.count("shift(1)"), 0);
}

TEST_F(MainFrameTest, AHiddenDefaultPassesTheFocusOnAndIsStillPressed) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1).condition.assign("no");
    addButton("Help", kButtonHasAction, "Help");
    session.conditions["no"] = 0;
    run([this] {
        EXPECT_EQ(window.focus, button("Help"));
        EXPECT_TRUE(window.events->onEnter(false));
    });
    EXPECT_EQ(session.count("shift(1)"), 1);
}

TEST_F(MainFrameTest, AnInactiveFrameTakesNoFocusUntilItIsActive) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    window.active = false;
    window.focus = 0;
    run([this] {
        window.focus = 0;
        window.events->onFirstShow();
        EXPECT_EQ(window.focus, 0);
        window.events->onActivate(true);
        EXPECT_EQ(window.focus, button("Next"));
    });
}

TEST_F(MainFrameTest, ActivationLeavesTheFocusWhereTheUserPutIt) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    addField(kFieldEditBox, "NAME");
    run([this] {
        window.focus = window.find(ControlKind::kTextBox);
        window.events->onActivate(true);
        EXPECT_EQ(window.focus, window.find(ControlKind::kTextBox));
    });
}

TEST_F(MainFrameTest, AnInvalidFieldDisablesWhatWaits) {
    addButton("Next", kButtonHasShift | kButtonDisableable, "", 1);
    addField(kFieldEditBox, "NAME");
    session.variables["NAME"] = "";
    run([this] {
        EXPECT_FALSE(window.isEnabled(button("Next")));
        EXPECT_EQ(session.uiState, kUiFieldInvalid);
        window.type(window.find(ControlKind::kTextBox), "Ann");
        EXPECT_TRUE(window.isEnabled(button("Next")));
        EXPECT_EQ(session.uiState, kUiReady);
        window.type(window.find(ControlKind::kTextBox), " ");
        EXPECT_FALSE(window.isEnabled(button("Next")));
    });
}

TEST_F(MainFrameTest, TypingRefreshesWhatDependsOnTheVariableAndLeavesTheBox) {
    addField(kFieldEditBox, "NAME");
    addElement(kElementText, "", "Hello").condition.assign("known");
    session.variables["NAME"] = "";
    session.conditions["known"] = 0;
    session.refreshFlags["NAME"] = kRefreshElements | kRefreshFields;
    run([this] {
        const ControlId box = window.find(ControlKind::kTextBox);
        session.conditions["known"] = 1;
        const int changes = window.at(box).changes;
        window.type(box, " Ann ");
        EXPECT_EQ(session.variables["NAME"], "Ann");
        EXPECT_EQ(window.at(box).text, " Ann ");
        EXPECT_EQ(window.at(box).changes, changes);
        EXPECT_EQ(window.focus, box);
        EXPECT_TRUE(window.the(ControlKind::kText, "Hello").isShown);
    });
}

TEST_F(MainFrameTest, TypingRefreshesWhatDependsOnTheValidity) {
    addField(kFieldEditBox, "NAME").validationVariable.assign("VALID");
    session.variables["NAME"] = "";
    session.refreshFlags["VALID"] = kRefreshButtons;
    DialogButtonDesc& next = addButton("Next", kButtonHasShift, "", 1);
    next.enableCondition.assign("VALID");
    session.conditions["VALID"] = 0;
    run([this] {
        session.conditions["VALID"] = 1;
        window.type(window.find(ControlKind::kTextBox), "Ann");
        EXPECT_EQ(session.variables["VALID"], "1");
        EXPECT_TRUE(window.isEnabled(button("Next")));
    });
}

TEST_F(MainFrameTest, AChoiceRefreshesWhatDependsOnItAndKeepsTheFocus) {
    addButton("Next", kButtonHasShift | kButtonDefault, "", 1);
    addField(kFieldCheckBox, "MORE");
    addField(kFieldEditBox, "DETAIL").condition.assign("more");
    session.conditions["more"] = 0;
    session.variables = {{"MORE", "0"}, {"DETAIL", "x"}};
    session.refreshFlags["MORE"] = kRefreshFields;
    run([this] {
        EXPECT_FALSE(window.the(ControlKind::kTextBox).isShown);
        session.conditions["more"] = 1;
        window.press(ControlKind::kCheckBox, "MORE");
        EXPECT_TRUE(window.the(ControlKind::kTextBox).isShown);
        EXPECT_EQ(window.the(ControlKind::kTextBox).text, "x");
        EXPECT_EQ(window.focus, window.find(ControlKind::kCheckBox));
    });
}

TEST_F(MainFrameTest, AClosedGateDisablesWhatWaits) {
    addButton("Next", kButtonHasShift | kButtonDisableable, "", 1);
    bool isOpen = false;
    session.onCheckCondition = [&isOpen] { return isOpen ? 1 : 0; };
    run([&] {
        EXPECT_EQ(session.uiState, kUiConditionUnmet);
        EXPECT_FALSE(window.isEnabled(button("Next")));
        isOpen = true;
        now += 1001;
        window.events->onTimer();
        EXPECT_EQ(session.uiState, kUiReady);
        EXPECT_TRUE(window.isEnabled(button("Next")));
    });
}

TEST_F(MainFrameTest, TheFocusLeavesAButtonThatCanNoMoreBePressed) {
    addButton("Next", kButtonHasShift | kButtonDisableable, "", 1);
    addButton("Cancel", kButtonHasShift, "", 0);
    bool isOpen = true;
    session.onCheckCondition = [&isOpen] { return isOpen ? 1 : 0; };
    run([&] {
        EXPECT_EQ(window.focus, button("Next"));
        isOpen = false;
        ui.updateNavigationState();
        EXPECT_EQ(window.focus, button("Cancel"));
        isOpen = true;
        ui.updateNavigationState();
        EXPECT_EQ(window.focus, button("Cancel"));
    });
}

TEST_F(MainFrameTest, TheFocusLeavesAButtonThatARefreshHides) {
    addButton("Next", kButtonHasShift, "", 1).condition.assign("while");
    addButton("Cancel", kButtonHasShift, "", 0);
    session.conditions["while"] = 1;
    run([&] {
        EXPECT_EQ(window.focus, button("Next"));
        session.conditions["while"] = 0;
        ui.refreshDialog(0, -1, kAll, false);
        EXPECT_EQ(window.focus, button("Cancel"));
    });
}

TEST_F(MainFrameTest, NothingTakesTheMarkOffASessionAtWork) {
    addButton("Next", kButtonHasShift | kButtonDisableable, "", 1);
    addField(kFieldEditBox, "NAME");
    session.variables["NAME"] = "";
    session.onCheckCondition = [] { return 0; };
    run([this] {
        for (const std::int32_t state : {kUiInstallationRunning, kUiBusy}) {
            session.uiState = state;
            ui.refreshDialog(0, -1, kAll, false);
            EXPECT_EQ(session.uiState, state);
            EXPECT_FALSE(window.isEnabled(button("Next")));
        }
        session.uiState = kUiReady;
    });
}

TEST_F(MainFrameTest, EachStateEnablesOrDisables) {
    addButton("Next", kButtonHasShift | kButtonDisableable, "", 1);
    run([this] {
        const std::map<std::int32_t, bool> enabled = {{kUiReady, true},
                                                      {kUiInstallationRunning, false},
                                                      {kUiConditionUnmet, false},
                                                      {kUiFieldInvalid, false},
                                                      {kUiBusy, false}};
        for (const auto& [state, expected] : enabled) {
            session.uiState = state;
            ui.updateNavigationState();
            EXPECT_EQ(window.isEnabled(button("Next")), expected) << state;
        }
        session.uiState = kUiReady;
        ui.updateNavigationState();
        for (const std::int32_t state : {static_cast<std::int32_t>(kUiNoChange), -1}) {
            session.uiState = state;
            ui.updateNavigationState();
            EXPECT_TRUE(window.isEnabled(button("Next"))) << state;
        }
    });
}

TEST_F(MainFrameTest, ConditionsOfElementsAreLookedAtOnceASecond) {
    addElement(kElementText, "", "Later").condition.assign("later");
    session.conditions["later"] = 0;
    run([this] {
        now += 1001;
        window.events->onIdle();
        session.conditions["later"] = 1;
        now += 1000;
        window.events->onIdle();
        EXPECT_FALSE(window.the(ControlKind::kText).isShown);
        now += 1;
        window.events->onIdle();
        EXPECT_TRUE(window.the(ControlKind::kText).isShown);
    });
}

TEST_F(MainFrameTest, ClosesWhenTheSessionIsOver) {
    run([this] {
        window.events->onIdle();
        EXPECT_FALSE(window.isClosed);
        session.finished = true;
        window.events->onIdle();
        EXPECT_TRUE(window.isClosed);
    });
}

TEST_F(MainFrameTest, AStepThatEndsTheSessionClosesTheFrameWithoutAnIdleMoment) {
    addButton("Finish", kButtonHasShift, "", 1);
    run([this] {
        press("Finish");
        EXPECT_TRUE(session.finished);
        EXPECT_TRUE(window.isClosed);
    });
}

TEST_F(MainFrameTest, ClosesWithoutAnotherQuestionWhenTheSessionIsCancelled) {
    addButton("Cancel", kButtonHasAction, "Cancel");
    session.onAction = [this](const std::string&) { session.cancel(&ui); };
    window.answers = {true};
    run([this] {
        press("Cancel");
        EXPECT_TRUE(session.cancelled);
    });
    EXPECT_TRUE(window.isClosed);
    EXPECT_EQ(window.boxes.size(), 1U);
}

TEST_F(MainFrameTest, AYesInTheCloseBoxCancelsTheSession) {
    window.answers = {false, true};
    run([this] {
        EXPECT_FALSE(window.events->onClose());
        EXPECT_FALSE(session.cancelled);
        EXPECT_TRUE(window.events->onClose());
        EXPECT_TRUE(session.cancelled);
    });
}

TEST_F(MainFrameTest, WhileAStepIsAtWorkTheFrameStays) {
    addButton("Next", kButtonHasShift, "", 1);
    window.answers = {true};
    session.onShift = [this] {
        EXPECT_FALSE(window.events->onClose());
        EXPECT_TRUE(session.cancelled);
        window.events->onIdle();
        EXPECT_FALSE(window.isClosed);
        return 0;
    };
    run([this] { press("Next"); });
    EXPECT_TRUE(window.isClosed);
}

TEST_F(MainFrameTest, WhileAStepIsAtWorkFieldsAndTimersRest) {
    addButton("Next", kButtonHasShift, "", 1);
    addField(kFieldCheckBox, "MORE");
    addField(kFieldEditBox, "NAME");
    session.variables = {{"MORE", "0"}, {"NAME", "x"}};
    session.onShift = [this] {
        const auto calls = session.calls.size();
        window.press(ControlKind::kCheckBox, "MORE");
        window.type(window.find(ControlKind::kTextBox), "typed");
        now += 5000;
        window.events->onTimer();
        EXPECT_EQ(session.calls.size(), calls);
        EXPECT_EQ(session.variables["MORE"], "0");
        EXPECT_EQ(session.variables["NAME"], "x");
        session.finished = true;
        return 0;
    };
    run([this] { press("Next"); });
}

TEST_F(MainFrameTest, LeavingAPageStoresItsFields) {
    addField(kFieldRadioButtons, "KIND").content.assign("a;b");
    session.variables["KIND"] = "1";
    run([this] {
        session.variables["KIND"] = "0";
        ui.leaveDialog(0);
        EXPECT_EQ(session.variables["KIND"], "1");
        session.variables["KIND"] = "0";
        ui.leaveSubDialog(0, -1);
        EXPECT_EQ(session.variables["KIND"], "1");
    });
}

TEST_F(MainFrameTest, AKeptElementStaysWhenItsPageGoes) {
    session.dialogs[0].special = kDialogHasSubDialogs;
    session.dialogs[0].subDialogs.resize(2);
    addElement(kElementProgress, "Current", "", &session.dialogs[0].subDialogs);
    run([this] {
        const ControlId bar = window.find(ControlKind::kProgressBar);
        ui.keepElement("Current");
        session.goToSubdialog(0, 1, &ui);
        EXPECT_EQ(window.find(ControlKind::kProgressBar), bar);
        ui.setCurrentProgress(40);
        EXPECT_EQ(window.at(bar).percent, 40);
        ui.keepElement("Current");
        session.goToDialog(0, &ui);
        EXPECT_EQ(window.find(ControlKind::kProgressBar), bar) << "kept once more";
        session.goToDialog(0, &ui);
        EXPECT_EQ(window.find(ControlKind::kProgressBar), 0) << "not kept again";
    });
}

TEST_F(MainFrameTest, ASubDialogHasItsOwnColoursAndTheDialogGetsItsOwnBack) {
    session.dialogs[0].subDialogs.resize(2);
    session.addDialog("Plain");
    session.colours[{0, -1}] = {1, 2};
    session.colours[{0, 1}] = {3, 4};
    run([this] {
        session.goToSubdialog(0, 1, &ui);
        EXPECT_EQ(window.pageBackground, 3);
        EXPECT_EQ(window.pageForeground, 4);
        session.goToSubdialog(0, 0, &ui);
        EXPECT_EQ(window.pageBackground, 1);
        EXPECT_EQ(window.pageForeground, 2);
        session.goToDialog(1, &ui);
        EXPECT_EQ(window.pageBackground, -1);
    });
}

TEST_F(MainFrameTest, ButtonsOfTheDialogFollowItsPages) {
    session.dialogs[0].subDialogs.resize(1);
    addButton("Back", kButtonHasShift, "", -1).condition.assign("back");
    session.conditions["back"] = 0;
    run([this] {
        session.conditions["back"] = 1;
        session.goToSubdialog(0, 0, &ui);
        EXPECT_TRUE(window.isShown(button("Back")));
    });
}

TEST_F(MainFrameTest, AThemedFrameHasKeysOfItsOwn) {
    session.themed = true;
    session.themeColours[0] = 0x101010;
    session.themeColours[10] = 0x202020;
    addButton("&Next", kButtonHasShift, "", 1);
    run([this] {
        EXPECT_TRUE(window.isThemed);
        ASSERT_EQ(window.accessKeys.size(), 1U);
        EXPECT_EQ(window.accessKeys[0].control, button("&Next"));
        window.events->onAltKey();
        EXPECT_TRUE(window.areKeysShown);
        window.events->onAltKey();
        EXPECT_FALSE(window.areKeysShown);
    });
}

TEST_F(MainFrameTest, WithoutAThemeTheToolkitHasItsKeys) {
    addButton("&Next", kButtonHasShift, "", 1);
    run([this] { EXPECT_TRUE(window.accessKeys.empty()); });
}

TEST_F(MainFrameTest, TheFirstTextOfAPageIsAnnounced) {
    addElement(kElementText, "", "Welcome to the setup");
    run({});
    ASSERT_FALSE(window.announced.empty());
    EXPECT_EQ(window.announced.back(), "Welcome to the setup");
}

TEST_F(MainFrameTest, EachChangeThatIsBegunIsEnded) {
    addButton("Toggle", kButtonHasAction, "[A]='1'");
    run([this] { press("Toggle"); });
    EXPECT_EQ(window.openChanges, 0);
}

TEST_F(MainFrameTest, ADialogThatIsntThereIsntShown) {
    session.dialogs.clear();
    EXPECT_EQ(run({}), 0);
    EXPECT_TRUE(window.controls.empty());
}

}  // namespace
