#include <gtest/gtest.h>

#include <algorithm>

#include "engine/backup_restore.h"
#include "engine/installation.h"
#include "engine/uninstallation.h"
#include "engine_fixture.h"
#include "package/backup_file.h"
#include "removal_fixture.h"
#include "support/p_file_stream.h"

namespace {

using State = std::map<std::string, std::string>;

constexpr const char* kLog = "/product/install.log";
constexpr const char* kArchive = "/tmp/old.bin";

// A product with all kinds of changes on a machine that had things of its own in their places.
class RemovalRoundTripTest : public EngineTest {
protected:
    RemovalRoundTripTest() {
        files_.addFile("/etc/settings.ini", "[main]\r\nother=1\r\n");
        files_.addFile("/etc/text", "line\r\n");
        files_.addFile("/product/replaced", "the user's");
        files_.makeExecutable("/product/replaced");
        machine_.registry.addText(platform::RegistryRoot::kLocalMachine,
                                  "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment", "LIST",
                                  "first;");
        pack({{"install.xml", "install.xml", "the description"},
              {"replaced", "replaced", "the product's"},
              {"new", "new", "new content"},
              {"change", "change", "1\nline\n2\nadded\nmore\n"}});
        describe(
            "<ProductDesc><Fullname>Demo</Fullname><Website>web</Website></ProductDesc>"
            "<Installation><Uninstall><UninstallCmd>/product/installer</UninstallCmd>"
            "<InstallLogFile>/product/install.log</InstallLogFile>"
            "<InstallBackupFile>/product/backup.bin</InstallBackupFile>"
            "<UninstallXmlFile>/product/install.xml</UninstallXmlFile></Uninstall></Installation>"
            "<UninstallWildcards><WC Dest='/product'>install.log</WC><WC Dest='/product'>backup.bin</WC>"
            "<WC Dest='/product/data' DeleteDirs='1'>*.tmp</WC></UninstallWildcards>"
            "<FileSet Name='S'><FN Dest='/product'>install.xml</FN>"
            "<FN Dest='/product' BackupExisting=''>replaced</FN><FN Dest='/product/bin' "
            "Executable='1'>new</FN>"
            "<FN Dest='/product'>change</FN></FileSet>"
            "<Environment><Replace VarName='HOME_OF'>/product</Replace>"
            "<Append VarName='LIST'>second</Append></Environment>"
            "<IniFiles><Add FileName='/etc/settings.ini' Section='main' Key='key'>value</Add></IniFiles>"
            "<ModifyFiles><File Path='/etc/text' Command='AddAfter'>/product/change</File></ModifyFiles>"
            "<Shortcuts><Add Type='File' Dest='/desk' Target='/product/bin/new'>Demo</Add></Shortcuts>"
            "<Firewall><Port Port='1000' Protocol='TCP'>rule</Port>"
            "<Application Target='/product/bin/new'>app</Application></Firewall>"
            "<AdditionalInstall><Registry>"
            "<AddValue Place='HKEY_LOCAL_MACHINE' Path='Software\\Demo\\Deep' Value='name'>10</AddValue>"
            "<AddKey Place='HKEY_LOCAL_MACHINE' Path='Software\\Other'></AddKey></Registry>"
            "</AdditionalInstall>");
    }

