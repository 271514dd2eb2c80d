#include "engine/undo_log.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

constexpr char kLog[] = "/app/x.xml\r\n/app/b.bin\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n";

class UndoLogTest : public testing::Test {
protected:
    std::string copyOf(const std::string& log, const UndoLogPlaces& places) {
        files_.addFile("/log", log);
        return writeUndoLog(files_, "/log", places, "/copy") == 0 ? files_.content("/copy") : "(failed)";
    }

    MemoryFileSystem files_;
};

TEST_F(UndoLogTest, HasThePlacesOfTheFilesNow) {
    EXPECT_EQ(copyOf(kLog, {"/d.xml", "/a"}), "/d.xml\r\n/a\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n");
    EXPECT_TRUE(files_.isPrivate("/copy"));
    EXPECT_TRUE(files_.didOperation("flush /copy.new"));
}

TEST_F(UndoLogTest, KeepsThePlacesThatItIsNotGiven) {
    EXPECT_EQ(copyOf(kLog, {}), kLog);
}

TEST_F(UndoLogTest, LeavesOutALineThatWasWrittenInPart) {
    const std::string log = kLog;
    const std::size_t lastLine = log.rfind("FILE");
    for (std::size_t size = lastLine; size < log.size(); ++size) {
        EXPECT_EQ(copyOf(log.substr(0, size), {}), log.substr(0, lastLine)) << size;
    }
}

TEST_F(UndoLogTest, RefusesALogWithoutItsFirstLines) {
    for (const char* log : {"", "/app/x.xml", "/app/x.xml\r\n", "/app/x.xml\r\n/app/b.bin"}) {
        files_.addFile("/log", log);
        EXPECT_EQ(writeUndoLog(files_, "/log", {}, "/copy"), -1) << log;
    }
    EXPECT_FALSE(files_.hasFile("/copy"));
    EXPECT_EQ(writeUndoLog(files_, "/none", {}, "/copy"), MemoryFileSystem::kNotFound);
}

TEST_F(UndoLogTest, TakesThePlaceOfAnEarlierCopy) {
    files_.addFile("/copy", "old");
    EXPECT_EQ(copyOf(kLog, {}), kLog);
}

TEST_F(UndoLogTest, ReportsAFullDisk) {
    files_.addFile("/log", kLog);
    files_.setFreeSpace(3);
    EXPECT_EQ(writeUndoLog(files_, "/log", {}, "/copy"), MemoryFileSystem::kDiskFull);
}

TEST_F(UndoLogTest, KnowsTheSameRecords) {
    files_.addFile("/one", kLog);
    ASSERT_EQ(writeUndoLog(files_, "/one", {"/d.xml", "/a"}, "/two"), 0);
    EXPECT_TRUE(haveSameRecords(files_, "/one", "/two"));
    files_.addFile("/two", std::string(kLog) + "FILE\tCREATE\t/more\r\n");
    EXPECT_FALSE(haveSameRecords(files_, "/one", "/two"));
    EXPECT_FALSE(haveSameRecords(files_, "/one", "/none"));
}

}  // namespace
