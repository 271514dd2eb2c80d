#include "engine/free_space_check.h"

#include "engine/installation_fixture.h"

namespace {

constexpr std::int64_t kPlenty = 1000000;

// A product of two files of 1,000 bytes each on a volume of its own; temporary files and what the system
// remembers are on two more.
class FreeSpaceCheckTest : public InstallationTest {
protected:
    FreeSpaceCheckTest() {
        for (const char* volume : {"/app", "/tmp", "/var"}) {
            files_.setVolume(volume);
        }
    }

    void describeFiles(const std::string& files = "<FN Dest='/app'>one</FN><FN Dest='/app/deep'>two</FN>") {
        pack({{"one", "one", std::string(1000, '1')}, {"two", "two", std::string(1000, '2')}});
        describe(kUninstall + ("<FileSet Name='S'>" + files) +
                 "</FileSet><InstallerControlVariables><InstallError>ERR</InstallError>"
                 "</InstallerControlVariables>");
    }
    // The least free space of the volume with which the check passes.
    std::int64_t needOf(const std::string& volume, const std::vector<ExpectedRemoval>& removals = {}) {
        std::int64_t low = 0;
        for (std::int64_t high = kPlenty; low < high;) {
            const std::int64_t middle = (low + high) / 2;
            files_.reportFreeSpace(volume, middle);
            Report silent(nullptr, nullptr);
            FreeSpaceCheck(parts_, silent).run(removals) ? high = middle : low = middle + 1;
        }
        files_.reportFreeSpace(volume, kPlenty);
        return low;
    }
    // The log of an earlier installation.
    void addLog(const std::string& records) {
        files_.addFile("/app/install.log", "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n" + records);
    }

