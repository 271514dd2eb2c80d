#include "ui/generic_ui.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "description/answers_file.h"
#include "fakes/fake_engine.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_file_system.h"
#include "ui/automated_input.h"

namespace {

class SilentUser : public InputProvider {
public:
    explicit SilentUser(int ready) : ready_(ready) {}
    int init() override { return ready_; }
    int askText(const char*, char*, int, const char*, const char*, bool) override { return 0; }
    int askChoice(const char*, int, std::string_view, std::string_view, bool, bool) override { return -1; }
    int askList(const char*, int, const std::vector<std::string>&, const std::vector<bool>&) override {
        return -1;
    }
    void tell(const char*) override {}
    void pause(std::string_view) override {}
    int finish(bool) override { return 1; }
    void abort() override {}

private:
    const int ready_;
};

// The least that makes a front end.
class TestUI : public GenericUI {
public:
    TestUI(platform::ConsoleDevice& terminal, AnswersFile& answers, bool uninstall, bool ignoreErrors)
        : GenericUI(terminal, answers, uninstall, ignoreErrors) {}

    int userReady = 1;
    std::vector<bool> madeUsers;  // their `uninstall`
    using GenericUI::engine;
    using GenericUI::input;
    using GenericUI::isUninstall;

    bool isAutomated() const { return dynamic_cast<Automated*>(input()) != nullptr; }
    bool isUser() const { return dynamic_cast<SilentUser*>(input()) != nullptr; }

    int run() override { return 0; }
    int finish() override { return 0; }
    int showDialog(int) override { return 0; }
    int showSubDialog(int, int) override { return 0; }
    int updateNavigationState() override { return 0; }
    int refreshDialog(int, int, std::uint32_t, bool) override { return 0; }
    int refreshFields(int, int) override { return 0; }
    int refreshElements() override { return 0; }
    void showPage(int, int, bool) override {}
    int prepareDialog(int) override { return 0; }
    void prepareSubDialog(int, int) override {}
    int leaveDialog(int) override { return 0; }
    void leaveSubDialog(int, int) override {}
    void clearTaskList() override {}
    void destroySubPage() override {}
    void keepElement(const char*) override {}
    int confirmCancel() override { return 0; }
    void enableDisableable(bool) override {}
    void pumpEvents() override {}
    void setCurrentProgress(int) override {}
    void setOverallProgress(int) override {}
    void setStatusText(const char*) override {}
    int pumpEventsWhileCopying() override { return 0; }
    void addFileLine(const char*, bool) override {}
    void clearFileLines() override {}
    void addMessage(std::string_view) override {}
    int messageBox(const char*, MessageKind) override { return 0; }
    int isGraphical() override { return 1; }
    bool isQuiet() override { return false; }
    void setTaskState(const char*, const char*, std::int32_t) override {}

protected:
    std::unique_ptr<InputProvider> makeUser(bool uninstall) override {
        madeUsers.push_back(uninstall);
        return std::make_unique<SilentUser>(userReady);
    }
};

struct GenericFrontEnd : testing::Test {
    MemoryConsoleDevice terminal;
    MemoryFileSystem files;
    AnswersFile answers{files};
    TestUI ui{terminal, answers, false, false};
    bool automated = false;

