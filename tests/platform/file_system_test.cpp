#include "platform/file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "platform/machine_of_files.h"

namespace {

using platform::Disposition;
using platform::File;
using platform::OpenOptions;
using platform::Origin;

// With the system itself and with overlays, for which the same holds.
class FileSystemTest : public testing::TestWithParam<MachineOfFiles (*)()> {
protected:
    const std::string& directory() const { return machine_->directory(); }
    std::string path(const std::string& name) const { return directory() + "/" + name; }

    void writeTestFile(const std::string& path, std::string_view content) { machine_->write(path, content); }
    std::string readTestFile(const std::string& path) { return machine_->read(path); }
    bool testFileExists(const std::string& path) { return machine_->exists(path); }

    std::unique_ptr<File> openFile(const std::string& path, std::uint32_t access, Disposition disposition) {
        OpenOptions options;
        options.access = access;
        options.disposition = disposition;
        std::unique_ptr<File> file;
        status_ = files_.open(path.c_str(), options, file);
        EXPECT_EQ(status_ == 0, file != nullptr) << path;
        return file;
    }

    void write(File& file, const std::string& text) {
        std::uint32_t done = 0;
        ASSERT_EQ(file.write(text.data(), static_cast<std::uint32_t>(text.size()), done), 0);
        ASSERT_EQ(done, text.size());
    }

    std::string read(File& file, std::uint32_t size) {
        std::string text(size, '\0');
        std::uint32_t done = 0;
        EXPECT_EQ(file.read(text.data(), size, done), 0);
        text.resize(done);
        return text;
    }

