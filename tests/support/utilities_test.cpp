#include "support/utilities.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/temporary_directory.h"
#include "platform/error_text.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

std::string patterned(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(i * 131 + i / 257);
    }
    return text;
}

class CopyFileTest : public testing::Test {
protected:
    CopyFileTest() { files_.addFile("/from", content_); }

    void expectFailure() {
        EXPECT_FALSE(OUtils::copyFile("/from", "/to", files_));
        EXPECT_EQ(content_, files_.content("/from"));
        EXPECT_EQ(0, files_.openFileCount());
    }

    const std::string content_ = patterned(1000003);
    MemoryFileSystem files_;
};

TEST_F(CopyFileTest, CopiesAllInLargeBlocks) {
    files_.addFile("/to", std::string(2000000, 'x'));
    EXPECT_TRUE(OUtils::copyFile("/from", "/to", files_));
    EXPECT_EQ(content_, files_.content("/to"));
    EXPECT_LE(files_.count(Operation::kWrite), 1000003 / 65536 + 1);
    EXPECT_EQ(0, files_.openFileCount());
}

TEST_F(CopyFileTest, CopiesAnEmptyFile) {
    files_.addFile("/from", "");
    EXPECT_TRUE(OUtils::copyFile("/from", "/to", files_));
    EXPECT_TRUE(files_.hasFile("/to"));
}

TEST_F(CopyFileTest, LeavesNoHalfFileOnAFullDisk) {
    for (const std::int64_t space : {0, 1, 262144, 1000002}) {
        files_.setFreeSpace(space);
        expectFailure();
        EXPECT_FALSE(files_.hasFile("/to")) << space;
    }
    files_.setFreeSpace(1000003);
    EXPECT_TRUE(OUtils::copyFile("/from", "/to", files_));
}

TEST_F(CopyFileTest, NoticesAFailingCloseAndRead) {
    files_.failAt(Operation::kClose, "/.tandrel-1.tmp", 1);
    expectFailure();
    EXPECT_FALSE(files_.hasFile("/to"));
    files_.failAt(Operation::kRead, "/from", 3);
    expectFailure();
    EXPECT_FALSE(files_.hasFile("/to"));
}

TEST_F(CopyFileTest, LeavesTheOldTargetOnAFullDisk) {
    files_.addFile("/to", "old");
    files_.setFreeSpace(262144);
    expectFailure();
    EXPECT_EQ("old", files_.content("/to"));
}

TEST_F(CopyFileTest, ReplacesALinkAndFollowsNone) {
    files_.addFile("/victim", "precious");
    files_.addLink("/to", "/victim");
    EXPECT_TRUE(OUtils::copyFile("/from", "/to", files_));
    EXPECT_TRUE(files_.hasFile("/to"));
    EXPECT_EQ("precious", files_.content("/victim"));
}

TEST_F(CopyFileTest, LeavesATargetThatItCouldNotOpen) {
    files_.addFile("/to", "old");
    files_.setReadOnly("/to");
    expectFailure();
    EXPECT_EQ("old", files_.content("/to"));
    EXPECT_FALSE(OUtils::copyFile("/none", "/other", files_));
    EXPECT_FALSE(files_.hasFile("/other"));
}

TEST_F(CopyFileTest, DoesNotEmptyAFileThatIsCopiedOntoItself) {
    EXPECT_FALSE(OUtils::copyFile("/from", "\\from", files_));
    EXPECT_EQ(content_, files_.content("/from"));
}

// A file whose writes take less than they are given, without an error.
class ShortWritingFiles : public MemoryFileSystem {
public:
    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override {
        std::unique_ptr<platform::File> inner;
        const int status = MemoryFileSystem::open(path, options, inner);
        if (status == 0 && (options.access & platform::kWrite) != 0) {
            outFile = std::make_unique<ShortWriting>(std::move(inner));
        } else {
            outFile = std::move(inner);
        }
        return status;
    }

private:
    class ShortWriting : public platform::File {
    public:
        explicit ShortWriting(std::unique_ptr<platform::File> inner) : inner_(std::move(inner)) {}
        int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
            return inner_->read(buffer, size, outDone);
        }
        int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
            return inner_->write(buffer, size - 1, outDone);
        }
        int seek(std::int64_t distance, platform::Origin origin, std::int64_t& outPosition) override {
            return inner_->seek(distance, origin, outPosition);
        }
        std::int64_t size() override { return inner_->size(); }
        int truncateHere() override { return inner_->truncateHere(); }
        int flush() override { return inner_->flush(); }
        int setRights(platform::FileRights rights) override { return inner_->setRights(rights); }
        int takeRightsOf(std::string_view path) override { return inner_->takeRightsOf(path); }
        int makeExecutable() override { return inner_->makeExecutable(); }
        int close() override { return inner_->close(); }

    private:
        std::unique_ptr<platform::File> inner_;
    };
};

