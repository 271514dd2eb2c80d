#include "engine/file_installer.h"

#include "engine/backup_restore.h"
#include "installation_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class FileInstallerTest : public InstallationTest {
protected:
    void describeFiles(const std::string& files) {
        describe(kUninstall + ("<FileSet Name='S'>" + files + "</FileSet>"));
    }
    std::vector<std::string> lines() {
        std::vector<std::string> found;
        for (const std::string& call : ui_.callsOf("addFileLine(\"")) {
            found.push_back(call.substr(13, call.rfind('"') - 13));
        }
        return found;
    }
};

TEST_F(FileInstallerTest, installsFilesInListOrderAndRecordsThem) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app/sub'>one</FN>");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(files_.content("/app/sub/one"), "1");
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n"
              "DIR\t2\t/app/sub\\\r\nFILE\tCREATE\t/app/sub\\one\r\nFILE\tCREATE\t/app\\two\r\n");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Create /app/sub\\one", "Create /app\\two"}));
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(FileInstallerTest, writesNothingOnASecondRunAndStillRecordsEachFile) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>two</FN><FN Dest='/app'>one</FN>");
    EXPECT_EQ(install(), 0);
    files_.clearOperations();
    ui_.take();
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n"
              "FILE\tCREATE\t/app\\one\r\nFILE\tOVER\t/app\\two\r\n");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Create /app\\one", "Create /app\\two"}));
    for (const std::string& operation : files_.operations()) {
        EXPECT_NE(operation, "truncate /app/one");
    }
    EXPECT_EQ(files_.content("/app/backup.bin").size(), 42U);  // an archive without entries
}

TEST_F(FileInstallerTest, backsUpADifferentFileThatIsToBeRestorable) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old content");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(files_.content("/app/one"), "new");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Back up /app\\one", "Overwrite /app\\one"}));
    EXPECT_NE(installLog().find("FILE\tOVER\t/app\\one\r\n"), std::string::npos);
    // The archive restores it, since the file on the disk is what the installation put there.
    EXPECT_TRUE(restoreBackupFile("/app/backup.bin", files_, ui_));
    EXPECT_EQ(files_.content("/app/one"), "old content");
}

TEST_F(FileInstallerTest, leavesAnExpandedFileAtARestoreSinceItIsNoLongerTheCabinets) {
    variables_.setVariable("NAME", "value");
    pack({{"one", "one", "[NAME]"}});
    describeFiles("<FN Dest='/app' BackupExisting='1' ExpandVarsInFile='1'>one</FN>");
    files_.addFile("/app/one", "old content");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(files_.content("/app/one"), "value");
    EXPECT_TRUE(restoreBackupFile("/app/backup.bin", files_, ui_));
    EXPECT_EQ(files_.content("/app/one"), "value");
}

TEST_F(FileInstallerTest, recordsAMissingRestorableFileAsOver) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    EXPECT_EQ(install(), 0);
    EXPECT_NE(installLog().find("FILE\tOVER\t/app\\one\r\n"), std::string::npos);
    EXPECT_EQ(lines(), std::vector<std::string>{"Create /app\\one"});
}

TEST_F(FileInstallerTest, overwritesOtherFilesWithoutABackupAndRecordsThemAsCreated) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(lines(), std::vector<std::string>{"Overwrite /app\\one"});
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\n"), std::string::npos);
}

TEST_F(FileInstallerTest, overwritesAllTheSameWhenTheBackupFails) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.failAt(Operation::kOpen, "/app/one", 3);  // the comparison, the test for an archive, the copy
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(files_.content("/app/one"), "new");
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to back up /app\\one: Error opening file"});
    EXPECT_EQ(lines()[0], "FAILED to back up /app\\one: Error opening file");
}

TEST_F(FileInstallerTest, expandsVariablesAndCountsTheFileAsDifferentAtEachRun) {
    variables_.setVariable("NAME", "value");
    pack({{"one", "one", "a=[NAME]"}});
    describeFiles("<FN Dest='/app' ExpandVarsInFile='0'>one</FN>");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(files_.content("/app/one"), "a=value");
    ui_.take();
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(lines(), std::vector<std::string>{"Overwrite /app\\one"});
}

TEST_F(FileInstallerTest, leavesAnExpandedFileWithoutReferencesAlone) {
    pack({{"one", "one", "plain"}});
    describeFiles("<FN Dest='/app' ExpandVarsInFile='1'>one</FN>");
    EXPECT_EQ(install(), 0);
    ui_.take();
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(lines(), std::vector<std::string>{"Create /app\\one"});
}