    MachineOfFiles machine_ = GetParam()();
    platform::FileSystem& files_ = machine_->files();
    int status_ = 0;
};

TEST_P(FileSystemTest, OpenExistingFailsWithoutAFile) {
    EXPECT_EQ(openFile(path("none"), platform::kRead, Disposition::kOpenExisting), nullptr);
    EXPECT_NE(status_, 0);
    EXPECT_FALSE(testFileExists(path("none")));
}

TEST_P(FileSystemTest, OpenOrCreateKeepsTheContent) {
    write(*openFile(path("f"), platform::kWrite, Disposition::kOpenOrCreate), "abc");
    write(*openFile(path("f"), platform::kWrite, Disposition::kOpenOrCreate), "X");
    EXPECT_EQ(readTestFile(path("f")), "Xbc");
}

TEST_P(FileSystemTest, CreateAlwaysEmptiesTheFile) {
    writeTestFile(path("f"), "abc");
    write(*openFile(path("f"), platform::kWrite, Disposition::kCreateAlways), "X");
    EXPECT_EQ(readTestFile(path("f")), "X");
}

TEST_P(FileSystemTest, CreateNewAndCreatePrivateRefuseAnExistingFile) {
    for (const Disposition disposition : {Disposition::kCreateNew, Disposition::kCreatePrivate}) {
        const std::string name = path(disposition == Disposition::kCreateNew ? "new" : "private");
        write(*openFile(name, platform::kRead | platform::kWrite, disposition), "first");
        EXPECT_EQ(openFile(name, platform::kWrite, disposition), nullptr);
        EXPECT_NE(status_, 0);
        EXPECT_EQ(readTestFile(name), "first");
    }
}

TEST_P(FileSystemTest, ADirectoryCannotBeOpened) {
    EXPECT_EQ(openFile(directory(), platform::kRead, Disposition::kOpenExisting), nullptr);
    EXPECT_NE(status_, 0);
}

TEST_P(FileSystemTest, ReadReturnsTheRestAndThenTheEnd) {
    writeTestFile(path("f"), "abcdef");
    const auto file = openFile(path("f"), platform::kRead, Disposition::kOpenExisting);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(read(*file, 4), "abcd");
    EXPECT_EQ(read(*file, 4), "ef");
    EXPECT_EQ(read(*file, 4), "");
}

TEST_P(FileSystemTest, KeepsBytesUnchanged) {
    const std::string bytes("\r\n\0\x1a\xff\n\r", 7);
    write(*openFile(path("f"), platform::kWrite, Disposition::kCreateAlways), bytes);
    EXPECT_EQ(readTestFile(path("f")), bytes);
    EXPECT_EQ(read(*openFile(path("f"), platform::kRead, Disposition::kOpenExisting), 100), bytes);
}

TEST_P(FileSystemTest, WriteToAFileOpenedForReadingFails) {
    writeTestFile(path("f"), "abc");
    const auto file = openFile(path("f"), platform::kRead, Disposition::kOpenExisting);
    ASSERT_NE(file, nullptr);
    std::uint32_t done = 77;
    EXPECT_NE(file->write("x", 1, done), 0);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(readTestFile(path("f")), "abc");
}

TEST_P(FileSystemTest, ReadFromAFileOpenedForWritingFails) {
    writeTestFile(path("f"), "abc");
    const auto file = openFile(path("f"), platform::kWrite, Disposition::kOpenExisting);
    ASSERT_NE(file, nullptr);
    char byte = 0;
    std::uint32_t done = 77;
    EXPECT_NE(file->read(&byte, 1, done), 0);
    EXPECT_EQ(done, 0U);
}

TEST_P(FileSystemTest, SeekMovesFromEachOrigin) {
    writeTestFile(path("f"), "abcdef");
    const auto file = openFile(path("f"), platform::kRead, Disposition::kOpenExisting);
    ASSERT_NE(file, nullptr);
    std::int64_t position = 0;
    EXPECT_EQ(file->seek(2, Origin::kStart, position), 0);
    EXPECT_EQ(position, 2);
    EXPECT_EQ(file->seek(1, Origin::kCurrent, position), 0);
    EXPECT_EQ(position, 3);
    EXPECT_EQ(read(*file, 1), "d");
    EXPECT_EQ(file->seek(-1, Origin::kEnd, position), 0);
    EXPECT_EQ(position, 5);
    EXPECT_EQ(read(*file, 9), "f");
    EXPECT_NE(file->seek(-1, Origin::kStart, position), 0);
}

TEST_P(FileSystemTest, PositionsBeyondFourGigabytesHold) {
    const auto file = openFile(path("f"), platform::kRead | platform::kWrite, Disposition::kCreateNew);
    ASSERT_NE(file, nullptr);
    constexpr std::int64_t kFar = (std::int64_t{5} << 30) + 3;
    std::int64_t position = 0;
    ASSERT_EQ(file->seek(kFar, Origin::kStart, position), 0);
    EXPECT_EQ(position, kFar);
    ASSERT_EQ(file->seek(0, Origin::kCurrent, position), 0);
    EXPECT_EQ(position, kFar);
}

TEST_P(FileSystemTest, TruncateHereCutsAtThePosition) {
    writeTestFile(path("f"), "abcdef");
    const auto file = openFile(path("f"), platform::kRead | platform::kWrite, Disposition::kOpenExisting);
    ASSERT_NE(file, nullptr);
    std::int64_t position = 0;
    ASSERT_EQ(file->seek(2, Origin::kStart, position), 0);
    EXPECT_EQ(file->truncateHere(), 0);
    EXPECT_EQ(file->size(), 2);
    EXPECT_EQ(file->flush(), 0);
    EXPECT_EQ(file->close(), 0);
    EXPECT_EQ(readTestFile(path("f")), "ab");
}

TEST_P(FileSystemTest, AClosedFileRefusesEverything) {
    const auto file = openFile(path("f"), platform::kRead | platform::kWrite, Disposition::kCreateNew);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->close(), 0);
    std::uint32_t done = 0;
    std::int64_t position = 0;
    EXPECT_NE(file->write("x", 1, done), 0);
    EXPECT_NE(file->seek(0, Origin::kStart, position), 0);
    EXPECT_NE(file->flush(), 0);
    EXPECT_EQ(file->size(), -1);
}

