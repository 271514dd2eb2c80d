#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/errors.h"
#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/fake_nested_sessions.h"
#include "fakes/installing_system.h"
#include "fakes/recording_ui.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
#include "session/installer.h"

// A session whose state a test can look at.
class TestSession : public Installer {
public:
    using Installer::Installer;
    using Installer::navigation;
    using Installer::pages;
    using SessionState::configFile;
    using SessionState::errorList;
    using SessionState::removed;
    using SessionState::sessionFlags;
};

// A front end whose run a test writes.
class ScriptedUI : public RecordingUI {
public:
    std::function<int()> script;

    int run() override {
        const int result = RecordingUI::run();
        return script ? script() : result;
    }
};

class SessionTest : public testing::Test {
protected:
    static constexpr char kProduct[] =
        "<ProductDesc><Fullname>Demo</Fullname><Website>web</Website><MajorVersion>1</MajorVersion>"
        "<MinorVersion>2</MinorVersion>"
        "<MinestVersion>3</MinestVersion></ProductDesc>";
    static constexpr char kControls[] =
        "<InstallerControlVariables><PreviousInstallation>PREVIOUS</PreviousInstallation>"
        "<LegacyInstallation>LEGACY</LegacyInstallation><ShouldUninstall>SHOULD</ShouldUninstall>"
        "<CustomizeSettings>CUSTOM</CustomizeSettings><ProgressDetails>DETAILS</ProgressDetails>"
        "<InstallError>INSTALL_ERROR</InstallError><UninstallError>UNINSTALL_ERROR</UninstallError>"
        "<DlgCondition>DLG_CONDITION</DlgCondition>"
        "<ExternalLegacyInstallation>EXTERNAL</ExternalLegacyInstallation></InstallerControlVariables>";

    SessionTest() {
        files_.addDirectory("/tmp");
        session_.setConsole(&log_, 0);
    }

    static std::string document(const std::string& content) {
        return "<TandrelGroupInstallation>" + content + "</TandrelGroupInstallation>";
    }
    // Packs a description and files, each under its name as alias, and loads the cabinet.
    void load(const std::string& description,
              const std::vector<std::pair<std::string, std::string>>& content = {}) {
        std::vector<PackageFile> list = {{"/src/install.xml", "install.xml", "install.xml"}};
        files_.addFile("/src/install.xml", description);
        for (const auto& [name, text] : content) {
            files_.addFile("/src/" + name, text);
            list.push_back({"/src/" + name, name, name});
        }
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write(list, options, "/package");
        ASSERT_EQ(session_.loadCabinet("/package", 0, kSessionBackup), 0);
        log_.clear();
    }
    // Opens an action log of a session that uninstalls.
    int loadLog(const std::string& log) {
        files_.addFile("/tmp/copy.log", log);
        const int result = session_.loadCabinet("/tmp/copy.log", 0, kSessionActionLog);
        log_.clear();
        return result;
    }
    int run() { return session_.run(&ui_, &log_); }
    std::string valueOf(const char* name) {
        char buffer[2048] = "";
        return session_.getVariable(name, buffer, sizeof buffer) == -1 ? "(none)" : buffer;
    }

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    MemoryEnvironment& environment_ = machine_.environment;
    InstallingSystem system_{files_};
    AnswersFile answers_{files_};
    FakeConsole log_;
    ScriptedUI ui_;
    FakeNestedSessions nested_;
    TestSession session_{machine_.bundle(), system_, answers_, nested_, DebugLog()};
};
