#include <algorithm>
#include <map>

#include "session_fixture.h"

namespace {

// A session whose pages are of every kind that an installation has. At each moment when a window would handle
// its events the user presses everything.
class PressedSession : public SessionTest {
public:
    void TestBody() override {}

    struct Outcome {
        int result = 0;
        std::vector<std::string> log;
        std::vector<std::string> screen;
        std::vector<std::string> programs;
        std::map<std::string, std::string> files;
        std::map<std::string, std::string> registry;
        std::string variables;
    };

    Outcome install(bool isPressed) {
        files_.addFile("/app/conf", "[main]\n");
        files_.addFile("/app/second", "the user's");
        load(description(), {{"first", std::string(9 * 1024 * 1024, '1')}, {"second", "2"}});
        ui_.graphical = 1;
        ui_.confirmCancelResult = 0;
        machine_.processes.waitsBeforeEnd = 2;
        if (isPressed) {
            ui_.onCall = [this](const std::string& call) { onCall(call); };
        }
        ui_.script = [this] { return walk(); };
        Outcome outcome;
        outcome.result = run();
        outcome.log = log_.lines();
        // How often the session has its events handled depends on the speed of the machine.
        std::ranges::copy_if(ui_.calls, std::back_inserter(outcome.screen), [](const std::string& call) {
            return call != "confirmCancel()" && !call.starts_with("pumpEvents");
        });
        for (const MemoryProcesses::Started& program : machine_.processes.started) {
            outcome.programs.push_back(program.commandLine);
        }
        for (const std::string& path : files_.allFiles()) {
            outcome.files[path] = files_.content(path);
        }
        outcome.registry = machine_.registry.everything();
        outcome.variables = valueOf("MOMENT") + "," + valueOf("DIR") + "," + valueOf("INSTALL_ERROR");
        return outcome;
    }

    int presses = 0;

private:
    static std::string description() {
        const std::string triggers =
            "<Trigger EvaluateOn='Start;End;Dynamic' Type='RunActions' Value='Look'/>"
            "<Trigger EvaluateOn='Start' Type='VarChange' Variable='MOMENT' Value='[MOMENT]s'/>"
            "<Trigger EvaluateOn='Dynamic' Type='VarChange' Variable='MOMENT' Value='[MOMENT]d'/>";
        return document(
            std::string(kProduct) + kControls +
            "<DefValues><Value Name='DIR' DataType='value'>/app</Value>"
            "<Value Name='MOMENT' DataType='value'>-</Value></DefValues>"
            "<Dialogs><Hello>" +
            triggers + "</Hello><Evaluation Special='Busy;AutoNext'>" + triggers +
            "<Trigger EvaluateOn='DlgEval' Type='RunActions' Value='Look'/></Evaluation>"
            "<RunningApps Special='AutoNext'/><Uninstall Special='AutoNext'/>"
            "<ExternalUninstall Special='AutoNext'/><CopyProgress Special='AutoNext'>" +
            triggers +
            "</CopyProgress><RegisterApplication Special='AutoNext'/><PostInstall/><End Special='Finish'>" +
            triggers +
            "</End></Dialogs>"
            "<Look><RunProgram Wait='1'>look</RunProgram></Look>"
            "<AdditionalInstall><RunProgram Asynchronous='1'>tool</RunProgram></AdditionalInstall>"
            "<PostInstall><RunProgram Wait='1'>post</RunProgram></PostInstall>"
            "<FileSet Name='S'><FN Dest='[DIR]'>first</FN><FN Dest='[DIR]' BackupExisting='1'>second</FN>"
            "</FileSet>"
            "<Installation><Uninstall><InstallLogFile>[DIR]/install.log</InstallLogFile>"
            "<InstallBackupFile>[DIR]/backup</InstallBackupFile><UninstallCmd>[DIR]/un</UninstallCmd>"
            "</Uninstall></Installation>");
    }

    int walk() {
        session_.goToDialog(0, &ui_);
        for (int i = 0; i < 20 && !session_.isFinished(); ++i) {
            session_.runTriggers(&ui_, 2, session_.getCurrentDialog(), session_.getCurrentSubDialog());
            session_.shift(&ui_, 1);
        }
        EXPECT_TRUE(session_.isFinished());
        return 0;
    }

    void onCall(const std::string& call) {
        if (isPressing_ || (!call.starts_with("pumpEvents") && call != "updateNavigationState()")) {
            return;
        }
        isPressing_ = true;
        EXPECT_EQ(session_.shift(&ui_, 1), -1);
        EXPECT_EQ(session_.shift(&ui_, -1), -1);
        EXPECT_EQ(session_.goToDialog(0, &ui_), -1);
        session_.performAction(&ui_, "[DIR]='/elsewhere'");
        session_.performAction(&ui_, "Cancel");
        session_.runTriggers(&ui_, 2, session_.getCurrentDialog(), session_.getCurrentSubDialog());
        session_.checkDialogCondition(&ui_);
        session_.refreshTaskStates(&ui_);
        if (session_.getUiState() == kUiInstallationRunning || session_.getUiState() == kUiBusy) {
            EXPECT_EQ(session_.setVariable("DIR", "/typed"), -1);
            session_.setUiState(kUiReady);
        }
        ++presses;
        isPressing_ = false;
    }

    bool isPressing_ = false;
};

TEST(InstallerPresses, ChangeNothingOfAnInstallation) {
    PressedSession undisturbed;
    PressedSession pressed;
    const PressedSession::Outcome expected = undisturbed.install(false);
    const PressedSession::Outcome found = pressed.install(true);
    EXPECT_GT(pressed.presses, 40);
    EXPECT_EQ(expected.result, 0);
    EXPECT_EQ(expected.files.count("/app/first"), 1U) << testing::PrintToString(expected.screen);
    EXPECT_EQ(found.result, expected.result);
    EXPECT_EQ(found.log, expected.log);
    EXPECT_EQ(found.screen, expected.screen);
    EXPECT_EQ(found.programs, expected.programs);
    EXPECT_TRUE(found.files == expected.files);
    EXPECT_EQ(found.registry, expected.registry);
    EXPECT_EQ(found.variables, expected.variables);
}

}  // namespace