TEST_P(FileSystemTest, DistinguishesFilesFromDirectories) {
    writeTestFile(path("f"), "abc");
    EXPECT_TRUE(files_.exists(path("f").c_str()));
    EXPECT_FALSE(files_.isDirectory(path("f").c_str()));
    EXPECT_EQ(files_.fileSize(path("f").c_str()), 3);
    EXPECT_TRUE(files_.exists(directory().c_str()));
    EXPECT_TRUE(files_.isDirectory(directory().c_str()));
    EXPECT_EQ(files_.fileSize(directory().c_str()), -1);
    EXPECT_FALSE(files_.exists(path("none").c_str()));
    EXPECT_FALSE(files_.isDirectory(path("none").c_str()));
    EXPECT_EQ(files_.fileSize(path("none").c_str()), -1);
}

TEST_P(FileSystemTest, AnEmptyPathNamesNothing) {
    std::unique_ptr<File> file;
    EXPECT_NE(files_.open("", OpenOptions{}, file), 0);
    EXPECT_FALSE(files_.exists(""));
    EXPECT_NE(files_.removeFile(""), 0);
    EXPECT_NE(files_.createDirectory(""), 0);
}

TEST_P(FileSystemTest, TakesBothSeparators) {
    const std::string mixed = directory() + "\\sub/deeper\\";
    EXPECT_EQ(files_.createDirectory((directory() + "\\sub").c_str()), 0);
    EXPECT_EQ(files_.createDirectory((directory() + "\\sub/deeper").c_str()), 0);
    write(*openFile(mixed + "f", platform::kWrite, Disposition::kCreateNew), "abc");
    EXPECT_EQ(readTestFile(path("sub/deeper/f")), "abc");
}

