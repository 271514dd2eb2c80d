#include <gmock/gmock.h>

#include <map>
#include <memory>

#include "engine/changes/text_lines.h"
#include "engine/installation_fixture.h"
#include "engine/product_state.h"
#include "engine/uninstallation.h"
#include "platform/system_environment.h"
#include "support/p_file_stream.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using platform::RegistryRoot;

constexpr char kHead[] =
    "<Installation><Uninstall><InstallLogFile>/app/un/install.log</InstallLogFile>"
    "<InstallBackupFile>/app/un/backup.bin</InstallBackupFile>"
    "<UninstallXmlFile>/app/un/product.xml</UninstallXmlFile></Uninstall></Installation>"
    "<InstallerControlVariables><InstallError>ERR</InstallError></InstallerControlVariables>"
    "<UninstallWildcards><F Dest='/app/un'>install.log</F><F "
    "Dest='/app/un'>backup.bin</F></UninstallWildcards>";

// Three versions of a product. Each has what an earlier one lacks, and changes the same things differently.
const std::map<char, std::string> kVersions = {
    {'A',
     "<FileSet Name='S'><FN Dest='/app/un'>product.xml</FN><FN Dest='/app'>a/one</FN>"
     "<FN Dest='/app/old'>a/dropped</FN><FN Dest='/app'>a/script</FN>"
     "<FN Dest='/shared' BackupExisting='1'>a/keep.txt</FN>"
     "<FN Dest='/shared' BackupExisting='1'>a/same.txt</FN></FileSet>"
     "<Environment><Replace VarName='MODE'>a</Replace><Replace VarName='NEW'>a</Replace>"
     "<Append VarName='PATH'>/app/bin</Append></Environment>"
     "<IniFiles><Add FileName='/shared/conf.ini' Section='s' Key='known'>a</Add>"
     "<Add FileName='/shared/conf.ini' Section='s' Key='new'>a</Add></IniFiles>"
     "<ModifyFiles><File Command='AddAfter' Path='/shared/list.txt'>/app/script</File></ModifyFiles>"
     "<AdditionalInstall><Registry><AddValue Place='HKEY_LOCAL_MACHINE' Path='Software\\Demo\\Deep' "
     "Value='v'>"
     "a</AddValue></Registry></AdditionalInstall>"},
    {'B',
     "<FileSet Name='S'><FN Dest='/app/un'>product.xml</FN><FN Dest='/app'>b/one</FN>"
     "<FN Dest='/app/more/deep'>b/two</FN><FN Dest='/app'>b/script</FN>"
     "<FN Dest='/shared' BackupExisting='1'>b/keep.txt</FN>"
     "<FN Dest='/shared' BackupExisting='1'>b/same.txt</FN></FileSet>"
     "<Environment><Replace VarName='MODE'>b</Replace><Insert VarName='PATH'>/app/b</Insert></Environment>"
     "<IniFiles><Add FileName='/shared/conf.ini' Section='s' Key='new'>b</Add>"
     "<Add FileName='/shared/conf.ini' Section='s' Key='known'>b</Add></IniFiles>"
     "<ModifyFiles><File Command='AddAfter' Path='/shared/list.txt'>/app/script</File></ModifyFiles>"},
    {'C',
     "<FileSet Name='S'><FN Dest='/app/un'>product.xml</FN>"
     "<FN Dest='/shared' BackupExisting='1' ExpandVarsInFile='1'>c/keep.txt</FN></FileSet>"
     "<Environment><Append VarName='PATH'>/app/bin</Append><Replace VarName='NEW'>c</Replace></Environment>"},
};

