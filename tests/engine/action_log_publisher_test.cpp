#include "engine/action_log_publisher.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class ActionLogPublisherTest : public testing::Test {
protected:
    ActionLogPublisherTest() {
        files_.addFile("/tmp/log", "log");
        files_.addFile("/tmp/backup", "archive");
        files_.addDirectory("/app");
    }
    bool publish(const char* log = "/app/install.log", const char* backup = "/app/backup.bin") {
        return ActionLogPublisher(files_, console_).publish("/tmp/log", log, "/tmp/backup", backup);
    }

    MemoryFileSystem files_;
    FakeConsole console_;
};

TEST_F(ActionLogPublisherTest, publishesBothAndLeavesNoTemporaryFile) {
    EXPECT_TRUE(publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_EQ(files_.content("/app/install.log"), "log");
    EXPECT_EQ(files_.content("/app/backup.bin"), "archive");
}

TEST_F(ActionLogPublisherTest, replacesWhatStandsThere) {
    files_.addFile("/app/install.log", "a longer old log");
    files_.addFile("/app/backup.bin", "a longer old archive");
    EXPECT_TRUE(publish());
    EXPECT_EQ(files_.content("/app/install.log"), "log");
    EXPECT_EQ(files_.content("/app/backup.bin"), "archive");
}

TEST_F(ActionLogPublisherTest, copiesWhatCannotBeMovedForThisUserAlone) {
    files_.addFile("/app/backup.bin", "an old archive that all can read");
    files_.failAt(Operation::kReplaceFile, "/tmp/log", 1);
    files_.failAt(Operation::kReplaceFile, "/tmp/backup", 1);
    EXPECT_TRUE(publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_EQ(files_.content("/app/install.log"), "log");
    EXPECT_EQ(files_.content("/app/backup.bin"), "archive");
    EXPECT_TRUE(files_.isPrivate("/app/install.log"));
    EXPECT_TRUE(files_.isPrivate("/app/backup.bin"));
}

TEST_F(ActionLogPublisherTest, publishesNothingUnderEmptyNames) {
    EXPECT_TRUE(publish("", ""));
    EXPECT_TRUE(files_.allFiles().empty());
    EXPECT_TRUE(console_.lines().empty());
}

TEST_F(ActionLogPublisherTest, saysThatTheLogCannotBePublishedAndKeepsIt) {
    EXPECT_FALSE(publish("/missing/install.log"));
    EXPECT_EQ(files_.content("/tmp/log"), "log");
    EXPECT_EQ(files_.content("/app/backup.bin"), "archive");
    EXPECT_EQ(console_.lines(), std::vector<std::string>{"ERROR: The install log could not be written to "
                                                         "/missing/install.log; it stays at /tmp/log"});
}

TEST_F(ActionLogPublisherTest, keepsTheArchiveWhenTheDiskIsFull) {
    files_.failAt(Operation::kReplaceFile, "/tmp/backup", 1);
    files_.setFreeSpace(3);
    EXPECT_FALSE(publish());
    EXPECT_EQ(files_.content("/tmp/backup"), "archive");
    EXPECT_EQ(console_.lines(), std::vector<std::string>{"ERROR: The backup file could not be written to "
                                                         "/app/backup.bin; it stays at /tmp/backup"});
}

}  // namespace
