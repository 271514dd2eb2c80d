#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/walking_ui.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
#include "support/text_mode.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

// Versions of a product on a machine in memory, each run by a session of its own.
class UpgradeTest : public testing::Test {
protected:
    static constexpr char kEnvironment[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";

    UpgradeTest() {
        files_.setTemporaryDirectory("/tmp");
        files_.addFile("/shared/notes", "the user's");
        const std::string end = OUtils::textLineEnd();
        files_.addFile("/shared/conf.ini", "[s]" + end + "known=before" + end);
        before_ = state();
    }

    std::string description(const std::string& name, int version, const std::string& more,
                            const std::string& pages) {
        const std::string number = std::to_string(version);
        return "<TandrelGroupInstallation><ProductDesc><Fullname>" + name + "</Fullname><MajorVersion>" +
               number +
               "</MajorVersion><MinorVersion>0</MinorVersion><MinestVersion>0</MinestVersion><Website>web" +
               number +
               "</Website><LegacyApplication>Former</LegacyApplication></ProductDesc>"
               "<InstallerControlVariables>" +
               (removesEarlier_ ? "<ShouldUninstall>SHOULD</ShouldUninstall>" : "") +
               "<InstallError>ERROR</InstallError></InstallerControlVariables>"
               "<DefValues><Value Name='ERROR' DataType='value'>0</Value></DefValues>"
               "<Dialogs><Hello/><CopyProgress Special='AutoNext'/>" +
               pages +
               "<End Special='Finish'/></Dialogs>"
               "<UninstallDialogs><Hello/><UnregisterApplication Special='AutoNext'/><CopyProgress "
               "Special='AutoNext'/><End Special='Finish'/></UninstallDialogs><Installation><Uninstall>"
               "<InstallLogFile>/app/un/install.log</InstallLogFile>"
               "<InstallBackupFile>/app/un/backup.bin</InstallBackupFile>"
               "<UninstallXmlFile>/app/un/install.xml</UninstallXmlFile>"
               "<UninstallCmd>/app/un/remove</UninstallCmd></Uninstall>"
               "<FileSet Name='F'><FN Dest='/app/un' Executable='1'>remove</FN><FN Dest='/app/un'>install.xml"
               "</FN><FN Dest='/app'>tool</FN><FN Dest='/app/v" +
               number + "'>tool</FN><FN Dest='/shared' BackupExisting='1'>notes</FN></FileSet>" +
               "<Environment><Replace VarName='MODE'>" + number + "</Replace></Environment><IniFiles>" +
               "<Add FileName='/shared/conf.ini' Section='s' Key='known'>" + number + "</Add></IniFiles>" +
               "<AdditionalInstall><Registry><AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Demo' "
               "Value='Version'>" +
               number + "</AddValue></Registry></AdditionalInstall>" + more +
               "<UninstallWildcards><F Dest='/app/un'>install.log</F><F Dest='/app/un'>backup.bin</F>"
               "</UninstallWildcards></Installation></TandrelGroupInstallation>";
    }

    int run(const std::string& path, std::uint32_t flags) {
        SystemServices services(machine_.bundle(), debugLog_);
        AnswersFile answers(files_);
        NestedSessions nested(debugLog_);
        Wini session(machine_.bundle(), services, answers, nested, debugLog_, {});
        session.setUnattended(isUnattended_);
        WalkingUI ui(session);
        ui.messageBoxResult = answer_;
        EXPECT_EQ(session.loadCabinet(path.c_str(), 0, flags), 0);
        files_.watchChanges(onChange_);
        const int result = session.run(&ui, &log_);
        lastResult_ = result;
        failed_ = result != 0 || session.hasErrors();
        session.releaseSession();
        files_.watchChanges({});
        messages_ = ui.callsOf("addMessage");
        boxes_ = ui.callsOf("messageBox");
        return result;
    }
    // `more` are elements of Installation.
    bool install(int version, const std::string& more = "", const std::string& pages = kPages,
                 const std::string& name = "Demo", std::uint32_t flags = kSessionBackup) {
        const std::string number = std::to_string(version);
        const std::vector<std::pair<std::string, std::string>> content = {
            {"install.xml", description(name, version, more, pages)},
            {"remove", "uninstaller " + number},
            {"tool", "tool " + number},
            {"notes", "the product's " + number}};
        std::vector<PackageFile> list;
        for (const auto& [file, text] : content) {
            files_.addFile("/src/" + file, text);
            list.push_back({"/src/" + file, file, file});
        }
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write(list, options, "/package");
        for (const PackageFile& file : list) {
            files_.removeFile(file.path);
        }
        files_.removeDirectory("/src");
        run("/package", flags);
        files_.removeFile("/package");
        return !failed_;
    }
    bool uninstall() {
        files_.addFile("/copy.log", files_.content("/app/un/install.log"));
        run("/copy.log", kSessionActionLog);
        files_.removeFile("/copy.log");
        return !failed_;
    }

    void addKey(const std::string& path, std::map<std::string, std::string>& outState) {
        std::vector<std::string> names;
        MemoryRegistry& registry = machine_.registry;
        registry.listValues(platform::RegistryRoot::kLocalMachine, path, platform::RegistryView::kNative,
                            names);
        for (const std::string& name : names) {
            platform::RegistryValue value;
            registry.readValue(platform::RegistryRoot::kLocalMachine, path, platform::RegistryView::kNative,
                               name, value);
            outState["HKLM\\" + path + ":" + name] = std::to_string(value.type) + " " + value.data;
        }
        registry.listKeys(platform::RegistryRoot::kLocalMachine, path, platform::RegistryView::kNative,
                          names);
        for (const std::string& name : names) {
            outState["HKLM\\" + path + "\\" + name] = "key";
            addKey(path + "\\" + name, outState);
        }
    }
    // Files with their contents and rights, and the registry.
    std::map<std::string, std::string> state() {
        std::map<std::string, std::string> found;
        for (const std::string& path : files_.allFiles()) {
            found[path] = files_.content(path) + (files_.isExecutable(path) ? " x" : "") +
                          (files_.isPrivate(path) ? " private" : "");
        }
        addKey("Software", found);
        addKey(kEnvironment, found);
        return found;
    }
    static std::vector<std::string> pathsOf(const std::map<std::string, std::string>& state) {
        std::vector<std::string> paths;
        for (const auto& [name, content] : state) {
            if (name.starts_with("/")) {
                paths.push_back(name);
            }
        }
        return paths;
    }
    std::string versionOf(const std::string& name) {
        const platform::RegistryValue* value = machine_.registry.value(
            platform::RegistryRoot::kLocalMachine, UninstallList::keyOf(name), "DisplayVersion");
        return value == nullptr ? "(none)" : value->data;
    }
    std::vector<std::string> leftovers() const {
        std::vector<std::string> found;
        for (const std::string& path : files_.allFiles()) {
            if (path.starts_with("/tmp/") || path.find("/removal-") != std::string::npos) {
                found.push_back(path);
            }
        }
        return found;
    }

    static constexpr char kPages[] =
        "<RevertInstallation Special='AutoNext' Condition='[ERROR]==1'/>"
        "<RegisterApplication Special='AutoNext' Condition='[ERROR]!=1'/>";
    // No such file is in the package.
    static constexpr char kFailing[] = "<FileSet Name='X'><FN Dest='/app'>gone</FN></FileSet>";

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    FakeConsole log_;
    DebugLog debugLog_{log_};
    std::map<std::string, std::string> before_;
    std::function<void()> onChange_;  // before each change that a session makes
    bool removesEarlier_ = true;
    bool isUnattended_ = false;
    int answer_ = 1;  // to every message box
    int lastResult_ = 0;
    bool failed_ = false;
    std::vector<std::string> messages_;
    std::vector<std::string> boxes_;
};