// A machine on which one product is installed again and again.
class InstallationRepeatsTest : public EngineTest {
protected:
    InstallationRepeatsTest() {
        pack({{"product.xml", "product.xml", "<x/>"},
              {"aone", "one", "one of a"},
              {"adropped", "dropped", "dropped"},
              {"ascript", "script", "1\nanchor\n1\nline of a\n"},
              {"akeep.txt", "keep.txt", "keep of a"},
              {"asame.txt", "same.txt", "the user's same"},
              {"bone", "one", "one of b"},
              {"btwo", "two", "two"},
              {"bscript", "script", "1\nanchor\n2\nline of b\nand more\n"},
              {"bkeep.txt", "keep.txt", "keep of b"},
              {"bsame.txt", "same.txt", "same of b"},
              {"ckeep.txt", "keep.txt", "keep of c for [NAME]"}});
        variables_.set("NAME", "somebody");
        files_.addDirectory("/shared");
        files_.addFile("/shared/keep.txt", "the user's keep");
        files_.addFile("/shared/same.txt", "the user's same");
        files_.addFile("/shared/conf.ini", textOf({"[s]", "known=before"}));
        files_.addFile("/shared/list.txt", textOf({"anchor", "end"}));
        machine_.registry.addText(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "PATH",
                                  "/bin");
        machine_.registry.addText(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "MODE",
                                  "before");
    }

    bool install(char version) {
        describeAnew(kHead + kVersions.at(version));
        return installDescribed();
    }
    // Another session has another document; describe() only adds to this one.
    void describeAnew(const std::string& content) {
        std::destroy_at(&document_);
        std::construct_at(&document_);
        describe(content);
    }
    bool installDescribed() {
        errors_.clear();
        Report report(&ui_, &errors_);
        return Installation(parts_).run(report);
    }
    bool uninstall() {
        PFileStream log(files_);
        files_.addFile("/tmp/copy.log", files_.content("/app/un/install.log"));
        EXPECT_EQ(log.openFile("/tmp/copy.log", PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting),
                  0);
        errors_.clear();
        Report report(&ui_, &errors_);
        const bool done = Uninstallation(parts_).run(&log, std::nullopt, report);
        log.close();
        files_.removeFile("/tmp/copy.log");
        ProductState(files_, machine_.environment).remove("/app/un/install.log");
        return done;
    }

    // Everything that the product could change.
    std::map<std::string, std::string> state() {
        std::map<std::string, std::string> all;
        for (const std::string& path : files_.allFiles()) {
            if (!path.starts_with("/src") && path != "/package") {
                all[path] = files_.content(path);
            }
        }
        for (const char* const directory :
             {"/app", "/app/un", "/app/old", "/app/more", "/shared", "/var/state"}) {
            all[directory] = files_.hasDirectory(directory) ? "directory" : "none";
        }
        for (const char* const name : {"PATH", "MODE", "NEW"}) {
            all[name] = environment(name);
        }
        // The undo of an appended text leaves its separator.
        all["PATH"].erase(all["PATH"].find_last_not_of(';') + 1);
        all["key"] = machine_.registry.hasKey(RegistryRoot::kLocalMachine, "Software\\Demo") ? "key" : "none";
        return all;
    }
    std::string environment(const std::string& name) {
        const platform::RegistryValue* value =
            machine_.registry.value(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, name);
        return value == nullptr ? "(none)" : value->data;
    }
    std::string log() { return files_.content("/app/un/install.log"); }
    int countInLog(const std::string& text) {
        int count = 0;
        const std::string all = log();
        for (std::size_t at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) {
            ++count;
        }
        return count;
    }
};

// All ways to install three times at most.
class RepeatedVersionsTest : public InstallationRepeatsTest,
                             public testing::WithParamInterface<std::string> {};

TEST_P(RepeatedVersionsTest, GiveBackTheStateBeforeTheFirst) {
    const auto before = state();
    for (const char version : GetParam()) {
        ASSERT_TRUE(install(version))
            << testing::PrintToString(errors_) << testing::PrintToString(log_.lines())
            << testing::PrintToString(ui_.callsOf("addMessage"));
        ASSERT_TRUE(errors_.empty());
    }
    EXPECT_TRUE(uninstall()) << testing::PrintToString(errors_);
    EXPECT_EQ(state(), before);
}

