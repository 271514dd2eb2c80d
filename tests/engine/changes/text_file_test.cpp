#include "engine/changes/text_file.h"

#include <gtest/gtest.h>

#include "engine/changes/text_lines.h"
#include "fakes/temporary_directory.h"
#include "platform/error_text.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using State = TextFile::State;
using Lines = std::vector<std::string_view>;

TEST(TextLinesTest, SplitsAtLineFeeds) {
    EXPECT_EQ(splitTextLines(""), Lines{});
    EXPECT_EQ(splitTextLines("a"), Lines{"a"});
    EXPECT_EQ(splitTextLines("a\n"), Lines{"a"});
    EXPECT_EQ(splitTextLines("\n\nb"), (Lines{"", "", "b"}));
    EXPECT_EQ(splitTextLines("a\rb\r"), Lines{"a\rb\r"});
    EXPECT_EQ(splitTextLines(std::string_view("a\0b\n\x1a\n", 6)), (Lines{{"a\0b", 3}, "\x1a"}));
    EXPECT_EQ(splitTextLines(std::string(5000, 'x') + "\n").front().size(), 5000U);
}

TEST(TextLinesTest, DropsTheReturnThatTheSystemPutsBeforeLineFeeds) {
    const bool isPart = std::string_view(OUtils::textLineEnd()) == "\n";
    EXPECT_EQ(splitTextLines("a\r\n"), Lines{isPart ? "a\r" : "a"});
}

class TextFileTest : public testing::Test {
protected:
    bool storeOver(const std::string& path) {
        TextFile file(files_, path);
        EXPECT_NE(file.load(), State::kUnreadable);
        return file.store("", {"new", "lines"});
    }
    void expectAsItWas() {
        EXPECT_EQ(files_.content("/d/f"), "old");
        EXPECT_EQ(files_.allFiles(), std::vector<std::string>{"/d/f"});
        EXPECT_EQ(files_.openFileCount(), 0);
    }

    MemoryFileSystem files_;
};

TEST_F(TextFileTest, SaysWhatIsThere) {
    files_.addFile("/d/f", "old");
    files_.addLink("/link", "/d/f");
    files_.addLink("/dangling", "/none");
    TextFile file(files_, "/d/f");
    EXPECT_EQ(file.load(), State::kLoaded);
    EXPECT_EQ(file.content(), "old");
    EXPECT_EQ(TextFile(files_, "/none").load(), State::kMissing);
    EXPECT_EQ(TextFile(files_, "/d").load(), State::kUnreadable);
    EXPECT_EQ(TextFile(files_, "/link").load(), State::kUnreadable);
    EXPECT_EQ(TextFile(files_, "/dangling").load(), State::kUnreadable);
    files_.failAt(Operation::kRead, "/d/f", 1);
    EXPECT_EQ(file.load(), State::kUnreadable);
    EXPECT_EQ(file.content(), "");
}

TEST_F(TextFileTest, LoadsUpToItsLimit) {
    files_.addFile("/f", std::string(TextFile::kSizeLimit, 'x'));
    EXPECT_EQ(TextFile(files_, "/f").load(), State::kLoaded);
    files_.addFile("/f", std::string(TextFile::kSizeLimit + 1, 'x'));
    EXPECT_EQ(TextFile(files_, "/f").load(), State::kUnreadable);
}

TEST_F(TextFileTest, ReplacesAFileWithItsRights) {
    files_.addFile("/d/f", "old");
    files_.makeExecutable("/d/f");
    EXPECT_TRUE(storeOver("/d/f"));
    EXPECT_EQ(files_.content("/d/f"), textOf({"new", "lines"}));
    EXPECT_TRUE(files_.isExecutable("/d/f"));
    EXPECT_FALSE(files_.isPrivate("/d/f"));
    EXPECT_EQ(files_.allFiles(), std::vector<std::string>{"/d/f"});
    EXPECT_TRUE(files_.didOperation("flush /d/.tandrel-1.tmp"));
}

TEST_F(TextFileTest, LeavesALinkAndWhatItLeadsTo) {
    files_.addFile("/d/f", "old");
    files_.addLink("/etc/link", "/d/f");
    TextFile file(files_, "/etc/link");
    EXPECT_EQ(file.load(), State::kUnreadable);
    EXPECT_EQ(file.content(), "");
    EXPECT_EQ(files_.kindOf("/etc/link"), platform::PathKind::kLink);
    EXPECT_EQ(file.load(OUtils::Links::kFollow), State::kLoaded);
    EXPECT_EQ(file.content(), "old");
    EXPECT_EQ(files_.content("/d/f"), "old");
}