    std::string endOfRun() {
        terminal.output.clear();
        ui.input()->finish(false);
        return terminal.output;
    }
};

TEST_F(GenericFrontEnd, HasNoProviderAndNoEngineAtFirst) {
    EXPECT_EQ(ui.input(), nullptr);
    EXPECT_EQ(ui.engine(), nullptr);
    FakeEngine engine;
    ui.setEngine(&engine);
    EXPECT_EQ(ui.engine(), &engine);
}

TEST_F(GenericFrontEnd, AsksTheUserInAnUninstallation) {
    EXPECT_EQ(ui.createInputProvider("uninstall", automated), 0);
    EXPECT_TRUE(ui.isUser());
    EXPECT_EQ(ui.madeUsers, std::vector<bool>{true});
    EXPECT_FALSE(automated);
}

TEST_F(GenericFrontEnd, AutomatesAnUninstallation) {
    EXPECT_EQ(ui.createInputProvider("autoUninstall", automated), 0);
    EXPECT_TRUE(ui.isAutomated());
    EXPECT_TRUE(automated);
    EXPECT_EQ(endOfRun(), "Automatic uninstallation was successful!\n");
    EXPECT_TRUE(ui.madeUsers.empty());
}

TEST_F(GenericFrontEnd, AutomatesAnInstallation) {
    EXPECT_EQ(ui.createInputProvider("autoInstall", automated), 0);
    EXPECT_TRUE(ui.isAutomated());
    EXPECT_TRUE(automated);
    EXPECT_EQ(endOfRun(), "Automatic installation was successful!\n");
}

TEST_F(GenericFrontEnd, AsksTheUserForTheEmptyMode) {
    for (const char* mode : {"", static_cast<const char*>(nullptr)}) {
        ui.madeUsers.clear();
        EXPECT_EQ(ui.createInputProvider(mode, automated), 0);
        EXPECT_TRUE(ui.isUser());
        EXPECT_EQ(ui.madeUsers, std::vector<bool>{false});
        EXPECT_FALSE(automated);
    }
}

TEST_F(GenericFrontEnd, TakesAnAnswersFile) {
    files.addFile("/answers.xml", "<Root><DefValues></DefValues></Root>");
    EXPECT_EQ(ui.createInputProvider("/answers.xml", automated), 0);
    EXPECT_TRUE(ui.isAutomated());
    EXPECT_TRUE(automated);
    EXPECT_EQ(terminal.output, "");
    EXPECT_EQ(endOfRun(), "Automatic installation was successful!\n");
}

TEST_F(GenericFrontEnd, GoesOnWithTheUserWhenTheAnswersFileIsMissing) {
    const std::string path = "/missing.xml";
    EXPECT_EQ(ui.createInputProvider(path.c_str(), automated), 0);
    EXPECT_TRUE(ui.isUser());
    EXPECT_EQ(ui.madeUsers, std::vector<bool>{false});
    EXPECT_FALSE(automated);
    EXPECT_EQ(terminal.output, "The file \"" + path + "\" does not exist! Please specify existing file!\n");
}

TEST_F(GenericFrontEnd, GoesOnWithTheUserWhenTheAnswersFileHasNoDefaultValues) {
    const std::string path = "/other.xml";
    files.addFile(path, "<Root></Root>");
    EXPECT_EQ(ui.createInputProvider(path.c_str(), automated), 0);
    EXPECT_TRUE(ui.isUser());
    EXPECT_FALSE(automated);
    EXPECT_EQ(terminal.output, "The file \"" + path +
                                   "\" is not a propper XML installation config file. The installation can "
                                   "not continue!\n");
}

TEST_F(GenericFrontEnd, ComparesModesWithCase) {
    for (const char* mode : {"Uninstall", "AUTOUNINSTALL", "autoinstall", "autoInstall "}) {
        terminal.output.clear();
        EXPECT_EQ(ui.createInputProvider(mode, automated), 0) << mode;
        EXPECT_TRUE(ui.isUser()) << mode;
        EXPECT_EQ(terminal.output,
                  "The file \"" + std::string(mode) + "\" does not exist! Please specify existing file!\n");
    }
    EXPECT_FALSE(automated);
}

TEST_F(GenericFrontEnd, FailsWhenTheUserCannotBeAsked) {
    ui.userReady = 0;
    EXPECT_EQ(ui.createInputProvider("", automated), -1);
    EXPECT_EQ(ui.createInputProvider("uninstall", automated), -1);
    EXPECT_EQ(ui.input(), nullptr);
}

TEST_F(GenericFrontEnd, KeepsTheFlagsOfTheRun) {
    EXPECT_FALSE(ui.isUninstall());
    EXPECT_EQ(ui.getIgnoreErrors(), 0);
    TestUI other(terminal, answers, true, true);
    EXPECT_TRUE(other.isUninstall());
    EXPECT_EQ(other.getIgnoreErrors(), 1);
}

TEST_F(GenericFrontEnd, HasNothingForProgressHelpAndFatalMessages) {
    EXPECT_EQ(ui.beginProgress(), -1);
    EXPECT_EQ(ui.endProgress(), -1);
    ui.showHelp();
    ui.setFatalMessage("text", "caption");
    ui.showFatalMessage();
    EXPECT_EQ(terminal.output, "");
}

}  // namespace