    static constexpr std::int64_t kPathBytes = std::string_view("/app/one/app/deep/two").size();
    static constexpr std::int64_t kLogBytes = kPathBytes + 2 * 14;
    static constexpr std::int64_t kSumsBytes = kPathBytes + 2 * 34;
};

TEST_F(FreeSpaceCheckTest, CountsNewFilesAndRecords) {
    describeFiles();
    EXPECT_EQ(needOf("/app"), 2000 + kLogBytes);
    EXPECT_EQ(needOf("/tmp"), kLogBytes);
    EXPECT_EQ(needOf("/var"), kSumsBytes);
}

TEST_F(FreeSpaceCheckTest, CountsWhatIsSelectedOnceForEachPath) {
    describeFiles(
        "<FN Dest='/app'>one</FN><FN Dest='/app' Condition='1==2'>two</FN><FN Dest='/app'>one</FN>"
        "<FN Dest=''>two</FN>");
    EXPECT_LT(needOf("/app"), 1100);
    EXPECT_GE(needOf("/app"), 1000);
}

TEST_F(FreeSpaceCheckTest, CountsOfAReplacedFileWhatTheNewOneHasMore) {
    describeFiles();
    const std::int64_t before = needOf("/app");
    files_.addFile("/app/one", std::string(400, 'o'));
    // 600 more, and the old 400 until the new file is complete.
    EXPECT_EQ(needOf("/app"), before);
    files_.addFile("/app/deep/two", std::string(300, 'o'));
    EXPECT_EQ(needOf("/app"), before - 300);
    files_.addFile("/app/one", std::string(1000, 'o'));
    EXPECT_EQ(needOf("/app"), before - 1000);
    files_.addFile("/app/deep/two", std::string(5000, 'o'));
    EXPECT_EQ(needOf("/app"), before - 1000);
}

TEST_F(FreeSpaceCheckTest, CountsTheArchiveOfReplacedFiles) {
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    const std::int64_t temporary = needOf("/tmp");
    files_.addFile("/app/one", std::string(5000, 'u'));
    EXPECT_EQ(needOf("/tmp"), temporary + 5000);
    // What an earlier installation has put there is its own.
    addLog("FILE\tCREATE\t/app/one\r\n");
    EXPECT_EQ(needOf("/tmp"), temporary);
}

TEST_F(FreeSpaceCheckTest, CountsTheRecordsThatAreContinued) {
    describeFiles();
    const std::int64_t temporary = needOf("/tmp");
    files_.addFile("/app/backup.bin", std::string(700, 'b'));
    const std::string record = "REGKEY\t1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\r\n";
    addLog(record);
    EXPECT_EQ(needOf("/tmp"), temporary + 700 + static_cast<std::int64_t>(record.size()));
}

TEST_F(FreeSpaceCheckTest, CountsTheBackupOfARemoval) {
    describeFiles();
    files_.addFile("/app/one", std::string(3000, 'o'));
    files_.addFile("/app/old", std::string(4000, 'o'));
    addLog("FILE\tCREATE\t/app/one\r\nFILE\tCREATE\t/app/old\r\n");
    const std::int64_t state = needOf("/var");
    const std::int64_t temporary = needOf("/tmp");
    const auto log = static_cast<std::int64_t>(installLog().size());
    const std::vector<ExpectedRemoval> removals = {{"/app/install.log", true, true}};
    EXPECT_EQ(needOf("/var", removals), state + 7000 + log + 8 + 8);
    EXPECT_EQ(needOf("/tmp", removals), temporary + log);
    // The old files make room for the new ones.
    EXPECT_EQ(needOf("/app", removals), 0);
    // Without a way back nothing is kept.
    EXPECT_EQ(needOf("/var", {{"/app/install.log", false, false}}), state);
}

TEST_F(FreeSpaceCheckTest, ABackupOnTheSameVolumeIsThereBeforeTheFilesGo) {
    describeFiles();
    machine_.environment.state = "/app/state";
    files_.addFile("/app/one", std::string(3000, 'o'));
    addLog("FILE\tCREATE\t/app/one\r\n");
    const std::int64_t need = needOf("/app", {{"/app/install.log", true, true}});
    EXPECT_EQ(need, 3000 + 8);
    // What is only moved needs nothing.
    EXPECT_EQ(needOf("/app", {{"/app/install.log", false, true}}), 2000 + kLogBytes + kSumsBytes);
}

TEST_F(FreeSpaceCheckTest, CountsEditedFilesThatARemovalKeeps) {
    describeFiles();
    files_.addFile("/home/conf.ini", std::string(900, 'c'));
    const std::vector<ExpectedRemoval> removals = {{"/app/install.log", true, true}};
    addLog("");
    const std::int64_t without = needOf("/var", removals) - static_cast<std::int64_t>(installLog().size());
    addLog("INI\tADD\t/home/conf.ini\ts\tk\tv\r\nINI\tADD\t/home/conf.ini\ts\tl\tv\r\n");
    EXPECT_EQ(needOf("/var", removals) - static_cast<std::int64_t>(installLog().size()), without + 900);
}

TEST_F(FreeSpaceCheckTest, AnInstallationWithoutEnoughSpaceChangesNothing) {
    describeFiles();
    files_.reportFreeSpace("/app", 1999);
    const std::vector<std::string> before = files_.allFiles();
    bool isPrepared = false;
    EXPECT_FALSE(installation_.run(report_, [&] { isPrepared = true; }));
    EXPECT_FALSE(isPrepared);
    EXPECT_EQ(files_.allFiles(), before);
    EXPECT_FALSE(files_.hasDirectory("/app"));
    EXPECT_EQ(valueOf("ERR"), "1");
    const std::vector<std::string> messages = ui_.callsOf("addMessage(");
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0], "addMessage(\"There is too little space for " + writtenPath("/app/deep\\") +
                               " on the volume /app: " + std::to_string(2000 + kLogBytes) +
                               " bytes are needed, 1999 are free.\")");
    EXPECT_EQ(messages[1], "addMessage(\"Nothing was installed.\")");
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(FreeSpaceCheckTest, ARemovalIsCountedBeforeItBegins) {
    describeFiles();
    files_.addFile("/app/one", std::string(3000, 'o'));
    addLog("FILE\tCREATE\t/app/one\r\n");
    files_.reportFreeSpace("/var", 2000);
    bool isPrepared = false;
    const auto prepare = [&] { isPrepared = true; };
    EXPECT_FALSE(installation_.run(report_, prepare, {{"/app/install.log", true, true}}));
    EXPECT_FALSE(isPrepared);
    EXPECT_FALSE(installation_.isPossible(report_, {{"/app/install.log", true, true}}));
    EXPECT_TRUE(installation_.isPossible(report_, {}));
}

TEST_F(FreeSpaceCheckTest, AVolumeThatCannotBeAskedIsNoObstacle) {
    describeFiles();
    files_.reportFreeSpace("/app", -1);
    EXPECT_TRUE(install());
    EXPECT_EQ(ui_.countOf("addMessage(\"It can't be found out whether there is enough free space.\")"), 1);
    EXPECT_TRUE(files_.hasFile("/app/one"));
}

TEST_F(FreeSpaceCheckTest, SaysNothingWhileThereIsEnough) {
    describeFiles();
    EXPECT_TRUE(install());
    EXPECT_EQ(ui_.callsOf("addMessage("), std::vector<std::string>());
}

TEST_F(FreeSpaceCheckTest, HandlesEventsWhileItCountsFiles) {
    describeFiles();
    FreeSpaceCheck(parts_, report_).run({});
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 2);
}

}  // namespace