TEST_P(FileSystemTest, NamesOutsideAsciiWork) {
    const std::string name =
        "Gr\xc3\xb6\xc3\x9f"
        "e \xe6\xbc\xa2 \xf0\x9f\x93\xa6";
    write(*openFile(path(name.c_str()), platform::kWrite, Disposition::kCreateNew), "abc");
    EXPECT_EQ(readTestFile(path(name.c_str())), "abc");
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(files_.list(directory().c_str(), entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, name);
}

TEST_P(FileSystemTest, RemoveFileTakesFilesOnly) {
    writeTestFile(path("f"), "abc");
    EXPECT_EQ(files_.removeFile(path("f").c_str()), 0);
    EXPECT_FALSE(testFileExists(path("f")));
    EXPECT_NE(files_.removeFile(path("f").c_str()), 0);
    EXPECT_NE(files_.removeFile(directory().c_str()), 0);
    EXPECT_TRUE(testFileExists(directory()));
}

TEST_P(FileSystemTest, MoveFileNeverReplaces) {
    writeTestFile(path("from"), "new");
    writeTestFile(path("to"), "old");
    EXPECT_NE(files_.moveFile(path("from").c_str(), path("to").c_str()), 0);
    EXPECT_EQ(readTestFile(path("from")), "new");
    EXPECT_EQ(readTestFile(path("to")), "old");
    EXPECT_EQ(files_.moveFile(path("from").c_str(), path("free").c_str()), 0);
    EXPECT_FALSE(testFileExists(path("from")));
    EXPECT_EQ(readTestFile(path("free")), "new");
    EXPECT_NE(files_.moveFile(path("none").c_str(), path("free2").c_str()), 0);
}

TEST_P(FileSystemTest, ReplaceFileTakesThePlace) {
    writeTestFile(path("from"), "new");
    writeTestFile(path("to"), "old");
    EXPECT_EQ(files_.replaceFile(path("from").c_str(), path("to").c_str()), 0);
    EXPECT_FALSE(testFileExists(path("from")));
    EXPECT_EQ(readTestFile(path("to")), "new");
    EXPECT_EQ(files_.replaceFile(path("to").c_str(), path("free").c_str()), 0);
    EXPECT_EQ(readTestFile(path("free")), "new");
}

TEST_P(FileSystemTest, CreateDirectoryMakesOneLevel) {
    EXPECT_NE(files_.createDirectory(path("a/b").c_str()), 0);
    EXPECT_EQ(files_.createDirectory(path("a").c_str()), 0);
    EXPECT_EQ(files_.createDirectory(path("a/b").c_str()), 0);
    EXPECT_NE(files_.createDirectory(path("a").c_str()), 0);
    EXPECT_TRUE(files_.isDirectory(path("a/b").c_str()));
}

TEST_P(FileSystemTest, RemoveDirectoryTakesEmptyOnesOnly) {
    ASSERT_EQ(files_.createDirectory(path("a").c_str()), 0);
    writeTestFile(path("a/f"), "abc");
    EXPECT_NE(files_.removeDirectory(path("a").c_str()), 0);
    EXPECT_EQ(readTestFile(path("a/f")), "abc");
    ASSERT_EQ(files_.removeFile(path("a/f").c_str()), 0);
    EXPECT_EQ(files_.removeDirectory(path("a").c_str()), 0);
    EXPECT_FALSE(testFileExists(path("a")));
    writeTestFile(path("f"), "abc");
    EXPECT_NE(files_.removeDirectory(path("f").c_str()), 0);
    EXPECT_TRUE(testFileExists(path("f")));
}

TEST_P(FileSystemTest, ListGivesEachEntryOnce) {
    writeTestFile(path("f"), "abc");
    ASSERT_EQ(files_.createDirectory(path("d").c_str()), 0);
    std::vector<platform::DirectoryEntry> entries{{"stale", false}};
    ASSERT_EQ(files_.list(directory().c_str(), entries), 0);
    std::vector<std::pair<std::string, bool>> found;
    for (const auto& entry : entries) {
        found.emplace_back(entry.name, entry.isDirectory);
    }
    EXPECT_THAT(found, testing::UnorderedElementsAre(std::pair("f", false), std::pair("d", true)));
}

TEST_P(FileSystemTest, ListOfAnEmptyDirectoryIsEmpty) {
    ASSERT_EQ(files_.createDirectory(path("d").c_str()), 0);
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(files_.list(path("d").c_str(), entries), 0);
    EXPECT_TRUE(entries.empty());
}

TEST_P(FileSystemTest, ListFailsForMissingDirectoriesAndFiles) {
    writeTestFile(path("f"), "abc");
    for (const char* name : {"none", "f"}) {
        std::vector<platform::DirectoryEntry> entries{{"stale", false}};
        EXPECT_NE(files_.list(path(name).c_str(), entries), 0) << name;
        EXPECT_TRUE(entries.empty()) << name;
    }
}

TEST_P(FileSystemTest, MakeExecutableNeedsAFile) {
    writeTestFile(path("f"), "abc");
    EXPECT_EQ(files_.makeExecutable(path("f").c_str()), 0);
    EXPECT_EQ(readTestFile(path("f")), "abc");
}

TEST_P(FileSystemTest, TemporaryDirectoryExistsAndHasNoSeparatorAtItsEnd) {
    std::string temporary;
    ASSERT_TRUE(files_.temporaryDirectory(temporary));
    ASSERT_FALSE(temporary.empty());
    EXPECT_TRUE(files_.isDirectory(temporary.c_str())) << temporary;
    EXPECT_NE(temporary.back(), '\\');
    EXPECT_NE(temporary.back(), '/');
}

TEST_P(FileSystemTest, TemporaryNamesAreInTheTemporaryDirectoryAndFree) {
    std::string temporary;
    ASSERT_TRUE(files_.temporaryDirectory(temporary));
    std::string first;
    std::string second;
    ASSERT_TRUE(files_.temporaryName("orinstall", 1, first));
    ASSERT_TRUE(files_.temporaryName("orinstall", 2, second));
    EXPECT_NE(first, second);
    EXPECT_EQ(first.compare(0, temporary.size(), temporary), 0) << first;
    EXPECT_FALSE(files_.exists(first.c_str()));
    ASSERT_NE(openFile(first, platform::kWrite, Disposition::kCreatePrivate), nullptr);
    EXPECT_EQ(files_.removeFile(first.c_str()), 0);
}

TEST_P(FileSystemTest, ResolvesPlainFilesOnly) {
    writeTestFile(path("f"), "abc");
    std::string resolved;
    ASSERT_EQ(files_.resolveFile(path("f").c_str(), resolved), 0);
    EXPECT_EQ(readTestFile(resolved), "abc");
    for (const std::string& other : {path("none"), path("none/f"), directory()}) {
        resolved = "stale";
        EXPECT_NE(files_.resolveFile(other.c_str(), resolved), 0) << other;
        EXPECT_EQ(resolved, "");
    }
}

TEST_P(FileSystemTest, FindsTheVolumeOfWhatIsNotThereYet) {
    platform::Volume here;
    platform::Volume below;
    ASSERT_EQ(files_.findVolume(directory(), here), 0);
    ASSERT_EQ(files_.findVolume(path("not/there\\yet"), below), 0);
    EXPECT_FALSE(here.name.empty());
    EXPECT_FALSE(here.key.empty());
    EXPECT_EQ(below.name, here.name);
    EXPECT_EQ(below.key, here.key);
    EXPECT_GT(here.free, 0);
    // Whoever asks for a file, by whatever spelling, asks for its volume.
    writeTestFile(path("f"), "content");
    ASSERT_EQ(files_.findVolume(path("f"), below), 0);
    EXPECT_EQ(below.key, here.key);
}

TEST_P(FileSystemTest, AnOpenFileTakesTheRightsOfAnother) {
    writeTestFile(path("from"), "a");
    const auto file = openFile(path("to"), platform::kWrite, Disposition::kCreatePrivate);
    ASSERT_NE(file, nullptr);
    write(*file, "b");
    EXPECT_EQ(file->takeRightsOf(path("from")), 0);
    EXPECT_NE(file->takeRightsOf(path("none")), 0);
    EXPECT_NE(file->takeRightsOf(directory()), 0);
    EXPECT_EQ(file->close(), 0);
    EXPECT_NE(file->takeRightsOf(path("from")), 0);
    EXPECT_EQ(readTestFile(path("to")), "b");
}

TEST_P(FileSystemTest, KnowsEqualRights) {
    writeTestFile(path("from"), "a");
    const auto file = openFile(path("to"), platform::kWrite, Disposition::kCreatePrivate);
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(file->takeRightsOf(path("from")), 0);
    ASSERT_EQ(file->close(), 0);
    const std::string rights = files_.rightsOf(path("from"));
    EXPECT_NE(rights, "");
    EXPECT_EQ(files_.rightsOf(path("to")), rights);
    EXPECT_EQ(files_.rightsOf(path("none")), "");
    EXPECT_EQ(files_.rightsOf(directory()), "");
}

TEST_P(FileSystemTest, AnOpenFileTakesEachKindOfRights) {
    for (const platform::FileRights rights :
         {platform::FileRights::kPlain, platform::FileRights::kProgram, platform::FileRights::kPrivate}) {
        const std::string name = "f" + std::to_string(static_cast<int>(rights));
        const auto file = openFile(path(name.c_str()), platform::kWrite, Disposition::kCreateNew);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->setRights(rights), 0);
        EXPECT_EQ(file->makeExecutable(), 0);
        write(*file, "a");
        EXPECT_EQ(file->close(), 0);
        EXPECT_NE(file->setRights(rights), 0);
        EXPECT_NE(file->makeExecutable(), 0);
        EXPECT_EQ(readTestFile(path(name.c_str())), "a");
    }
}