TEST_F(FileInstallerTest, saysThatAFileIsMissingFromTheCabinet) {
    pack({{"one", "one", "1"}});
    describeFiles(
        "<FN Dest='/app'>one</FN><FN Dest='/app' OkIfMissing='1'>lost</FN><FN Dest='/app'>gone</FN>");
    EXPECT_EQ(install(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: File missing from the compressed cabinet! (alias: gone)"));
    EXPECT_FALSE(log_.hasLine("ERROR: File missing from the compressed cabinet! (alias: lost)"));
    EXPECT_EQ(lines(), std::vector<std::string>{"Create /app\\one"});
    EXPECT_EQ(installLog().find("gone"), std::string::npos);
    EXPECT_EQ(installLog().find("lost"), std::string::npos);
}

TEST_F(FileInstallerTest, goesOnBehindAFileThatCannotBeWritten) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app'>one</FN>");
    files_.addDirectory("/app/one");
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_EQ(lines(), (std::vector<std::string>{
                           "FAILED to Create /app\\one", "Create /app\\two",
                           "Encountered errors during installation:", "FAILED to Create /app\\one"}));
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create /app\\one"});
    // The record stands ahead of the attempt, so that a part of a file is undone as well.
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\n"), std::string::npos);
}

TEST_F(FileInstallerTest, tellsThatAReadOnlyFileCannotBeOverwritten) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.setReadOnly("/app/one");
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(files_.content("/app/one"), "old");
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Overwrite /app\\one"});
}

TEST_F(FileInstallerTest, failsWhereADirectoryCannotBeCreated) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app/sub/deep'>one</FN>");
    files_.failFrom(Operation::kCreateDirectory, "/app/sub/deep", 1);
    EXPECT_EQ(install(), -1);
    EXPECT_NE(installLog().find("DIR\t2\t/app/sub/deep\\\r\n"), std::string::npos);
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create /app/sub/deep\\one"});
}

TEST_F(FileInstallerTest, callsTheHookForFilesThatStand) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app' Executable='1'>two</FN><FN Dest='/app'>one</FN>");
    files_.addDirectory("/app/one");
    std::vector<std::string> hooked;
    hook_ = [&](const std::string& path, const FileEntry& file) {
        hooked.push_back(path + (file.executable ? " program" : ""));
    };
    install();
    install();  // an identical file counts as well
    EXPECT_EQ(hooked, (std::vector<std::string>{"/app\\two program", "/app\\two program"}));
}

TEST_F(FileInstallerTest, reportsStatusProgressAndFlushes) {
    std::vector<Packed> packed;
    std::string files;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "f" + std::to_string(i);
        packed.push_back({name, name, name});
        files = "<FN Dest='/app' Condition='" + std::string(i == 1 ? "1==2" : "1==1") + "'>" + name +
                "</FN>" + files;
    }
    pack(packed);
    describeFiles(files);
    EXPECT_EQ(install(), 0);
    const std::vector<std::string> progress = ui_.callsOf("setCurrentProgress");
    ASSERT_EQ(progress.size(), 40U);  // 39 files and the end
    EXPECT_EQ(progress[0], "setCurrentProgress(0)");
    EXPECT_EQ(progress[1], "setCurrentProgress(5)");  // 2 of 40; the skipped one counts
    EXPECT_EQ(progress[2], "setCurrentProgress(8)");  // 7.5 rounded up
    EXPECT_EQ(progress[38], "setCurrentProgress(98)");
    EXPECT_EQ(ui_.callsOf("setStatusText")[0], "setStatusText(\"/app\\f0\")");
    std::vector<std::string> flushed;
    for (const std::string& call : ui_.callsOf("addFileLine(\"")) {
        if (call.find("true") != std::string::npos || call.find(", 1)") != std::string::npos) {
            flushed.push_back(call.substr(13, call.rfind('"') - 13));
        }
    }
    EXPECT_EQ(flushed, (std::vector<std::string>{"Create /app\\f0", "Create /app\\f32"}));
}

TEST_F(FileInstallerTest, stopsARunningProgramButNotALibrary) {
    pack({{"tool.exe", "tool.exe", "new"}, {"lib.dll", "lib.dll", "new"}});
    describeFiles("<FN Dest='/app'>lib.dll</FN><FN Dest='/app'>tool.exe</FN>");
    files_.addFile("/app/tool.exe", "old");
    files_.addFile("/app/lib.dll", "old");
    files_.failAt(Operation::kOpen, "/app/tool.exe", 2, 32);  // behind the comparison
    files_.failFrom(Operation::kOpen, "/app/lib.dll", 2, 32);
    system_.running = {"tool.exe", "lib.dll"};
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(files_.content("/app/tool.exe"), "new");
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Overwrite /app\\lib.dll"});
}

TEST_F(FileInstallerTest, noticesADiskThatIsFullInTheMiddleOfAFile) {
    pack({{"big", "big", std::string(5000, 'x')}, {"small", "small", "s"}});
    describeFiles("<FN Dest='/app'>small</FN><FN Dest='/app'>big</FN>");
    files_.addDirectory("/app");
    ui_.onCall = [this](const std::string& call) {
        if (call == "setStatusText(\"/app\\big\")") {
            files_.setFreeSpace(1000);
        } else if (call == "setStatusText(\"/app\\small\")") {
            files_.setFreeSpace(-1);
        }
    };
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create /app\\big"});
    EXPECT_EQ(files_.content("/app/small"), "s");
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\small\r\n"), std::string::npos);
}

TEST_F(FileInstallerTest, doesWithoutAFrontEndAndAnErrorList) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app'>one</FN><FN Dest='/app'>gone</FN>");
    Report report(nullptr, nullptr);
    EXPECT_EQ(installer_.installProduct(report, phases_, hook_), -1);
    EXPECT_EQ(files_.content("/app/one"), "1");
}

}  // namespace