TEST(ShortWriteTest, IsNoticed) {
    ShortWritingFiles files;
    files.addFile("/from", "content");
    EXPECT_FALSE(OUtils::copyFile("/from", "/to", files));
    EXPECT_FALSE(files.hasFile("/to"));
    EXPECT_EQ(-1, OUtils::writeWholeFile("/to", "content", files));
}

class WholeFileTest : public testing::Test {
protected:
    MemoryFileSystem files_;
    SharedBuffer buffer_{4};
    std::string text_ = "old";
};

TEST_F(WholeFileTest, ReadsAllOfIt) {
    const std::string content = patterned(300001);
    files_.addFile("/a", content);
    EXPECT_EQ(0, OUtils::readWholeFile("/a", text_, files_));
    EXPECT_EQ(content, text_);
    EXPECT_EQ(0, OUtils::readWholeFile("/a", buffer_, files_));
    ASSERT_EQ(300001, buffer_.size());
    EXPECT_EQ(content, std::string(buffer_.text(), 300001));
    EXPECT_EQ(0, buffer_.data()[300001]);
}

TEST_F(WholeFileTest, ReadsAnEmptyFile) {
    files_.addFile("/a", "");
    EXPECT_EQ(0, OUtils::readWholeFile("/a", text_, files_));
    EXPECT_EQ("", text_);
    EXPECT_EQ(0, OUtils::readWholeFile("/a", buffer_, files_));
    EXPECT_EQ(0, buffer_.size());
    EXPECT_STREQ("", buffer_.text());
}

TEST_F(WholeFileTest, HoldsNothingAfterAFailure) {
    EXPECT_EQ(MemoryFileSystem::kNotFound, OUtils::readWholeFile("/none", text_, files_));
    EXPECT_EQ("", text_);
    EXPECT_EQ(MemoryFileSystem::kNotFound, OUtils::readWholeFile("/none", buffer_, files_));
    EXPECT_EQ(nullptr, buffer_.data());
    files_.addFile("/a", "content");
    files_.failFrom(Operation::kRead, "/a", 1, 31);
    EXPECT_EQ(31, OUtils::readWholeFile("/a", text_, files_));
    EXPECT_EQ("", text_);
    EXPECT_EQ(31, OUtils::readWholeFile("/a", buffer_, files_));
    EXPECT_EQ(nullptr, buffer_.data());
}

