#include "wini/wini.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/fake_console_device.h"
#include "fakes/fake_environment.h"
#include "fakes/fake_firewall.h"
#include "fakes/fake_processes.h"
#include "fakes/fake_shell_objects.h"
#include "fakes/memory_file_system.h"
#include "fakes/memory_registry.h"
#include "fakes/recording_ui.h"
#include "package/package_writer.h"
#include "platform/named_events.h"

namespace {

class NoEvents : public platform::NamedEvents {
public:
    std::unique_ptr<platform::NamedEvent> create(const char*) override { return nullptr; }
    bool signal(const char*) override { return false; }
};

class WalkingUI : public RecordingUI {
public:
    InstallExchangeInfo* engine = nullptr;
    int run() override { return engine->dialogNext(this, 1); }
};

class WiniTest : public testing::Test {
protected:
    WiniTest() {
        files_.setTemporaryDirectory("/tmp");
        wini_.setConsole(&log_, 2);
        ui_.engine = &wini_;
    }
    void load(const std::string& description) {
        files_.addFile("/src/install.xml", description);
        files_.addFile("/src/tool", "#!/bin/sh\n");
        PackageOptions options;
        options.stripes = 1;
        PackageWriter(files_).write(
            {{"/src/install.xml", "install.xml", "install.xml"}, {"/src/tool", "tool", "tool"}}, options,
            "/package");
        ASSERT_EQ(wini_.loadCabinet("/package", 0, kSessionBackup), 0);
    }

    MemoryFileSystem files_;
    MemoryRegistry registry_;
    FakeProcesses processes_;
    FakeEnvironment environment_;
    FakeConsoleDevice device_;
    NoEvents events_;
    FakeShellObjects shell_;
    FakeFirewall firewall_;
    platform::Platform platform_{files_,  registry_, processes_, environment_,
                                 device_, events_,   shell_,     firewall_};
    FakeConsole log_;
    WalkingUI ui_;
    Wini wini_{platform_, 2, 0, 1};
};

TEST_F(WiniTest, keepsTheArgumentsOfItsConstruction) {
    EXPECT_EQ(wini_.getDebugLevelArgument(), 2);
    EXPECT_EQ(wini_.getGuiArgument(), 0);
    EXPECT_EQ(wini_.getIgnoreErrorsArgument(), 1);
}

TEST_F(WiniTest, installsAProductOnItsPlatform) {
    environment_.variables["PLACE"] = "/opt/demo";
    registry_.addText(platform::RegistryRoot::kLocalMachine, "Software\\Demo", "Kind", "full");
    load(
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc>"
        "<Dialogs><Hello/><CopyProgress/><End Special='Finish'/></Dialogs><DefValues>"
        "<Value Name='ROOT' DataType='envvar'>PLACE</Value>"
        "<Value Name='KIND' DataType='registry' RegPlace='HKEY_LOCAL_MACHINE' "
        "RegKey='Software/Demo'>Kind</Value>"
        "</DefValues><Installation><Uninstall><InstallLogFile>[ROOT]/install.log</InstallLogFile></Uninstall>"
        "</Installation><FileSet Name='S'><FN Dest='[ROOT]' Executable='1'>tool</FN></FileSet>"
        "</TandrelGroupInstallation>");
    EXPECT_EQ(wini_.run(&ui_, &log_), 0);
    EXPECT_FALSE(wini_.hasErrors());
    EXPECT_TRUE(files_.isExecutable("/opt/demo/tool"));
    EXPECT_EQ(files_.content("/opt/demo/install.log"),
              "\r\n\r\nNUMVARS\t2\r\nVAR\tROOT\t/opt/demo\r\nVAR\tKIND\tfull\r\n"
              "DIR\t2\t/opt/demo\\\r\nFILE\tCREATE\t/opt/demo\\tool\r\n");
    EXPECT_EQ(wini_.releaseSession(), 0);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(WiniTest, stopsWhereTheConfigurationFileIsMissing) {
    wini_.setConfigFile("/none/config.xml");
    load(
        "<TandrelGroupInstallation><ProductDesc/><Dialogs><A/></Dialogs><DefValues/></"
        "TandrelGroupInstallation>");
    EXPECT_EQ(wini_.run(&ui_, &log_), -1);
    EXPECT_EQ(ui_.countOf("messageBox("), 1);
}

TEST_F(WiniTest, tellsTheFileOfAnswersThatItWasStartedWith) {
    char buffer[32] = "x";
    EXPECT_EQ(wini_.getConfigFile(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    wini_.setConfigFile("/none/config.xml");
    EXPECT_EQ(wini_.getConfigFile(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "/none/config.xml");
    EXPECT_EQ(wini_.getConfigFile(buffer, 6), 0);
    EXPECT_STREQ(buffer, "/none");
    wini_.setConfigFile(nullptr);
    EXPECT_EQ(wini_.getConfigFile(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
}

TEST_F(WiniTest, answersForTheSystem) {
    registry_.addText(platform::RegistryRoot::kLocalMachine,
                      "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Demo", "UninstallString",
                      "x -uninstall=\"/log\"");
    registry_.addKey(platform::RegistryRoot::kUsers, "A\\B");
    processes_.ownId = 7;
    processes_.running = {{20, "tool", "/bin/tool"}};
    char buffer[256] = "";
    EXPECT_TRUE(wini_.findUninstallEntry("Demo", 0));
    EXPECT_TRUE(wini_.getApplicationLogFile("Demo", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "/log");
    std::vector<std::string> names;
    wini_.findEntriesByPublisher(names, "De", "", 0);
    EXPECT_EQ(names, std::vector<std::string>{"Demo"});
    EXPECT_TRUE(wini_.isApplicationRunning("tool", nullptr));
    EXPECT_TRUE(wini_.closeApplication("tool", false, nullptr));
    EXPECT_EQ(wini_.getTemporaryFileName(buffer, sizeof buffer), 0);
    files_.addFile("/a", "content");
    EXPECT_TRUE(wini_.copyFile("/a", "/b"));
    EXPECT_EQ(files_.content("/b"), "content");
    EXPECT_FALSE(wini_.copyFile("/none", "/c"));
    SystemRegistryValue value;
    EXPECT_FALSE(wini_.readRegistryValue("HKEY_USERS", "A", "none", value));
    EXPECT_TRUE(wini_.listRegistryKeys("HKEY_USERS", "A", names));
    wini_.sleepMilliseconds(0);
}

TEST_F(WiniTest, opensAPageInTheDefaultBrowser) {
    EXPECT_TRUE(wini_.openInDefaultBrowser("http://example.com"));
    EXPECT_EQ(shell_.opened, std::vector<std::string>{"http://example.com"});
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(WiniTest, saysThatAPageCouldNotBeOpened) {
    shell_.opens = false;
    EXPECT_FALSE(wini_.openInDefaultBrowser("http://example.com"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"WARNING: \"http://example.com\" could not be opened (2)"});
}

}  // namespace
