#include "ui/gui/wx_gui.h"

#include <stdexcept>
#include <thread>

#include "contracts/installer_ui.h"
#include "ui/gui/front_end_fixture.h"
#include "ui/gui/test_pictures.h"

namespace {

class WxGUITest : public FrontEndTest {};

TEST_F(WxGUITest, IsAGraphicalFrontEndThatNeverIgnoresErrors) {
    EXPECT_EQ(ui.isGraphical(), 1);
    EXPECT_EQ(ui.getIgnoreErrors(), 0);
    EXPECT_FALSE(ui.isQuiet());
    EXPECT_EQ(ui.beginProgress(), 0);
    EXPECT_EQ(ui.endProgress(), 0);
    EXPECT_EQ(ui.finish(), 0);
}

TEST_F(WxGUITest, DoesNothingWithoutAnEngine) {
    ui.setEngine(nullptr);
    EXPECT_EQ(run({}), -1);
    EXPECT_EQ(window.runs, 0);
    EXPECT_EQ(ui.showDialog(0), -1);
    EXPECT_EQ(ui.confirmCancel(), 0);
}

TEST_F(WxGUITest, BeforeItRunsItHasNoPages) {
    EXPECT_EQ(ui.showDialog(0), -1);
    EXPECT_EQ(ui.showSubDialog(0, 0), -1);
    EXPECT_EQ(ui.updateNavigationState(), -1);
    EXPECT_EQ(ui.refreshDialog(0, -1, 31, true), -1);
    EXPECT_EQ(ui.refreshFields(0, -1), -1);
    EXPECT_EQ(ui.refreshElements(), -1);
    EXPECT_EQ(ui.prepareDialog(0), -1);
    EXPECT_EQ(ui.leaveDialog(0), -1);
    ui.addFileLine("line", true);
    ui.setStatusText("text");
    ui.setCurrentProgress(50);
    ui.pumpEvents();
    EXPECT_EQ(window.processed, 0);
}

TEST_F(WxGUITest, AFrameThatCantBeMadeFailsTheRun) {
    window.hasFrame = false;
    window.script = {};
    struct NoFrame : RecordingToolkit {
        bool makeFrame(const FrameSpec&) override { return false; }
    } none;
    WxGUI other(false, {none, terminal, answers, files, [this] { return now; }, [] { return 0U; }}, {});
    other.setEngine(&session);
    EXPECT_EQ(other.run(), -1);
}

TEST_F(WxGUITest, TextThatIsTwiceAsWideDoublesAllSizes) {
    addButton("Next", kButtonHasShift, "", 1).x = 10;
    window.textWidth = 474;
    run([this] { EXPECT_EQ(window.place(button("Next")), (Place{20, 0, 160, 60})); });
}

TEST_F(WxGUITest, TextOfTheUsualWidthLeavesAllSizes) {
    addButton("Next", kButtonHasShift, "", 1).x = 10;
    for (const int width : {237, 200}) {
        window.textWidth = width;
        session.finished = false;
        run([this] { EXPECT_EQ(window.place(button("Next")), (Place{10, 0, 80, 30})); });
    }
}

TEST_F(WxGUITest, TheIconComesFromThePackage) {
    session.resources["AppIcon"] = rawPicture(16, 24, 1);
    run([this] { EXPECT_EQ(window.icon, (Extent{16, 24})); });
}

TEST_F(WxGUITest, AnIconThatIsNoneIsLeftOut) {
    session.resources["AppIcon"] = "none";
    run([this] { EXPECT_EQ(window.icon, Extent{}); });
}

TEST_F(WxGUITest, TheCloseBoxOnlyInformsWhileTheInstallationRuns) {
    run([this] {
        session.uiState = kUiInstallationRunning;
        EXPECT_FALSE(window.events->onClose());
        session.uiState = kUiBusy;
        EXPECT_FALSE(window.events->onClose());
        session.uiState = kUiReady;
    });
    ASSERT_EQ(window.boxes.size(), 2U);
    EXPECT_EQ(window.boxes[0].text, "The installation is running and can not be aborted!");
    EXPECT_EQ(window.boxes[0].caption, "Cancel information");
    EXPECT_EQ(window.boxes[0].buttons, MessageButtons::kOk);
    EXPECT_EQ(window.boxes[1].text, "The installer is busy and cannot be interrupted");
    EXPECT_FALSE(session.cancelled);
}

TEST_F(WxGUITest, OtherwiseItAsks) {
    run([this] { EXPECT_FALSE(window.events->onClose()); });
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0].text, "This will cancel the installation of\nFull name\nAre you sure?");
    EXPECT_EQ(window.boxes[0].caption, "Cancel confirmation");
    EXPECT_EQ(window.boxes[0].buttons, MessageButtons::kYesNo);
    EXPECT_EQ(window.boxes[0].sign, MessageSign::kInformation);
}