// Files that claim another size than they have.
class WrongSizeFiles : public platform::FileSystem {
public:
    explicit WrongSizeFiles(std::int64_t size) : size_(size) { files_.addFile("/a", "content"); }
    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override {
        std::unique_ptr<platform::File> inner;
        const int status = files_.open(path, options, inner);
        outFile = std::make_unique<WrongSize>(std::move(inner), size_);
        return status;
    }
    bool exists(std::string_view) override { return true; }
    platform::PathKind kindOf(std::string_view) override { return platform::PathKind::kFile; }
    bool isDirectory(std::string_view) override { return false; }
    bool isOrdinaryDirectory(std::string_view) override { return false; }
    std::int64_t fileSize(std::string_view) override { return size_; }
    int resolveFile(std::string_view, std::string&) override { return 1; }
    int linkTarget(std::string_view, std::string&) override { return 1; }
    int takeDirectoryRights(std::string_view) override { return 1; }
    std::string rightsOf(std::string_view) override { return {}; }
    int removeFile(std::string_view) override { return 1; }
    int moveFile(std::string_view, std::string_view) override { return 1; }
    int replaceFile(std::string_view, std::string_view) override { return 1; }
    int takeFileAway(std::string_view, std::string_view) override { return 1; }
    int takeDirectoryAway(std::string_view, std::string_view) override { return 1; }
    int createDirectory(std::string_view) override { return 1; }
    int removeDirectory(std::string_view) override { return 1; }
    int list(std::string_view, std::vector<platform::DirectoryEntry>&) override { return 1; }
    int openDirectory(std::string_view, std::unique_ptr<platform::Directory>&) override { return 1; }
    int makeExecutable(std::string_view) override { return 1; }
    bool temporaryDirectory(std::string&) override { return false; }
    bool temporaryName(std::string_view, std::uint32_t, std::string&) override { return false; }
    int realPath(std::string_view, std::string&) override { return 1; }
    bool isProtected(std::string_view, platform::Protection) override { return false; }
    int createPrivateDirectory(std::string_view, std::string_view, std::string&) override { return 1; }
    std::vector<std::string> otherPrivatePlaces() override { return {}; }
    int findVolume(std::string_view, platform::Volume&) override { return 1; }
    int removeAtRestart(std::string_view) override { return 1; }

private:
    class WrongSize : public platform::File {
    public:
        WrongSize(std::unique_ptr<platform::File> inner, std::int64_t size)
            : inner_(std::move(inner)), size_(size) {}
        int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
            return inner_->read(buffer, size, outDone);
        }
        int write(const void*, std::uint32_t, std::uint32_t& outDone) override {
            outDone = 0;
            return 1;
        }
        int seek(std::int64_t, platform::Origin, std::int64_t&) override { return 1; }
        std::int64_t size() override { return size_; }
        int truncateHere() override { return 1; }
        int flush() override { return 0; }
        int setRights(platform::FileRights) override { return 1; }
        int takeRightsOf(std::string_view) override { return 1; }
        int makeExecutable() override { return 1; }
        int close() override { return 0; }

    private:
        std::unique_ptr<platform::File> inner_;
        std::int64_t size_;
    };

    MemoryFileSystem files_;
    std::int64_t size_;
};

TEST_F(WholeFileTest, RefusesAFileOverTheLimitOrOfUnknownSize) {
    for (const std::int64_t size : {std::int64_t{INT32_MAX} + 1, std::int64_t{-1}}) {
        WrongSizeFiles files(size);
        EXPECT_EQ(-1, OUtils::readWholeFile("/a", text_, files)) << size;
        EXPECT_EQ(-1, OUtils::readWholeFile("/a", buffer_, files)) << size;
        EXPECT_EQ(nullptr, buffer_.data());
    }
}

TEST_F(WholeFileTest, NoticesAFileThatEndsEarly) {
    WrongSizeFiles files(100);
    EXPECT_EQ(-1, OUtils::readWholeFile("/a", text_, files));
    EXPECT_EQ("", text_);
    EXPECT_EQ(-1, OUtils::readWholeFile("/a", buffer_, files));
}

TEST_F(WholeFileTest, WritesExactlyItsContent) {
    files_.addFile("/a", "a longer old content");
    EXPECT_EQ(0, OUtils::writeWholeFile("/a", std::string_view("ne\0w", 4), files_));
    EXPECT_EQ(std::string("ne\0w", 4), files_.content("/a"));
    EXPECT_EQ(0, OUtils::writeWholeFile("/b", "", files_));
    EXPECT_TRUE(files_.hasFile("/b"));
}

TEST_F(WholeFileTest, SaysWhyItFailedInTheWordsOfTheSystem) {
    EXPECT_EQ(OUtils::readingErrorText(2), platform::errorText(2));
    EXPECT_EQ(OUtils::writingErrorText(2), platform::errorText(2));
    EXPECT_EQ(OUtils::readingErrorText(-1), "the file is too large, or ended early");
    EXPECT_EQ(OUtils::writingErrorText(-1), "it is too large, or no file can be in its place");
}

TEST_F(WholeFileTest, RefusesALinkWhereItIsAskedTo) {
    files_.addFile("/a", "content");
    files_.addLink("/link", "/a");
    EXPECT_EQ(0, OUtils::readWholeFile("/link", text_, files_));
    EXPECT_EQ("content", text_);
    EXPECT_NE(0, OUtils::readWholeFile("/link", text_, files_, OUtils::Links::kRefuse));
    EXPECT_EQ("", text_);
    EXPECT_EQ(0, OUtils::readWholeFile("/a", text_, files_, OUtils::Links::kRefuse));
}

