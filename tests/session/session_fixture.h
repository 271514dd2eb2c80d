#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/text_functions.h"
#include "description/description_fixture.h"
#include "description/file_sets.h"
#include "fakes/fake_console.h"
#include "fakes/fake_system_modifications.h"
#include "fakes/installing_system.h"
#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"
#include "package/package_writer.h"
#include "session/installer.h"

// A session on a fake system.
class TestSession : public Installer {
public:
    TestSession(platform::FileSystem& files, EnvironmentAccess& environment, FakeSystemOperations& system)
        : Installer(files, environment, modifications), system_(system) {}

    FakeSystemModifications modifications;

    using SessionState::earlier;
    using SessionState::errorList;
    using SessionState::navigation;
    using SessionState::nestedBackups;
    using SessionState::uninstallBackups;

    std::string configFile;
    std::vector<std::string> hooked;

    int getTemporaryFileName(char* buffer, int size) override {
        return system_.getTemporaryFileName(buffer, size);
    }
    bool findUninstallEntry(const char* name, std::uint32_t flags) override {
        return system_.findUninstallEntry(name, flags);
    }
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* filter, const char* publisher,
                                std::uint32_t flags) override {
        system_.findEntriesByPublisher(outNames, filter, publisher, flags);
    }
    bool getApplicationLogFile(const char* name, char* buffer, int size) override {
        return system_.getApplicationLogFile(name, buffer, size);
    }
    bool isApplicationRunning(const char* name, const char* directory) override {
        return system_.isApplicationRunning(name, directory);
    }
    bool closeApplication(const char* name, bool isService, const char* directory) override {
        return system_.closeApplication(name, isService, directory);
    }
    bool copyFile(const char* from, const char* to) override { return system_.copyFile(from, to); }
    bool readRegistryValue(const char* place, const char* path, const char* name,
                           SystemRegistryValue& outValue) override {
        return system_.readRegistryValue(place, path, name, outValue);
    }
    bool listRegistryKeys(const char* place, const char* path, std::vector<std::string>& outNames) override {
        return system_.listRegistryKeys(place, path, outNames);
    }
    bool openInDefaultBrowser(const char* url) override { return system_.openInDefaultBrowser(url); }
    void sleepMilliseconds(std::uint32_t milliseconds) override { system_.sleepMilliseconds(milliseconds); }

    int getConfigFile(char* buffer, int size) override {
        OUtils::copyText(buffer, configFile.c_str(), size);
        return 0;
    }

protected:
    void afterFileInstalled(const std::string& path, const FileEntry&) override { hooked.push_back(path); }

private:
    FakeSystemOperations& system_;
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
        "<ProductDesc><Fullname>Demo</Fullname><MajorVersion>1</MajorVersion><MinorVersion>2</MinorVersion>"
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

    MemoryFileSystem files_;
    TableEnvironment environment_;
    InstallingSystem system_{files_};
    FakeConsole log_;
    ScriptedUI ui_;
    TestSession session_{files_, environment_, system_};
};
