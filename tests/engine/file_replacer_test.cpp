#include "engine/file_replacer.h"

#include "engine_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class FileReplacerTest : public EngineTest {
protected:
    FileReplacerTest() { files_.addDirectory("/app"); }
    bool write(const std::string& content, bool exists = false, const char* path = "/app/file.txt") {
        return replacer_.write(&ui_, path, exists, content);
    }

    FileReplacer replacer_{files_, system_, console_};
};

TEST_F(FileReplacerTest, writesANewFile) {
    EXPECT_TRUE(write("content"));
    EXPECT_EQ(files_.content("/app/file.txt"), "content");
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(FileReplacerTest, replacesALongerFileWhole) {
    files_.addFile("/app/file.txt", "much longer content");
    EXPECT_TRUE(write("", true));
    EXPECT_EQ(files_.content("/app/file.txt"), "");
}

TEST_F(FileReplacerTest, logsEachFileFromLevelThreeOn) {
    debugLevel_ = 3;
    EXPECT_TRUE(write("content"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"+ Creating file \"/app/file.txt\" (size = 7, iores = 0)"});
}

TEST_F(FileReplacerTest, noticesAFullDisk) {
    debugLevel_ = 3;
    files_.setFreeSpace(3);
    EXPECT_FALSE(write("content"));
    EXPECT_EQ(log_.lines(),
              (std::vector<std::string>{"+ Creating file \"/app/file.txt\" (size = 7, iores = 0)",
                                        "- ERROR: Writing file failed (iores = 112, written = 3)"}));
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(FileReplacerTest, noticesAFailureThatTheSystemTellsAtTheClosing) {
    debugLevel_ = 3;
    files_.failAt(Operation::kClose, "/app/file.txt", 1, 112);
    EXPECT_FALSE(write("content"));
    EXPECT_TRUE(log_.hasLine("- ERROR: Writing file failed (iores = 112, written = 7)"));
}

TEST_F(FileReplacerTest, doesNotWriteIntoADirectory) {
    files_.addDirectory("/app/file.txt");
    debugLevel_ = 3;
    EXPECT_FALSE(write("content"));
    EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(FileReplacerTest, doesNotWriteWhereNothingMayBeWritten) {
    files_.addFile("/app/file.txt", "old");
    files_.setReadOnly("/app");
    EXPECT_FALSE(write("content", true));
    EXPECT_EQ(files_.content("/app/file.txt"), "old");
}

TEST_F(FileReplacerTest, stopsTheProgramThatHoldsItsFile) {
    files_.addFile("/app/tool.exe", "old");
    system_.running = {"tool.exe"};
    files_.failAt(Operation::kOpen, "/app/tool.exe", 1, 32);
    EXPECT_TRUE(write("new", true, "/app/tool.exe"));
    EXPECT_EQ(files_.content("/app/tool.exe"), "new");
    EXPECT_TRUE(system_.running.empty());
}

TEST_F(FileReplacerTest, leavesALibraryThatIsHeldAlone) {
    files_.addFile("/app/tool.dll", "old");
    files_.failFrom(Operation::kOpen, "/app/tool.dll", 1, 32);
    EXPECT_FALSE(write("new", true, "/app/tool.dll"));
    EXPECT_TRUE(files_.hasFile("/app/tool.dll"));
}

TEST_F(FileReplacerTest, doesNotLookForProgramsBehindANewFile) {
    files_.failFrom(Operation::kOpen, "/app/tool.exe", 1, 32);
    EXPECT_FALSE(write("new", false, "/app/tool.exe"));
    EXPECT_TRUE(system_.calls.empty());
}

}  // namespace
