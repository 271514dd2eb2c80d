#include "support/p_file_console.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/temporary_directory.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class PFileConsoleTest : public testing::Test {
protected:
    PFileConsoleTest() { console_.setOptions(0); }

    MemoryFileSystem files_;
    PFileConsole console_{files_};
};

TEST_F(PFileConsoleTest, ChangesNothingOnTheDiskWhileUnopened) {
    console_.setOptions(3);
    console_.print("lost");
    EXPECT_TRUE(files_.operations().empty());
    EXPECT_TRUE(files_.allFiles().empty());
    EXPECT_EQ(1, console_.getLineNumber());
    EXPECT_FALSE(console_.hasFailed());
    EXPECT_EQ(0, console_.write("x", 1));
}

TEST_F(PFileConsoleTest, RecreatesWithModeZeroAndAppendsWithModeOne) {
    files_.addFile("/log", "old");
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.print("first");
    EXPECT_EQ(-1, console_.close());
    EXPECT_EQ("first\r\n", files_.content("/log"));
    ASSERT_EQ(0, console_.open("/log", 1));
    console_.print("second");
    console_.close();
    EXPECT_EQ("first\r\nsecond\r\n", files_.content("/log"));
}

TEST_F(PFileConsoleTest, WritesEachLineAtOnce) {
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.print("line");
    EXPECT_EQ("line\r\n", files_.content("/log"));
    EXPECT_EQ(0, files_.count(Operation::kFlush));
}

TEST_F(PFileConsoleTest, GivesTheStatusOfAFailedOpeningAndStaysSilent) {
    files_.failAt(Operation::kOpen, "/log", 1, 13);
    EXPECT_EQ(13, console_.open("/log", 0));
    EXPECT_FALSE(console_.isOpen());
    console_.print("x");
    EXPECT_FALSE(files_.hasFile("/log"));
    EXPECT_FALSE(console_.hasFailed());
}

TEST_F(PFileConsoleTest, OpeningAnotherFileClosesTheFirstAlsoWhenItFails) {
    ASSERT_EQ(0, console_.open("/a", 0));
    ASSERT_EQ(0, console_.open("/b", 0));
    EXPECT_EQ(1, files_.openFileCount());
    EXPECT_NE(0, console_.open("/none/c", 0));
    EXPECT_EQ(0, files_.openFileCount());
    console_.print("x");
    EXPECT_EQ("", files_.content("/b"));
}

TEST_F(PFileConsoleTest, FlushesEachWriteOnlyOnRequest) {
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.setFlushEachLine(true);
    console_.printRaw("a");
    console_.printRaw("b");
    EXPECT_EQ(2, files_.count(Operation::kFlush));
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.printRaw("c");
    EXPECT_EQ(2, files_.count(Operation::kFlush));
}

TEST_F(PFileConsoleTest, RemembersThatALineDidNotReachAFullDisk) {
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.print("12345");
    EXPECT_FALSE(console_.hasFailed());
    files_.setFreeSpace(3);
    EXPECT_EQ(MemoryFileSystem::kDiskFull, console_.write("12345", 5));
    EXPECT_TRUE(console_.hasFailed());
    files_.clearFaults();
    console_.print("later");
    EXPECT_TRUE(console_.hasFailed());
    console_.close();
    EXPECT_TRUE(console_.hasFailed());
    ASSERT_EQ(0, console_.open("/log", 0));
    EXPECT_FALSE(console_.hasFailed());
}

TEST_F(PFileConsoleTest, RemembersAFailedFlushAndAFailedClosing) {
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.setFlushEachLine(true);
    files_.failAt(Operation::kFlush, "/log", 1);
    console_.print("x");
    EXPECT_TRUE(console_.hasFailed());

    ASSERT_EQ(0, console_.open("/log", 0));
    EXPECT_FALSE(console_.hasFailed());
    files_.failAt(Operation::kClose, "/log", 1);
    console_.close();
    EXPECT_TRUE(console_.hasFailed());
}

