#include "support/p_file_stream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "fakes/temporary_directory.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class PFileStreamTest : public testing::Test {
protected:
    void write(const std::string& text) {
        ASSERT_EQ(0, stream_.write(text.data(), static_cast<std::uint32_t>(text.size()), done_));
        ASSERT_EQ(text.size(), done_);
    }
    std::string read(std::uint32_t size) {
        char buffer[64];
        EXPECT_EQ(0, stream_.read(buffer, size, done_));
        return std::string(buffer, done_);
    }
    int openFile(const char* path, std::uint32_t mode, std::uint32_t access = PFileStream::kReadWrite) {
        return stream_.openFile(path, access, PFileStream::kShareRead, mode);
    }

    MemoryFileSystem files_;
    PFileStream stream_{files_};
    std::uint32_t done_ = 99;
};

TEST_F(PFileStreamTest, RefusesEverythingWhileUnopened) {
    char buffer[4];
    EXPECT_EQ(-1, stream_.getSize());
    EXPECT_EQ(-1, stream_.getPosition());
    EXPECT_EQ(-1, stream_.read(buffer, 4, done_));
    EXPECT_EQ(0U, done_);
    done_ = 99;
    EXPECT_EQ(-1, stream_.write("x", 1, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(-1, stream_.seek(0));
    EXPECT_EQ(-1, stream_.seekRelative(0));
    EXPECT_EQ(-1, stream_.seekFromEnd(0));
    EXPECT_EQ(-1, stream_.flush());
    EXPECT_EQ(-1, stream_.setEndOfStream());
    EXPECT_TRUE(stream_.isAtEnd());
    EXPECT_FALSE(stream_.isOpen());
    EXPECT_EQ(0, stream_.close());
    EXPECT_EQ(0, stream_.getOpenCount());
}

TEST_F(PFileStreamTest, ByDefaultOpensOrCreates) {
    stream_.setParameters("/a", PFileStream::kReadWrite, PFileStream::kShareRead, PFileStream::kOpenAlways);
    EXPECT_EQ(0, stream_.open());
    EXPECT_TRUE(files_.hasFile("/a"));
    EXPECT_EQ(stream_.getName(), "/a");
}

TEST_F(PFileStreamTest, TheLowBitsOfTheModeDecideWhetherTheContentStays) {
    for (const std::uint32_t mode : {0U, 1U, 2U, 4U, 5U, 6U}) {
        files_.addFile("/a", "content");
        EXPECT_EQ(0, openFile("/a", mode)) << mode;
        EXPECT_EQ(7, stream_.getSize()) << mode;
        EXPECT_EQ(0, stream_.getPosition()) << mode;
    }
    for (const std::uint32_t mode : {3U, 7U}) {
        files_.addFile("/a", "content");
        EXPECT_EQ(0, openFile("/a", mode)) << mode;
        EXPECT_EQ(0, stream_.getSize()) << mode;
    }
}

TEST_F(PFileStreamTest, TheLowBitsOfTheModeDecideWhetherAFileIsCreated) {
    for (const std::uint32_t mode : {0U, 1U, 4U, 5U}) {
        EXPECT_EQ(MemoryFileSystem::kNotFound, openFile("/new", mode)) << mode;
        EXPECT_FALSE(files_.hasFile("/new"));
        EXPECT_EQ(0, stream_.getOpenCount());
    }
    EXPECT_EQ(0, openFile("/two", 2));
    EXPECT_EQ(0, openFile("/three", 3));
    EXPECT_TRUE(files_.hasFile("/two"));
    EXPECT_TRUE(files_.hasFile("/three"));
}

TEST_F(PFileStreamTest, HandsTheParametersToTheSystem) {
    struct Recording : MemoryFileSystem {
        platform::OpenOptions seen;
        int open(std::string_view path, const platform::OpenOptions& options,
                 std::unique_ptr<platform::File>& outFile) override {
            seen = options;
            return MemoryFileSystem::open(path, options, outFile);
        }
    } files;
    files.addFile("/a", "");
    PFileStream stream(files);
    ASSERT_EQ(0, stream.openFile("/a", PFileStream::kGenericRead, 7, PFileStream::kSequential));
    EXPECT_EQ(platform::kRead, files.seen.access);
    EXPECT_EQ(7U, files.seen.share);
    EXPECT_TRUE(files.seen.sequential);
    EXPECT_EQ(platform::Disposition::kOpenExisting, files.seen.disposition);
    ASSERT_EQ(0, stream.openWithMode("/a", 1));
    EXPECT_EQ(platform::kRead | platform::kWrite, files.seen.access);
    EXPECT_EQ(platform::kShareRead, files.seen.share);
    EXPECT_FALSE(files.seen.sequential);
}

TEST_F(PFileStreamTest, WritesReadsAndSeeks) {
    ASSERT_EQ(0, openFile("/a", 3));
    write("0123456789");
    EXPECT_EQ(10, stream_.getSize());
    EXPECT_TRUE(stream_.isAtEnd());
    EXPECT_EQ(0, stream_.seek(2));
    EXPECT_EQ("234", read(3));
    EXPECT_EQ(0, stream_.seekRelative(-1));
    EXPECT_EQ("4", read(1));
    EXPECT_EQ(0, stream_.seekFromEnd(0));
    EXPECT_EQ(10, stream_.getPosition());
    EXPECT_EQ("", read(4));
    EXPECT_EQ(0, stream_.seekFromEnd(-3));
    EXPECT_EQ("789", read(9));
    EXPECT_EQ(0, stream_.seek(5));
    EXPECT_EQ(0, stream_.setEndOfStream());
    EXPECT_EQ(0, stream_.close());
    EXPECT_EQ("01234", files_.content("/a"));
}

TEST_F(PFileStreamTest, OpeningWithModeOneAppends) {
    for (const int mode : {1, 5}) {
        files_.addFile("/a", "old");
        ASSERT_EQ(0, stream_.openWithMode("/a", mode));
        EXPECT_EQ(3, stream_.getPosition());
        write("new");
        EXPECT_EQ("oldnew", files_.content("/a"));
    }
    ASSERT_EQ(0, stream_.openWithMode("/b", 1));
    EXPECT_TRUE(files_.hasFile("/b"));
}

TEST_F(PFileStreamTest, OpeningWithAnyOtherModeRecreates) {
    for (const int mode : {0, 2, 3, 4, -2}) {
        files_.addFile("/a", "old");
        ASSERT_EQ(0, stream_.openWithMode("/a", mode));
        EXPECT_EQ(0, stream_.getSize()) << mode;
    }
}

TEST_F(PFileStreamTest, ClosesAnOpenFileBeforeItOpensAnother) {
    ASSERT_EQ(0, openFile("/a", 3));
    ASSERT_EQ(0, openFile("/b", 3));
    EXPECT_EQ(1, files_.openFileCount());
    EXPECT_EQ(1, stream_.getOpenCount());
    EXPECT_EQ(MemoryFileSystem::kNotFound, openFile("/none", 0));
    EXPECT_EQ(0, files_.openFileCount());
    EXPECT_EQ(0, stream_.getOpenCount());
}

TEST_F(PFileStreamTest, StaysClosedWhenItCannotAppendAtTheEnd) {
    files_.addFile("/a", "old");
    files_.failAt(Operation::kSeek, "/a", 1, 77);
    EXPECT_EQ(77, stream_.openWithMode("/a", 1));
    EXPECT_FALSE(stream_.isOpen());
    EXPECT_EQ("old", files_.content("/a"));
}

TEST_F(PFileStreamTest, CountsAsClosedEvenWhenClosingFails) {
    ASSERT_EQ(0, openFile("/a", 3));
    files_.failAt(Operation::kClose, "/a", 1, 28);
    EXPECT_EQ(28, stream_.close());
    EXPECT_FALSE(stream_.isOpen());
    EXPECT_EQ(1, stream_.getOpenCount());
    EXPECT_EQ(0, files_.openFileCount());
}

TEST_F(PFileStreamTest, PassesTheErrorsOfTheSystemOn) {
    ASSERT_EQ(0, openFile("/a", 3));
    files_.setFreeSpace(4);
    EXPECT_EQ(MemoryFileSystem::kDiskFull, stream_.write("012345", 6, done_));
    EXPECT_EQ(4U, done_);
    files_.failAt(Operation::kRead, "/a", 1, 21);
    char buffer[4];
    EXPECT_EQ(21, stream_.read(buffer, 4, done_));
    EXPECT_EQ(0U, done_);
    files_.failAt(Operation::kFlush, "/a", 1, 22);
    EXPECT_EQ(22, stream_.flush());
    files_.failAt(Operation::kTruncate, "/a", 1, 23);
    EXPECT_EQ(23, stream_.setEndOfStream());
    files_.failAt(Operation::kSeek, "/a", 1, 24);
    EXPECT_EQ(-1, stream_.getPosition());
}

TEST_F(PFileStreamTest, GivesTheSizeOfAFileWithoutOpeningIt) {
    files_.addFile("/a", "12345");
    EXPECT_EQ(5, stream_.getFileSize("/a"));
    EXPECT_EQ(-1, stream_.getFileSize("/none"));
    EXPECT_EQ(-1, stream_.getFileSize("/"));
    EXPECT_EQ(-1, stream_.getFileSize(""));
    EXPECT_EQ(0, files_.count(Operation::kOpen));
}

TEST_F(PFileStreamTest, MakesAPrivateFileInThePlaceOfALink) {
    files_.addFile("/victim", "precious");
    files_.addLink("/tmp/log", "/victim");
    ASSERT_EQ(0, stream_.openPrivate("/tmp/log"));
    write("text");
    EXPECT_EQ("precious", files_.content("/victim"));
    EXPECT_EQ("text", files_.content("/tmp/log"));
    EXPECT_TRUE(files_.isPrivate("/tmp/log"));
    EXPECT_TRUE(files_.hasFile("/tmp/log"));
}

TEST_F(PFileStreamTest, CreatesFilesUnderFreeNamesOnly) {
    files_.addFile("/tmp/taken", "another's");
    EXPECT_EQ(MemoryFileSystem::kExists, stream_.createPrivate("/tmp/taken"));
    EXPECT_EQ(MemoryFileSystem::kExists, stream_.createNew("/tmp/taken", true));
    EXPECT_FALSE(stream_.isOpen());
    EXPECT_EQ("another's", files_.content("/tmp/taken"));
    ASSERT_EQ(0, stream_.createPrivate("/tmp/private"));
    write("text");
    EXPECT_TRUE(files_.isPrivate("/tmp/private"));
    ASSERT_EQ(0, stream_.createNew("/tmp/plain", false));
    write("text");
    EXPECT_FALSE(files_.isPrivate("/tmp/plain"));
}

TEST_F(PFileStreamTest, FollowsNoLinkWhereNoneIsToBeFollowed) {
    files_.addFile("/victim", "precious");
    files_.addLink("/link", "/victim");
    EXPECT_NE(0, stream_.openFile("/link", PFileStream::kGenericRead, PFileStream::kShareRead,
                                  PFileStream::kOpenExisting | PFileStream::kRefuseLinks));
    EXPECT_NE(0, stream_.openWithMode("/link", PFileStream::kAppend));
    EXPECT_NE(0, stream_.openWithMode("/link", 0));
    EXPECT_EQ("precious", files_.content("/victim"));
}

TEST_F(PFileStreamTest, GivesRightsToItsOpenFileOnly) {
    files_.addFile("/from", "");
    EXPECT_EQ(-1, stream_.setRights(platform::FileRights::kProgram));
    EXPECT_EQ(-1, stream_.takeRightsOf("/from"));
    EXPECT_EQ(-1, stream_.makeExecutable());
    ASSERT_EQ(0, stream_.createPrivate("/a"));
    EXPECT_EQ(0, stream_.takeRightsOf("/from"));
    EXPECT_FALSE(files_.isPrivate("/a"));
    EXPECT_EQ(0, stream_.makeExecutable());
    EXPECT_TRUE(files_.isExecutable("/a"));
    EXPECT_EQ(0, stream_.setRights(platform::FileRights::kPrivate));
    EXPECT_TRUE(files_.isPrivate("/a"));
}

TEST_F(PFileStreamTest, DoesNotOpenAPrivateFileWhereTheOldOneStays) {
    files_.addFile("/tmp/log", "old");
    files_.setReadOnly("/tmp/log");
    EXPECT_EQ(MemoryFileSystem::kExists, stream_.openPrivate("/tmp/log"));
    EXPECT_FALSE(stream_.isOpen());
    EXPECT_EQ("old", files_.content("/tmp/log"));
}

TEST_F(PFileStreamTest, ClosesWhenItIsDestroyed) {
    {
        PFileStream stream(files_);
        ASSERT_EQ(0, stream.openWithMode("/a", 0));
        EXPECT_EQ(1, files_.openFileCount());
    }
    EXPECT_EQ(0, files_.openFileCount());
}

TEST(PFileStreamDiskTest, WorksOnARealDisk) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("stream \xC3\xA4.bin");
    PFileStream stream(platform::systemFileSystem());
    ASSERT_EQ(0, stream.openWithMode(path.c_str(), 0));
    ASSERT_EQ(0, stream.writeText("0123456789"));
    ASSERT_EQ(0, stream.seekFromEnd(-4));
    ASSERT_EQ(0, stream.setEndOfStream());
    ASSERT_EQ(0, stream.flush());
    EXPECT_EQ(6, stream.getSize());
    ASSERT_EQ(0, stream.close());
    ASSERT_EQ(0, stream.openWithMode(path.c_str(), 1));
    ASSERT_EQ(0, stream.writeText("+"));
    ASSERT_EQ(0, stream.close());
    EXPECT_EQ("012345+", readTestFile(path));
    EXPECT_EQ(7, stream.getFileSize(path.c_str()));
    EXPECT_EQ(-1, stream.getFileSize(directory.path().c_str()));
    EXPECT_NE(0, stream.openFile(directory.file("none").c_str(), PFileStream::kGenericRead, 1, 0));
    ASSERT_EQ(0, stream.openPrivate(path.c_str()));
    EXPECT_EQ(0, stream.getSize());
}

}  // namespace