TEST_F(WxGUITest, ACancelFromAnotherThreadIsAskedAboutInTheWindow) {
    window.answers = {true};
    run([this] {
        std::thread([this] { EXPECT_EQ(session.cancel(&ui), 0); }).join();
        EXPECT_FALSE(session.cancelled);
        EXPECT_TRUE(window.boxes.empty());
        EXPECT_EQ(window.wakes, 1);
        window.events->onWake();
        EXPECT_TRUE(session.cancelled);
        window.events->onWake();
    });
    EXPECT_EQ(window.boxes.size(), 1U);
}

TEST_F(WxGUITest, ACancelBeforeTheWindowIsShownIsNotForgotten) {
    window.answers = {true};
    std::thread([this] { session.cancel(&ui); }).join();
    run({});
    EXPECT_TRUE(session.cancelled);
}

TEST_F(WxGUITest, TheSessionBreathesAFewTimesASecond) {
    run([this] {
        now = 1000;
        const int before = window.processed;
        ui.pumpEvents();
        EXPECT_EQ(window.processed, before + 1);
        now += 64;
        ui.pumpEvents();
        EXPECT_EQ(ui.pumpEventsWhileCopying(), 0);
        EXPECT_EQ(window.processed, before + 1);
        now += 1;
        EXPECT_EQ(ui.pumpEventsWhileCopying(), 0);
        EXPECT_EQ(window.processed, before + 2);
    });
}

TEST_F(WxGUITest, TheTimerLeavesBreathingToARunningInstallation) {
    run([this] {
        now = 1000;
        session.uiState = kUiInstallationRunning;
        const int before = window.processed;
        window.events->onTimer();
        EXPECT_EQ(window.processed, before);
        session.uiState = kUiReady;
        window.events->onTimer();
        EXPECT_EQ(window.processed, before + 1);
    });
}

TEST_F(WxGUITest, LinesAreShownWhenTheyAreFlushed) {
    addElement(kElementList, "Destfilelist");
    run([this] {
        RecordingToolkit::Control& list = window.the(ControlKind::kLines);
        ui.addFileLine("one", false);
        EXPECT_EQ(list.text, "");
        ui.addFileLine("two", true);
        EXPECT_EQ(list.text, "one\ntwo\n");
        const int changes = list.changes;
        ui.addFileLine(nullptr, true);
        EXPECT_EQ(list.changes, changes);
        ui.addFileLine("three", false);
        ui.clearFileLines();
        ui.addFileLine(nullptr, true);
        EXPECT_EQ(list.text, "");
    });
}

TEST_F(WxGUITest, ManyLinesDoNotPileUp) {
    addElement(kElementList, "Destfilelist");
    run([this] {
        for (int i = 0; i < 1000; ++i) {
            ui.addFileLine(std::string(100, 'x').c_str(), false);
        }
        EXPECT_GT(window.the(ControlKind::kLines).text.size(), 60000U);
    });
}

TEST_F(WxGUITest, LinesWithoutAListAreDropped) {
    addElement(kElementText, "Destfilelist");
    run([this] { ui.addFileLine("line", true); });
    EXPECT_EQ(terminal.errors, "");
}

TEST_F(WxGUITest, AMessageWaitsForAList) {
    session.addDialog("Second").elements.emplace_back();
    session.dialogs[1].elements[0].kind = kElementList;
    session.dialogs[1].elements[0].name.assign("Destfilelist");
    run([this] {
        ui.addMessage("important");
        session.goToDialog(1, &ui);
        EXPECT_EQ(window.the(ControlKind::kLines).text, "important\n");
    });
    EXPECT_EQ(terminal.errors, "");
}

TEST_F(WxGUITest, AMessageThatNoPageShowedGoesToStandardError) {
    run([this] { ui.addMessage("important"); });
    EXPECT_EQ(terminal.errors, "important\n");
}

TEST_F(WxGUITest, ProgressAndStatusGoToTheElementsOfTheirNames) {
    addElement(kElementProgress, "Current");
    addElement(kElementProgress, "Overall");
    addElement(kElementText, "Destination");
    run([this] {
        ui.setCurrentProgress(30);
        ui.setOverallProgress(60);
        ui.setStatusText("copying\n");
        EXPECT_EQ(window.the(ControlKind::kProgressBar, "Current").percent, 30);
        EXPECT_EQ(window.the(ControlKind::kProgressBar, "Overall").percent, 60);
        EXPECT_EQ(window.the(ControlKind::kText).text, "copying");
    });
}