TEST_F(PFileConsoleTest, CreatesAPrivateFileUnderAFreeNameOnly) {
    files_.addFile("/tmp/taken", "another's");
    EXPECT_EQ(MemoryFileSystem::kExists, console_.createPrivate("/tmp/taken"));
    EXPECT_FALSE(console_.isOpen());
    EXPECT_EQ("another's", files_.content("/tmp/taken"));
    EXPECT_EQ(0, console_.createPrivate("/tmp/free"));
    EXPECT_TRUE(files_.isPrivate("/tmp/free"));
}

TEST_F(PFileConsoleTest, OpensAPrivateFileWithoutFollowingALink) {
    files_.addFile("/victim", "precious");
    files_.addLink("/tmp/log", "/victim");
    ASSERT_EQ(0, console_.openPrivate("/tmp/log"));
    console_.print("x");
    EXPECT_EQ("precious", files_.content("/victim"));
    EXPECT_TRUE(files_.isPrivate("/tmp/log"));
    EXPECT_EQ("x\r\n", files_.content("/tmp/log"));
}

TEST_F(PFileConsoleTest, ClosesWhenItIsDestroyed) {
    {
        PFileConsole console(files_);
        ASSERT_EQ(0, console.open("/log", 0));
    }
    EXPECT_EQ(0, files_.openFileCount());
}

TEST(PFileConsoleDiskTest, WritesCarriageReturnsAndLineFeedsAsTheyAre) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("a.log");
    PFileConsole console(platform::systemFileSystem());
    console.setOptions(PConsole::kLineNumbers);
    ASSERT_EQ(0, console.open(path.c_str(), 0));
    console.print("one");
    console.print("two");
    console.close();
    EXPECT_FALSE(console.hasFailed());
    EXPECT_EQ("   0:  one\r\n   1:  two\r\n", readTestFile(path));
}

TEST_F(PFileConsoleTest, CutsWhatWasWrittenFromAPositionOn) {
    EXPECT_EQ(-1, console_.position());
    EXPECT_EQ(-1, console_.cutAt(0));
    ASSERT_EQ(0, console_.open("/log", 0));
    console_.print("first");
    const std::int64_t position = console_.position();
    console_.print("second");
    EXPECT_EQ(0, console_.cutAt(position));
    console_.print("third");
    EXPECT_EQ("first\r\nthird\r\n", files_.content("/log"));
}

TEST_F(PFileConsoleTest, CutsALineWithoutAnEnd) {
    const std::string far(10000, 'x');
    for (const std::string& rest : {std::string(), std::string("part"), far}) {
        files_.addFile("/log", "first\nsecond\n" + rest);
        ASSERT_EQ(0, console_.open("/log", 1));
        EXPECT_EQ(0, console_.cutToLastLine());
        console_.print("third");
        EXPECT_EQ("first\nsecond\nthird\r\n", files_.content("/log"));
    }
    files_.addFile("/log", far);
    ASSERT_EQ(0, console_.open("/log", 1));
    EXPECT_EQ(0, console_.cutToLastLine());
    EXPECT_EQ("", files_.content("/log"));
}

TEST_F(PFileConsoleTest, LeavesALineThatItCannotRead) {
    files_.addFile("/log", "first\npart");
    ASSERT_EQ(0, console_.open("/log", 1));
    files_.failAt(Operation::kRead, "/log", 1, 5);
    EXPECT_EQ(5, console_.cutToLastLine());
    EXPECT_EQ("first\npart", files_.content("/log"));
}

TEST_F(PFileConsoleTest, RemembersAFlushThatFailed) {
    EXPECT_EQ(0, console_.flush());
    ASSERT_EQ(0, console_.open("/log", 0));
    EXPECT_EQ(0, console_.flush());
    EXPECT_FALSE(console_.hasFailed());
    files_.failAt(Operation::kFlush, "/log", 1, 5);
    EXPECT_EQ(5, console_.flush());
    EXPECT_TRUE(console_.hasFailed());
}

}  // namespace
