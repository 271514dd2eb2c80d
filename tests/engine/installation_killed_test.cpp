#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <memory>

#include "engine/changes/text_lines.h"
#include "engine/installation_fixture.h"
#include "engine/unfinished_files.h"
#include "engine/uninstallation.h"
#include "platform/system_environment.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"

namespace {

using platform::FirewallProtocol;
using platform::RegistryRoot;

constexpr auto kRoot = RegistryRoot::kLocalMachine;
constexpr char kLog[] = "/tmp/orinstall1";
constexpr char kArchive[] = "/tmp/orinstall2";

// A desktop whose links are files.
class DiskShell : public MemoryShellObjects {
public:
    explicit DiskShell(MemoryFileSystem& files) : files_(files) {}

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override {
        ReplacingFile file(files_);
        int status = file.open(linkPath);
        status = status != 0 ? status : file.stream().writeText("link to " + link.target);
        return status != 0 ? status : file.putInPlace();
    }

private:
    MemoryFileSystem& files_;
};

// What a machine holds at some moment.
struct Moment {
    MemoryFileSystem files;
    MemoryRegistry registry;
    MemoryFirewall firewall;

    Moment(const MemoryFileSystem& theFiles, const MemoryRegistry& theRegistry,
           const MemoryFirewall& theFirewall)
        : registry(theRegistry), firewall(theFirewall) {
        files.becomeCopyOf(theFiles);
        registry.watcher = nullptr;
        firewall.watcher = nullptr;
    }
    Moment(const Moment& other) : Moment(other.files, other.registry, other.firewall) {}

    // All but the directories of the system and of this program.
    std::map<std::string, std::string> state() const {
        std::map<std::string, std::string> all = files.everything();
        std::erase_if(all, [](const auto& entry) {
            return entry.first.starts_with("/tmp/") || entry.first.starts_with("/var") ||
                   entry.first.starts_with("/src") || entry.first == "/package";
        });
        for (const auto& [name, text] : registry.everything()) {
            // The undo of an entry at the end of a list leaves its separator.
            all["registry " + name] = text.ends_with(';') ? text.substr(0, text.size() - 1) : text;
        }
        for (const auto& [path, name] : firewall.applications) {
            all["exception for " + path] = name;
        }
        for (const auto& [port, name] : firewall.ports) {
            all["port " + std::to_string(port.first)] += name + ';';
        }
        return all;
    }
};

// An installation that is killed before each of its changes to the machine, and undone by its records alone.
class InstallationKilledTest : public InstallationTest {
protected:
    InstallationKilledTest() {
        // The undo of a directory takes empty ones above it along.
        files_.addFile("/app/own", "somebody's");
        files_.addFile("/shared/own", "somebody's");
        pack({{"one", "one", "one of the product"},
              {"two", "two", "two of the product"},
              {"script", "script", "1\nanchor\n1\nadded\n"},
              {"text", "text", "for [NAME]"}});
        variables_.set("NAME", "somebody");
    }

    bool install() {
        Report report(&ui_, &errors_);
        return Installation(diskParts_).run(report);
    }

    // The machine is as it was before, whenever the run was killed.
    void expectNothingIsLeftAtAnyMoment(const std::string& changes) {
        describe(kUninstall + changes);
        const Moment before(files_, machine_.registry, machine_.firewall);
        watch();
        EXPECT_TRUE(install());
        unwatch();
        ASSERT_FALSE(moments_.empty());
        for (std::size_t i = 0; i < moments_.size(); ++i) {
            SCOPED_TRACE("killed at call " + std::to_string(i) + " with the log:\n" +
                         moments_[i]->files.content(kLog));
            undo(*moments_[i]);
            EXPECT_EQ(moments_[i]->state(), before.state());
        }
    }

    EngineParts partsOn(MemoryFileSystem& files, MemoryRegistry& registry, MemoryFirewall& firewall,
                        platform::ShellObjects& shell) {
        return {parts_.model,
                cabinet_,
                {files, registry, machine_.processes, machine_.environment, machine_.console, machine_.events,
                 shell, firewall},
                system_,
                console_};
    }

    void watch() {
        const auto take = [this] { takeMoment(); };
        files_.watchChanges(take);
        machine_.registry.watcher = take;
        machine_.firewall.watcher = take;
    }
    void unwatch() {
        files_.watchChanges({});
        machine_.registry.watcher = nullptr;
        machine_.firewall.watcher = nullptr;
    }