TEST_P(FileSystemTest, SaysWhatAPathNames) {
    using platform::PathKind;
    writeTestFile(path("f"), "abc");
    EXPECT_EQ(files_.kindOf(path("f")), PathKind::kFile);
    EXPECT_EQ(files_.kindOf(directory()), PathKind::kDirectory);
    EXPECT_EQ(files_.kindOf(path("none")), PathKind::kNothing);
    EXPECT_EQ(files_.kindOf(path("none/f")), PathKind::kNothing);
    EXPECT_EQ(files_.kindOf(path("f/below")), PathKind::kNothing);
}

class DirectoryTest : public FileSystemTest {
protected:
    DirectoryTest() {
        EXPECT_EQ(files_.createDirectory(path("d")), 0);
        EXPECT_EQ(files_.createDirectory(path("d/sub")), 0);
        writeTestFile(path("d/f"), "abc");
        EXPECT_EQ(files_.openDirectory(path("d"), opened_), 0);
    }

    std::unique_ptr<platform::Directory> opened_;
    std::unique_ptr<platform::Directory> below_;
};

TEST_P(DirectoryTest, ListsItsEntriesEachTime) {
    for (int time = 0; time < 2; ++time) {
        std::vector<platform::DirectoryEntry> entries{{"stale", false}};
        ASSERT_EQ(opened_->list(entries), 0);
        std::vector<std::pair<std::string, bool>> found;
        for (const auto& entry : entries) {
            found.emplace_back(entry.name, entry.isDirectory);
        }
        EXPECT_THAT(found, testing::UnorderedElementsAre(std::pair("f", false), std::pair("sub", true)));
    }
}