TEST_F(WholeFileTest, WritesWithTheRightsThatAreAskedFor) {
    EXPECT_EQ(0, OUtils::writeWholeFile("/a", "", files_, platform::FileRights::kPrivate));
    EXPECT_TRUE(files_.isPrivate("/a"));
    EXPECT_EQ(0, OUtils::writeWholeFile("/b", "", files_));
    EXPECT_FALSE(files_.isPrivate("/b"));
}

TEST_F(WholeFileTest, ReportsAFailedWriteOrClose) {
    files_.addFile("/a", "old");
    files_.setFreeSpace(2);
    EXPECT_EQ(MemoryFileSystem::kDiskFull, OUtils::writeWholeFile("/a", "abc", files_));
    EXPECT_EQ("old", files_.content("/a"));
    files_.clearFaults();
    files_.failAt(Operation::kClose, "/.tandrel-1.tmp", 1, 33);
    EXPECT_EQ(33, OUtils::writeWholeFile("/a", "abc", files_));
    EXPECT_EQ(MemoryFileSystem::kNotFound, OUtils::writeWholeFile("/none/a", "abc", files_));
}

TEST(PathExistsTest, IsTrueForAnyKind) {
    MemoryFileSystem files;
    files.addFile("/a/b", "");
    EXPECT_TRUE(OUtils::pathExists("/a/b", files));
    EXPECT_TRUE(OUtils::pathExists("\\A", files));
    EXPECT_FALSE(OUtils::pathExists("/c", files));
    EXPECT_FALSE(OUtils::pathExists("", files));
}

TEST(TempDirectoryTest, HasAPathOrNone) {
    MemoryFileSystem files;
    files.setTemporaryDirectory("/var/tmp");
    EXPECT_EQ("/var/tmp", OUtils::getTempDirectory(files));
    files.setTemporaryDirectory("");
    EXPECT_EQ(std::nullopt, OUtils::getTempDirectory(files));
}

TEST(TempDirectoryTest, ExistsOnARealDiskAndHasNoSeparatorAtItsEnd) {
    const std::optional<std::string> path = OUtils::getTempDirectory(platform::systemFileSystem());
    ASSERT_TRUE(path.has_value());
    EXPECT_TRUE(OUtils::pathExists(*path, platform::systemFileSystem()));
    EXPECT_TRUE(path->back() != '/' && path->back() != '\\') << *path;
}

TEST(ProgramPathTest, NamesARealFile) {
    const std::optional<std::string> path = OUtils::getProgramPath(platform::systemEnvironment());
    ASSERT_TRUE(path.has_value());
    EXPECT_TRUE(OUtils::pathExists(*path, platform::systemFileSystem())) << *path;
    EXPECT_NE(std::string::npos, path->find("support_test")) << *path;
}

TEST(ProgramPathTest, IsNoneWhenTheSystemDoesNotGiveIt) {
    MemoryEnvironment environment;
    environment.program = "/opt/setup";
    EXPECT_EQ("/opt/setup", OUtils::getProgramPath(environment));
    environment.program.clear();
    EXPECT_EQ(std::nullopt, OUtils::getProgramPath(environment));
}

TEST(UtilitiesDiskTest, CopyReadAndWriteOnARealDisk) {
    platform::FileSystem& files = platform::systemFileSystem();
    const TemporaryDirectory directory;
    const std::string from = directory.file("from");
    const std::string to = directory.file("to");
    const std::string content = patterned(700001);
    ASSERT_EQ(0, OUtils::writeWholeFile(from, content, files));
    EXPECT_TRUE(OUtils::copyFile(from, to, files));
    std::string back;
    ASSERT_EQ(0, OUtils::readWholeFile(to, back, files));
    EXPECT_EQ(content, back);
    EXPECT_FALSE(OUtils::copyFile(from, directory.path(), files));
    EXPECT_NE(0, OUtils::readWholeFile(directory.path(), back, files));
    EXPECT_EQ("", back);
}

}  // namespace