TEST_F(WxGUITest, AsksInBoxes) {
    run([this] {
        window.answers = {true, false, true, false};
        EXPECT_EQ(ui.messageBox("a", MessageKind::kOkCancel), 1);
        EXPECT_EQ(ui.messageBox("b", MessageKind::kOkCancel), 0);
        EXPECT_EQ(ui.messageBox("c", MessageKind::kYesNo), 1);
        EXPECT_EQ(ui.messageBox("d", MessageKind::kYesNo), 0);
        EXPECT_EQ(ui.messageBox("e", MessageKind::kInformation), 1);
        EXPECT_EQ(ui.messageBox("f", static_cast<MessageKind>(3)), 0);
        EXPECT_EQ(ui.messageBox(nullptr, MessageKind::kInformation), 1);
    });
    ASSERT_EQ(window.boxes.size(), 6U);
    EXPECT_EQ(window.boxes[0].caption, "Installation");
    EXPECT_EQ(window.boxes[0].buttons, MessageButtons::kOkCancel);
    EXPECT_EQ(window.boxes[2].buttons, MessageButtons::kYesNo);
    EXPECT_EQ(window.boxes[4].buttons, MessageButtons::kOk);
}

TEST_F(WxGUITest, HelpOpensThePageOfTheProduct) {
    session.helpUrl = "https://example.org/help";
    run([this] { ui.showHelp(); });
    EXPECT_EQ(session.count("browse(https://example.org/help)"), 1);
    EXPECT_TRUE(window.boxes.empty());
}

TEST_F(WxGUITest, WithoutAHelpPageItIsSorry) {
    run([this] { ui.showHelp(); });
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0].text, "Sorry, no help is available for this product");
    EXPECT_EQ(window.boxes[0].sign, MessageSign::kInformation);
}

TEST_F(WxGUITest, SaysThatTheHelpPageCantBeOpened) {
    session.helpUrl = "https://example.org/help";
    session.hasBrowser = false;
    run([this] { ui.showHelp(); });
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0].text, "The help WebPage could not be opened.");
    EXPECT_EQ(window.boxes[0].sign, MessageSign::kError);
}

TEST_F(WxGUITest, AFatalMessageIsShownInsteadOfAWindow) {
    ui.setFatalMessage("first", "Caption");
    ui.setFatalMessage("second", "Other");
    ui.showFatalMessage();
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0].text, "first");
    EXPECT_EQ(window.boxes[0].caption, "Caption");
    EXPECT_EQ(window.boxes[0].sign, MessageSign::kError);
    EXPECT_FALSE(window.hasFrame);
}

TEST_F(WxGUITest, WithoutAFatalMessageThereIsNothingToShow) {
    ui.showFatalMessage();
    EXPECT_EQ(window.runs, 0);
}

TEST_F(WxGUITest, AnExceptionOfTheSessionEndsTheLoopAndLeavesTheRun) {
    addButton("Next", kButtonHasShift, "", 1);
    session.onShift = []() -> int { throw std::runtime_error("broken"); };
    bool wasClosed = false;
    EXPECT_THROW(run([&] {
                     press("Next");
                     wasClosed = window.isClosed;
                     press("Next");
                     window.events->onIdle();
                 }),
                 std::runtime_error);
    EXPECT_TRUE(wasClosed);
    EXPECT_EQ(session.count("shift(1)"), 1) << "nothing more reaches the session";
}

TEST_F(WxGUITest, AnExceptionAtTheStartLeavesTheRunAsWell) {
    session.onGoToDialog = [](int) -> int { throw std::runtime_error("broken"); };
    EXPECT_THROW(run({}), std::runtime_error);
}

TEST_F(WxGUITest, ALostDisplayCancelsWhatHasNotBegun) {
    run([this] {
        window.events->onDisplayLost();
        window.isClosed = true;
    });
    EXPECT_TRUE(session.cancelled);
    EXPECT_TRUE(window.boxes.empty());
    EXPECT_NE(terminal.errors.find("The installation was cancelled"), std::string::npos);
}

TEST_F(WxGUITest, ALostDisplayOnTheLastPageEndsTheSession) {
    session.dialogs[0].special = kDialogFinish;
    run([this] {
        window.events->onDisplayLost();
        window.isClosed = true;
    });
    EXPECT_FALSE(session.cancelled);
    EXPECT_TRUE(session.finished);
}

TEST_F(WxGUITest, WorkThatRunsIsFinishedWithoutADisplay) {
    run([this] {
        session.uiState = kUiInstallationRunning;
        window.events->onDisplayLost();
        EXPECT_EQ(ui.confirmCancel(), 0);
        session.uiState = kUiReady;
        session.finished = true;
    });
    EXPECT_FALSE(session.cancelled);
}

TEST_F(WxGUITest, TakesNoAnswersFromATerminal) {
    bool automated = false;
    EXPECT_EQ(ui.createInputProvider("", automated), -1);
    EXPECT_FALSE(automated);
}

}  // namespace