TEST_P(DirectoryTest, ListsManyEntries) {
    for (int i = 0; i < 700; ++i) {
        writeTestFile(path("d/sub") + "/" + std::string(100, 'n') + std::to_string(i), "");
    }
    ASSERT_EQ(opened_->openDirectory("sub", below_), 0);
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(below_->list(entries), 0);
    EXPECT_EQ(entries.size(), 700U);
}

TEST_P(DirectoryTest, ListsTheDiskWithKindsAndSizes) {
    using platform::PathKind;
    for (int time = 0; time < 2; ++time) {
        std::vector<platform::DiskEntry> entries(1);
        ASSERT_EQ(opened_->listDisk(entries), 0);
        std::vector<std::tuple<std::string, PathKind, std::int64_t, bool>> found;
        for (const auto& entry : entries) {
            EXPECT_FALSE(entry.isProgram);
            found.emplace_back(entry.name, entry.kind, entry.size, entry.isNameable);
        }
        EXPECT_THAT(found, testing::UnorderedElementsAre(std::tuple("f", PathKind::kFile, 3, true),
                                                         std::tuple("sub", PathKind::kDirectory, -1, true)));
    }
}

TEST_P(DirectoryTest, RemovesFilesAndEmptyDirectories) {
    ASSERT_EQ(opened_->openDirectory("sub", below_), 0);
    writeTestFile(path("d/sub/g"), "abc");
    EXPECT_NE(opened_->removeDirectory("sub"), 0);
    EXPECT_NE(opened_->removeFile("sub"), 0);
    EXPECT_NE(opened_->removeDirectory("f"), 0);
    EXPECT_EQ(below_->removeFile("g"), 0);
    EXPECT_NE(below_->removeFile("g"), 0);
    below_.reset();
    EXPECT_EQ(opened_->removeDirectory("sub"), 0);
    EXPECT_EQ(opened_->removeFile("f"), 0);
    EXPECT_FALSE(testFileExists(path("d/sub")));
    EXPECT_FALSE(testFileExists(path("d/f")));
}

TEST_P(DirectoryTest, RefusesNamesThatLeadElsewhere) {
    writeTestFile(path("victim"), "precious");
    ASSERT_EQ(files_.createDirectory(path("empty")), 0);
    for (const char* name : {"../victim", "..\\victim", "sub/../f", ".", "..", "", "/"}) {
        EXPECT_NE(opened_->removeFile(name), 0) << name;
        EXPECT_NE(opened_->removeDirectory(name), 0) << name;
        EXPECT_NE(opened_->openDirectory(name, below_), 0) << name;
        EXPECT_EQ(below_, nullptr);
    }
    EXPECT_NE(opened_->removeDirectory("../empty"), 0);
    EXPECT_NE(opened_->removeFile(std::string_view("f\0x", 3)), 0);
    EXPECT_TRUE(testFileExists(path("victim")));
    EXPECT_TRUE(testFileExists(path("empty")));
    EXPECT_TRUE(testFileExists(path("d/f")));
}