// The link would show the editor a text that isn't the user's to read.
TEST_F(TextFileTest, ReadsNothingThroughALinkThatAppearsAfterTheLook) {
    files_.addFile("/d/f", "old");
    files_.addFile("/victim", "secret");
    files_.runBefore(Operation::kOpen, "/d/f", 1, [this] { files_.addLink("/d/f", "/victim"); });
    TextFile file(files_, "/d/f");
    EXPECT_EQ(file.load(), State::kUnreadable);
    EXPECT_EQ(file.content(), "");
}

TEST_F(TextFileTest, DoesNotReplaceAFileThatItMissed) {
    TextFile file(files_, "/d/f");
    EXPECT_EQ(file.load(), State::kMissing);
    files_.addFile("/d/f", "old");
    EXPECT_FALSE(file.store("", {"new"}));
    expectAsItWas();
}

TEST_F(TextFileTest, MakesAMissingFile) {
    files_.addDirectory("/d");
    EXPECT_TRUE(storeOver("/d/f"));
    EXPECT_EQ(files_.content("/d/f"), textOf({"new", "lines"}));
    EXPECT_FALSE(files_.isPrivate("/d/f"));
    EXPECT_FALSE(storeOver("/none/f"));
}

TEST_F(TextFileTest, WritesTheHeadFirst) {
    TextFile file(files_, "/f");
    EXPECT_EQ(file.load(), State::kMissing);
    EXPECT_TRUE(file.store("mark", {"a"}));
    EXPECT_EQ(files_.content("/f"), "mark" + textOf({"a"}));
    EXPECT_EQ(file.load(), State::kLoaded);
    EXPECT_TRUE(file.store("", {}));
    EXPECT_TRUE(files_.hasFile("/f"));
    EXPECT_EQ(files_.content("/f"), "");
}

TEST_F(TextFileTest, LeavesTheOldFileAfterEachFailure) {
    files_.addFile("/d/f", "old");
    for (const Operation operation : {Operation::kWrite, Operation::kFlush, Operation::kClose,
                                      Operation::kCopyRights, Operation::kReplaceFile}) {
        files_.failAt(operation, "", operation == Operation::kClose ? 2 : 1);
        EXPECT_FALSE(storeOver("/d/f"));
        files_.clearFaults();
        expectAsItWas();
    }
    files_.failAt(Operation::kOpen, "/d/.tandrel-1.tmp", 1);
    EXPECT_FALSE(storeOver("/d/f"));
    files_.setFreeSpace(3);
    EXPECT_FALSE(storeOver("/d/f"));
    files_.clearFaults();
    files_.setReadOnly("/d");
    EXPECT_FALSE(storeOver("/d/f"));
    expectAsItWas();
}

TEST_F(TextFileTest, SaysWhyItFailed) {
    files_.addFile("/d/f", "old");
    TextFile directory(files_, "/d");
    EXPECT_EQ(directory.load(), TextFile::State::kUnreadable);
    EXPECT_EQ(directory.reason(), "a link, or something else than a file, is in its place");
    TextFile file(files_, "/d/f");
    EXPECT_EQ(file.load(), TextFile::State::kLoaded);
    files_.failAt(Operation::kWrite, "", 1, 28);
    EXPECT_FALSE(file.store("", {"new"}));
    EXPECT_EQ(file.reason(), platform::errorText(28));
}

TEST_F(TextFileTest, LeavesNothingWhereANewFileFails) {
    files_.addDirectory("/d");
    for (const Operation operation : {Operation::kWrite, Operation::kMoveFile}) {
        files_.failAt(operation, "", 1);
        EXPECT_FALSE(storeOver("/d/f"));
        EXPECT_TRUE(files_.allFiles().empty());
    }
}

TEST(TextFileMachineTest, ReplacesARealFile) {
    const TemporaryDirectory directory;
    platform::FileSystem& files = platform::systemFileSystem();
    writeTestFile(directory.file("f"), "old\n");
    TextFile file(files, directory.file("f"));
    ASSERT_EQ(file.load(), State::kLoaded);
    EXPECT_TRUE(file.store("", {"new"}));
    EXPECT_EQ(readTestFile(directory.file("f")), textOf({"new"}));
    TextFile other(files, directory.file("g"));
    ASSERT_EQ(other.load(), State::kMissing);
    EXPECT_TRUE(other.store("", {"x"}));
    EXPECT_EQ(readTestFile(directory.file("g")), textOf({"x"}));
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(files.list(directory.path(), entries), 0);
    EXPECT_EQ(entries.size(), 2U);
    EXPECT_EQ(TextFile(files, directory.path()).load(), State::kUnreadable);
}

}  // namespace