std::vector<std::string> allSequences() {
    std::vector<std::string> all = {"A", "B", "C"};
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (const char version : {'A', 'B', 'C'}) {
            if (all[i].size() < 3) {
                all.push_back(all[i] + version);
            }
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(AllSequences, RepeatedVersionsTest, testing::ValuesIn(allSequences()),
                         [](const auto& sequence) { return sequence.param; });

TEST_F(InstallationRepeatsTest, LeaveTheFilesOfTheLatestVersion) {
    ASSERT_TRUE(install('A'));
    ASSERT_TRUE(install('B'));
    EXPECT_EQ(files_.content("/app/one"), "one of b");
    EXPECT_EQ(files_.content("/shared/keep.txt"), "keep of b");
    EXPECT_EQ(files_.content("/shared/list.txt"), textOf({"anchor", "line of b", "and more", "end"}));
    EXPECT_EQ(environment("MODE"), "b");
}

TEST_F(InstallationRepeatsTest, RecordEachFileOnceAndKeepWhatIsCreatedCreated) {
    ASSERT_TRUE(install('A'));
    ASSERT_TRUE(install('A'));
    EXPECT_EQ(countInLog("/app\\one"), 1);
    EXPECT_EQ(countInLog("FILE\tCREATE\t/app\\one"), 1);
    EXPECT_EQ(countInLog("FILE\tOVER\t/shared\\keep.txt"), 1);
    EXPECT_EQ(countInLog("REGVAL\t"), 1);
    EXPECT_EQ(countInLog("MODIFYFILE\t"), 1);
    const std::string twice = log();
    ASSERT_TRUE(install('A'));
    EXPECT_EQ(countInLog("INI\t"), 4);  // the first values, and once those of the product
}

TEST_F(InstallationRepeatsTest, KeepTheFormerContentAndNotTheirOwn) {
    ASSERT_TRUE(install('A'));
    ASSERT_TRUE(install('B'));
    ASSERT_TRUE(install('A'));
    const std::string archive = files_.content("/app/un/backup.bin");
    EXPECT_NE(archive.find("the user's keep"), std::string::npos);
    EXPECT_EQ(archive.find("keep of"), std::string::npos);
}

TEST_F(InstallationRepeatsTest, LeaveAFileThatTheUserHasChangedSince) {
    ASSERT_TRUE(install('A'));
    ASSERT_TRUE(install('B'));
    files_.addFile("/shared/keep.txt", "changed afterwards");
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(files_.content("/shared/keep.txt"), "changed afterwards");
}

TEST_F(InstallationRepeatsTest, KeepTheUsersChangesOfTheirOwnFilesWhereThatIsAskedFor) {
    describeAnew(std::string(kHead) + "<FileSet Name='S'><FN Dest='/app'>a/one</FN></FileSet>");
    files_.addDirectory("/app/un");
    ASSERT_TRUE(installDescribed());
    files_.addFile("/app/one", "edited by the user");
    describeAnew(std::string(kHead) +
                 "<FileSet Name='S'><FN Dest='/app' BackupExisting='1'>b/one</FN></FileSet>");
    ASSERT_TRUE(installDescribed());
    EXPECT_EQ(files_.content("/app/one"), "one of b");
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(files_.content("/app/one"), "edited by the user");
}

TEST_F(InstallationRepeatsTest, DeleteTheirOwnFileThatALaterVersionWouldBackUp) {
    describeAnew(std::string(kHead) + "<FileSet Name='S'><FN Dest='/app'>a/one</FN></FileSet>");
    files_.addDirectory("/app/un");
    ASSERT_TRUE(installDescribed());
    describeAnew(std::string(kHead) +
                 "<FileSet Name='S'><FN Dest='/app' BackupExisting='1'>b/one</FN></FileSet>");
    ASSERT_TRUE(installDescribed());
    EXPECT_EQ(countInLog("FILE\tCREATE\t/app\\one"), 1);
    EXPECT_TRUE(uninstall());
    EXPECT_FALSE(files_.hasFile("/app/one"));
}

TEST_F(InstallationRepeatsTest, TakeOverWhatCanBeReadOfADamagedLogAndSaySo) {
    ASSERT_TRUE(install('A'));
    std::string damaged = log();
    damaged.replace(damaged.find("NUMVARS"), 7, "NUMXXXX");
    files_.addFile("/app/un/install.log", damaged + "FILE\tCREATE\t/shared/keep");
    ui_.take();
    ASSERT_TRUE(install('B'));
    EXPECT_EQ(ui_.countOf(
                  "addMessage(\"The records of the earlier installation in /app/un/install.log are damaged"),
              1);
    EXPECT_EQ(countInLog("/app/old\\dropped"), 1);
    EXPECT_EQ(countInLog("/shared/keep\r"), 0);
    EXPECT_TRUE(uninstall());
    EXPECT_FALSE(files_.hasFile("/app/old/dropped"));
    EXPECT_EQ(files_.content("/shared/keep.txt"), "the user's keep");
}

TEST_F(InstallationRepeatsTest, TakeOverWhatCanBeReadOfACutArchiveAndSaySo) {
    ASSERT_TRUE(install('B'));  // keeps two files
    const std::string archive = files_.content("/app/un/backup.bin");
    files_.addFile("/app/un/backup.bin", archive.substr(0, archive.size() - 5));
    ui_.take();
    ASSERT_TRUE(install('A'));
    EXPECT_EQ(
        ui_.countOf("addMessage(\"The backup archive /app/un/backup.bin of the earlier installation can't be "
                    "read to its end"),
        1);
    uninstall();
    // The file whose content is lost stays as it is; nothing is deleted.
    EXPECT_TRUE(files_.hasFile("/shared/keep.txt"));
    EXPECT_TRUE(files_.hasFile("/shared/same.txt"));
}

TEST_F(InstallationRepeatsTest, ChangeNothingWhereTheEarlierRecordsCannotBeOpened) {
    ASSERT_TRUE(install('A'));
    const auto before = state();
    files_.failFrom(Operation::kOpen, "/app/un/install.log", 1, 13);
    EXPECT_FALSE(install('B'));
    files_.clearFaults();
    EXPECT_EQ(state(), before);
    EXPECT_EQ(valueOf("ERR"), "1");
}

TEST_F(InstallationRepeatsTest, LoseNothingWhenTheEarlierArchiveCannotBeCopied) {
    ASSERT_TRUE(install('A'));
    const auto before = state();
    describeAnew(kHead + kVersions.at('B'));
    files_.setFreeSpace(50);
    EXPECT_FALSE(installDescribed());
    files_.setFreeSpace(-1);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(valueOf("ERR"), "1");
    EXPECT_TRUE(uninstall());
}

TEST_F(InstallationRepeatsTest, KeepTheEarlierRecordsUntilTheNewOnesAreThere) {
    ASSERT_TRUE(install('A'));
    const std::string earlierLog = log();
    const std::string earlierArchive = files_.content("/app/un/backup.bin");
    for (const char* const temporary : {"/tmp/orinstall3", "/tmp/orinstall4"}) {
        files_.failFrom(Operation::kReplaceFile, temporary, 1);
    }
    for (const char* const beside : {"/app/un/install.log.1.tmp", "/app/un/backup.bin.1.tmp"}) {
        files_.failFrom(Operation::kWrite, beside, 1, 112);
    }
    EXPECT_FALSE(install('A'));
    files_.clearFaults();
    EXPECT_EQ(log(), earlierLog);
    EXPECT_EQ(files_.content("/app/un/backup.bin"), earlierArchive);
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall3"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall4"));
    uninstall();
    EXPECT_EQ(files_.content("/shared/keep.txt"), "the user's keep");
}

TEST_F(InstallationRepeatsTest, MoveTheArchiveWithTheDescription) {
    const auto before = state();
    ASSERT_TRUE(install('A'));
    std::string moved = kHead;
    moved.replace(moved.find("/app/un/backup.bin"), 18, "/app/un/stored.bin");
    moved.replace(moved.find(">backup.bin<"), 12, ">stored.bin<");
    describeAnew(moved + kVersions.at('B'));
    ASSERT_TRUE(installDescribed());
    EXPECT_FALSE(files_.hasFile("/app/un/backup.bin"));
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before);
}

}  // namespace