TEST_P(DirectoryTest, OpensDirectoriesOnly) {
    EXPECT_NE(files_.openDirectory(path("d/f"), below_), 0);
    EXPECT_NE(files_.openDirectory(path("none"), below_), 0);
    EXPECT_NE(files_.openDirectory("", below_), 0);
    EXPECT_NE(opened_->openDirectory("f", below_), 0);
    EXPECT_NE(opened_->openDirectory("none", below_), 0);
    EXPECT_EQ(files_.openDirectory(path("d") + "/", below_), 0);
}

TEST_P(DirectoryTest, OpensAFileToReadAndNothingElse) {
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(opened_->openFile("f", file), 0);
    char text[8] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(file->read(text, 8, done), 0);
    EXPECT_EQ(std::string(text, done), "abc");
    for (const char* const name : {"sub", "none", "", "..", "sub/../f"}) {
        EXPECT_NE(opened_->openFile(name, file), 0) << name;
        EXPECT_EQ(file, nullptr);
    }
}

TEST_P(DirectoryTest, TakesFilesAndEmptyDirectoriesAway) {
    EXPECT_EQ(opened_->takeFileAway("f", path("taken")), 0);
    EXPECT_EQ(readTestFile(path("taken")), "abc");
    EXPECT_FALSE(testFileExists(path("d/f")));
    EXPECT_EQ(opened_->takeDirectoryAway("sub", path("takenDirectory")), 0);
    EXPECT_TRUE(files_.isDirectory(path("takenDirectory")));
    EXPECT_FALSE(testFileExists(path("d/sub")));
}

// With the open directory and by the path.
TEST_P(DirectoryTest, TakesNothingAwayThatCouldNotBeRemovedOrHasNoPlace) {
    writeTestFile(path("d/sub/g"), "x");
    writeTestFile(path("present"), "precious");
    for (const char* const name : {"sub", "none", "", ".."}) {
        EXPECT_NE(opened_->takeFileAway(name, path("taken")), 0) << name;
        EXPECT_NE(files_.takeFileAway(path("d/") + name, path("taken")), 0) << name;
    }
    for (const char* const name : {"sub", "f", "none", "", ".."}) {
        EXPECT_NE(opened_->takeDirectoryAway(name, path("taken")), 0) << name;
        EXPECT_NE(files_.takeDirectoryAway(path("d/") + name, path("taken")), 0) << name;
    }
    EXPECT_NE(opened_->takeFileAway("f", path("present")), 0);
    EXPECT_NE(files_.takeFileAway(path("d/f"), path("present")), 0);
    EXPECT_NE(files_.takeFileAway(path("d/f"), path("none/taken")), 0);
    EXPECT_FALSE(testFileExists(path("taken")));
    EXPECT_EQ(readTestFile(path("present")), "precious");
    EXPECT_TRUE(testFileExists(path("d/f")));
    EXPECT_TRUE(testFileExists(path("d/sub/g")));
}

TEST_P(DirectoryTest, TakesAwayByPathAsWell) {
    EXPECT_EQ(files_.takeFileAway(path("d/f"), path("taken")), 0);
    EXPECT_EQ(readTestFile(path("taken")), "abc");
    EXPECT_EQ(files_.takeDirectoryAway(path("d/sub"), path("takenDirectory")), 0);
    EXPECT_EQ(files_.takeDirectoryAway(path("takenDirectory"), path("d/sub")), 0);
    EXPECT_TRUE(files_.isDirectory(path("d/sub")));
}

std::string nameOf(const testing::TestParamInfo<MachineOfFiles (*)()>& info) {
    const char* const names[] = {"System", "OverlayOfTheSystem", "OverlayOfAMachineInMemory",
                                 "OverlayOfASystemThatItEmptied", "OverlayOfAMemoryThatItEmptied"};
    return names[info.index];
}

const auto kMachines = testing::Values(systemMachine, overlayOfSystem, overlayOfMemory,
                                       overlayOfEmptiedSystem, overlayOfEmptiedMemory);
INSTANTIATE_TEST_SUITE_P(Machines, FileSystemTest, kMachines, nameOf);
INSTANTIATE_TEST_SUITE_P(Machines, DirectoryTest, kMachines, nameOf);

}  // namespace