    // While the records are open, from the end of the log's head on. In the middle of each write to the log
    // as well.
    void takeMoment() {
        const std::string log = files_.content(kLog);
        if (!files_.hasFile(kArchive) || log.find("NUMVARS") == std::string::npos) {
            return;
        }
        const std::string before = last_ == nullptr ? log : last_->files.content(kLog);
        if (log.size() > before.size()) {
            auto torn = std::make_unique<Moment>(*last_);
            torn->files.addFile(kLog, log.substr(0, (before.size() + log.size()) / 2));
            moments_.push_back(std::move(torn));
        }
        moments_.push_back(std::make_unique<Moment>(files_, machine_.registry, machine_.firewall));
        last_ = moments_.back().get();
    }

    void undo(Moment& moment) {
        DiskShell shell(moment.files);
        const EngineParts parts = partsOn(moment.files, moment.registry, moment.firewall, shell);
        PFileStream log(moment.files);
        ASSERT_EQ(log.openFile(kLog, PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting),
                  0);
        removeUnfinishedFiles(moment.files, kLog);
        ErrorList errors;
        Report report(&ui_, &errors);
        EXPECT_TRUE(Uninstallation(parts).run(&log, kArchive, report)) << testing::PrintToString(errors);
    }

    DiskShell shell_{files_};
    EngineParts diskParts_ = partsOn(files_, machine_.registry, machine_.firewall, shell_);
    std::vector<std::unique_ptr<Moment>> moments_;
    const Moment* last_ = nullptr;
};

TEST_F(InstallationKilledTest, LosesNothingOfNewFilesAndDirectories) {
    expectNothingIsLeftAtAnyMoment(
        "<FileSet Name='S'><FN Dest='/app/deep/bin'>one</FN><FN Dest='/app/deep/lib'>two</FN>"
        "<FN Dest='/shared' ExpandVarsInFile='1'>text</FN></FileSet>");
}

TEST_F(InstallationKilledTest, LosesNothingOfFilesThatAreBackedUp) {
    files_.addFile("/shared/one", "the user's one");
    files_.addFile("/shared/text", "the user's text");
    expectNothingIsLeftAtAnyMoment(
        "<FileSet Name='S'><FN Dest='/shared' BackupExisting='1'>one</FN>"
        "<FN Dest='/shared' BackupExisting='1' ExpandVarsInFile='1'>text</FN></FileSet>");
}

// Its content is lost when it is replaced, and not before.
TEST_F(InstallationKilledTest, LeavesAFileWithoutABackupUntilItIsReplaced) {
    files_.addFile("/shared/one", "the user's one");
    describe(std::string(kUninstall) + "<FileSet Name='S'><FN Dest='/shared'>one</FN></FileSet>");
    watch();
    EXPECT_TRUE(install());
    unwatch();
    int kept = 0;
    for (const auto& moment : moments_) {
        const std::string present = moment->files.content("/shared/one");
        undo(*moment);
        const bool isUsers = present == "the user's one";
        EXPECT_EQ(moment->files.content("/shared/one"), isUsers ? present : "");
        kept += isUsers && moment->files.content(kLog).find("FILE") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(kept, 0);
}

TEST_F(InstallationKilledTest, LosesNothingOfTheRegistry) {
    machine_.registry.addText(kRoot, "Software\\Known", "other", "somebody's");
    expectNothingIsLeftAtAnyMoment(
        "<AdditionalInstall><Registry>"
        "<AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Known' Value='v'>x</AddValue>"
        "<AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Known/a/b' Value=''>x</AddValue>"
        "<AddKey Place='HKEY_LOCAL_MACHINE' Path='Software/Known/c/d'/></Registry></AdditionalInstall>");
}

// The undo of a value deletes it, whatever was there before: not while it still is there.
TEST_F(InstallationKilledTest, LeavesAValueOfTheRegistryUntilItIsReplaced) {
    machine_.registry.addText(kRoot, "Software\\Known", "v", "somebody's");
    describe(std::string(kUninstall) +
             "<AdditionalInstall><Registry><AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Known' "
             "Value='v'>x</AddValue></Registry></AdditionalInstall>");
    watch();
    EXPECT_TRUE(install());
    unwatch();
    int kept = 0;
    for (const auto& moment : moments_) {
        const bool isOthers = moment->registry.value(kRoot, "Software\\Known", "v")->data == "somebody's";
        undo(*moment);
        EXPECT_EQ(moment->registry.value(kRoot, "Software\\Known", "v") != nullptr, isOthers);
        kept += isOthers && moment->files.content(kLog).find("REGVAL") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(kept, 0);
}

TEST_F(InstallationKilledTest, LosesNothingOfTheEnvironment) {
    machine_.registry.addText(kRoot, platform::kSystemEnvironmentKey, "MODE", "before");
    machine_.registry.addText(kRoot, platform::kSystemEnvironmentKey, "PATH", "/bin;/same;/usr/bin");
    machine_.registry.addText(kRoot, platform::kSystemEnvironmentKey, "LIST", "/same;/x");
    expectNothingIsLeftAtAnyMoment(
        "<Environment><Replace VarName='MODE'>after</Replace><Replace VarName='NEW'>x</Replace>"
        "<Append VarName='PATH'>/app/bin</Append><Insert VarName='PATH'>/app/first</Insert>"
        "<Insert VarName='LIST'>/same</Insert></Environment>");
}

TEST_F(InstallationKilledTest, LosesNothingOfIniFiles) {
    files_.addFile("/shared/a.ini", textOf({"; head", "[s]", "known = before", "other=1"}));
    expectNothingIsLeftAtAnyMoment(
        "<IniFiles><Add FileName='/shared/a.ini' Section='s' Key='new'>x</Add>"
        "<Add FileName='/shared/a.ini' Section='s' Key='last'>x</Add></IniFiles>");
}

TEST_F(InstallationKilledTest, LeavesTheLineOfAnIniFileUntilItIsReplaced) {
    files_.addFile("/shared/a.ini", textOf({"[s]", "known= before", "empty="}));
    describe(std::string(kUninstall) +
             "<IniFiles><Add FileName='/shared/a.ini' Section='s' Key='empty'>x</Add></IniFiles>"
             "<IniFiles><Add FileName='/shared/a.ini' Section='s' Key='known'>after</Add></IniFiles>");
    const std::string before = files_.content("/shared/a.ini");
    watch();
    EXPECT_TRUE(install());
    unwatch();
    int kept = 0;
    for (const auto& moment : moments_) {
        const bool isAsBefore = moment->files.content("/shared/a.ini") == before;
        undo(*moment);
        if (isAsBefore) {
            EXPECT_EQ(moment->files.content("/shared/a.ini"), before);
            kept += moment->files.content(kLog).find("INI") != std::string::npos ? 1 : 0;
        }
    }
    EXPECT_GT(kept, 0);
}

TEST_F(InstallationKilledTest, LosesNothingOfTextFiles) {
    files_.addFile("/shared/list", textOf({"anchor", "added", "end"}));
    files_.addFile("/shared/plain", textOf({"anchor", "end"}));
    expectNothingIsLeftAtAnyMoment(
        "<FileSet Name='S'><FN Dest='/app'>script</FN></FileSet>"
        "<ModifyFiles><File Command='AddAfter' Path='/shared/list'>/app/script</File>"
        "<File Command='AddAfter' Path='/shared/plain'>/app/script</File></ModifyFiles>");
}

TEST_F(InstallationKilledTest, LosesNothingOfShortcuts) {
    expectNothingIsLeftAtAnyMoment(
        "<Shortcuts><Add Type='File' Dest='/shared/menu' Target='/app/one'>one.lnk</Add>"
        "<Add Type='File' Dest='/shared' Target='/app/one'>two.lnk</Add></Shortcuts>");
}

TEST_F(InstallationKilledTest, LeavesAShortcutUntilItIsReplaced) {
    files_.addFile("/shared/one.lnk", "somebody's link");
    describe(std::string(kUninstall) +
             "<Shortcuts><Add Type='File' Dest='/shared' Target='/app/one'>one.lnk</Add></Shortcuts>");
    watch();
    EXPECT_TRUE(install());
    unwatch();
    int kept = 0;
    for (const auto& moment : moments_) {
        const bool isOthers = moment->files.content("/shared/one.lnk") == "somebody's link";
        undo(*moment);
        EXPECT_EQ(moment->files.hasFile("/shared/one.lnk"), isOthers);
        kept += isOthers && moment->files.content(kLog).find("SHORTCUT") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(kept, 0);
}

TEST_F(InstallationKilledTest, LosesNothingOfTheFirewall) {
    machine_.firewall.ports[{22, FirewallProtocol::kTcp}] = "somebody's";
    expectNothingIsLeftAtAnyMoment(
        "<Firewall><Port Port='80'>Web</Port><Application Target='/app/one'>One</Application></Firewall>");
}

}  // namespace