    platform::Platform real() {
        return {machine_.files,
                machine_.registry,
                machine_.processes,
                machine_.environment,
                machine_.console,
                machine_.events,
                shell_,
                machine_.firewall};
    }
    EngineParts partsOn(const platform::Platform& machine) {
        return {parts_.model, cabinet_, machine, system_, console_};
    }
    // All but the scratch files and the journal.
    State state() {
        State all = files_.everything();
        std::erase_if(all, [](const auto& entry) {
            return entry.first.starts_with("/tmp") || entry.first.starts_with("/var/state/removal-") ||
                   entry.first == "/var" || entry.first == "/var/state";
        });
        all.merge(machine_.registry.everything());
        for (const auto& [path, name] : machine_.firewall.applications) {
            all["application " + path] = name;
        }
        for (const auto& [port, name] : machine_.firewall.ports) {
            all["port " + std::to_string(port.first)] = name;
        }
        return all;
    }
    bool install() {
        Report report(&ui_, &errors_);
        return Installation(partsOn(real())).run(report);
    }
    bool uninstall(const platform::Platform& machine) {
        files_.addFile("/tmp/copy.log", files_.content(kLog));
        PFileStream log(files_);
        EXPECT_EQ(log.openFile("/tmp/copy.log", PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting),
                  0);
        Report report(&ui_, &errors_);
        return Uninstallation(partsOn(machine)).run(&log, std::nullopt, report);
    }
    // The targets of the records FILE and SHORTCUT that are there.
    std::vector<std::string> loggedFiles() {
        std::vector<std::string> paths;
        std::string rest = files_.content(kLog);
        while (!rest.empty()) {
            const std::string line = rest.substr(0, rest.find("\r\n"));
            rest.erase(0, line.size() + 2);
            const std::string path = line.substr(line.rfind('\t') + 1);
            const bool isArchived = line.starts_with("FILE\t") || line.starts_with("SHORTCUT\t");
            if (isArchived && files_.hasFile(path)) {
                paths.push_back(path);
            }
        }
        return paths;
    }
    void backUp(const std::vector<std::string>& paths) {
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting(kArchive));
        for (const std::string& path : paths) {
            ASSERT_EQ(archive.addFile(path, std::nullopt), std::nullopt) << path;
        }
        ASSERT_EQ(archive.close(), 0);
    }
    void takeBack(const std::string& directory) {
        RemovalJournal later(machine_.files, machine_.environment);
        ASSERT_EQ(later.resume(directory), 0);
        Report report(&ui_, &errors_);
        EXPECT_TRUE(RemovalPlayback(real(), later, report).run());
        RestoreQuestions questions;
        questions.rightsOf = [&later](std::string_view path) { return later.rightsOf(path); };
        EXPECT_EQ(restoreBackupFile(kArchive, files_, report, questions), RestoreResult::kDone);
        EXPECT_EQ(later.discard(), 0);
    }

    LinkWritingShell shell_{machine_.files};
    RemovalJournal journal_{machine_.files, machine_.environment};
};

TEST_F(RemovalRoundTripTest, BringsAWholeProductBackThatCanThenBeUninstalled) {
    const State before = state();
    ASSERT_TRUE(install()) << testing::PrintToString(errors_);
    files_.addFile("/product/data/cache.tmp", "cache");
    files_.addFile("/product/data/deep/other.tmp", "cache");
    const State installed = state();
    ASSERT_NE(installed, before);

    ASSERT_EQ(journal_.open(), 0);
    backUp(loggedFiles());
    ASSERT_EQ(journal_.noteArchived(loggedFiles()), 0);
    JournaledMachine journaled(real(), journal_);
    EXPECT_TRUE(uninstall(journaled.bundle()));
    EXPECT_EQ(state(), before);

    takeBack(journal_.directory());
    EXPECT_EQ(state(), installed);
    EXPECT_TRUE(ui_.callsOf("addMessage").empty());
    EXPECT_TRUE(errors_.empty());

    EXPECT_TRUE(uninstall(real()));
    EXPECT_EQ(state(), before);
}

// The walk ends in the middle when a change fails; what was done so far comes back.
TEST_F(RemovalRoundTripTest, BringsAProductBackWhoseRemovalFailedInTheMiddle) {
    ASSERT_TRUE(install()) << testing::PrintToString(errors_);
    const State installed = state();
    const std::vector<std::string> paths = loggedFiles();
    backUp(paths);
    for (int n = 1; n <= 12; ++n) {
        RemovalJournal journal(machine_.files, machine_.environment);
        ASSERT_EQ(journal.open(), 0);
        ASSERT_EQ(journal.noteArchived(paths), 0);
        JournaledMachine journaled(real(), journal);
        files_.failFrom(MemoryFileSystem::Operation::kRemoveFile, "", n);
        files_.failFrom(MemoryFileSystem::Operation::kWrite, journal.directory() + "/journal", 2 * n);
        uninstall(journaled.bundle());
        files_.clearFaults();
        takeBack(journal.directory());
        EXPECT_EQ(state(), installed) << n;
    }
}

}  // namespace
