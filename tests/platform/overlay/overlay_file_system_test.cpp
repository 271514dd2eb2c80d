#include "platform/overlay/overlay_file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "fakes/temporary_directory.h"
#include "platform/machine_of_files.h"
#include "platform/memory/memory_change_rules.h"
#include "platform/written_path.h"

namespace {

using platform::FileChange;
using platform::PathKind;
using What = platform::FileChange::What;

std::string textOf(const FileChange& change) {
    const char* const words[] = {"created", "changed", "replaced", "moved", "deleted"};
    return std::string(words[static_cast<int>(change.what)]) + " " + change.path +
           (change.from.empty() ? "" : " from " + change.from) +
           (change.kind == PathKind::kDirectory ? " (directory)" : "") +
           (change.size >= 0 ? " " + std::to_string(change.size) : "");
}

class OverlayOfMemoryTest : public testing::Test {
protected:
    std::vector<std::string> changes() const {
        std::vector<std::string> texts;
        for (const FileChange& change : overlay_.changes()) {
            texts.push_back(textOf(change));
        }
        return texts;
    }

    MemoryFileSystem base_;
    MemoryChangeRules rules_{base_};
    OverlayFileSystem overlay_{base_, rules_, 1000};
};

TEST_F(OverlayOfMemoryTest, TellsWhatBecameOfEachPath) {
    base_.addFile("/a/kept", "1");
    base_.addFile("/a/changed", "1");
    base_.addFile("/a/replaced", "1");
    base_.addFile("/a/moved", "1");
    base_.addFile("/a/deleted", "1");
    base_.addFile("/a/marked", "1");
    writeFile(overlay_, "/a/changed", "12");
    writeFile(overlay_, "/a/new", "123");
    EXPECT_EQ(overlay_.replaceFile("/a/new", "/a/replaced"), 0);
    EXPECT_EQ(overlay_.moveFile("/a/moved", "/a/place"), 0);
    EXPECT_EQ(overlay_.removeFile("/a/deleted"), 0);
    EXPECT_EQ(overlay_.makeExecutable("/a/marked"), 0);
    EXPECT_EQ(overlay_.createDirectory("/a/made"), 0);
    writeFile(overlay_, "/a/made/file", "1234");
    writeFile(overlay_, "/a/fleeting", "");
    EXPECT_EQ(overlay_.removeFile("/a/fleeting"), 0);
    EXPECT_THAT(changes(), testing::ElementsAre("changed /a/changed 2", "deleted /a/deleted",
                                                "created /a/made (directory)", "created /a/made/file 4",
                                                "changed /a/marked 1", "moved /a/place from /a/moved 1",
                                                "replaced /a/replaced 3"));
    const std::vector<FileChange> all = overlay_.changes();
    EXPECT_TRUE(all[0].hasNewContent);
    EXPECT_FALSE(all[0].hasNewRights);
    EXPECT_TRUE(all[4].hasNewRights);
    EXPECT_FALSE(all[4].hasNewContent);
}

TEST_F(OverlayOfMemoryTest, WhatIsPutBackIsNoChange) {
    base_.addFile("/a/f", "1");
    EXPECT_EQ(overlay_.takeFileAway("/a/f", "/kept"), 0);
    EXPECT_EQ(overlay_.removeDirectory("/a"), 0);
    EXPECT_THAT(changes(), testing::ElementsAre("deleted /a (directory)", "moved /kept from /a/f 1"));
    EXPECT_EQ(overlay_.createDirectory("/a"), 0);
    EXPECT_EQ(overlay_.moveFile("/kept", "/a/f"), 0);
    EXPECT_EQ(readFile(overlay_, "/a/f"), "1");
    EXPECT_EQ(overlay_.removeFile("/a/f"), 0);
    EXPECT_THAT(changes(), testing::ElementsAre("replaced /a (directory)", "deleted /a/f"));
}

TEST_F(OverlayOfMemoryTest, SpaceIsTakenAndGivenBack) {
    base_.reportFreeSpace("/a", 2000);
    const auto freeSpace = [&] {
        platform::Volume volume;
        EXPECT_EQ(overlay_.findVolume("/a/not/there", volume), 0);
        return volume.free;
    };
    base_.addFile("/a/f", std::string(100, 'x'));
    writeFile(overlay_, "/a/g", std::string(300, 'x'));
    EXPECT_EQ(freeSpace(), 1700);
    writeFile(overlay_, "/a/f", std::string(150, 'x'));
    EXPECT_EQ(freeSpace(), 1650);
    EXPECT_EQ(overlay_.removeFile("/a/g"), 0);
    EXPECT_EQ(freeSpace(), 1950);
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateNew;
    ASSERT_EQ(overlay_.open("/a/h", options, file), 0);
    const std::string much(3000, 'x');
    std::uint32_t done = 0;
    EXPECT_EQ(file->write(much.data(), 3000, done), MemoryFileSystem::kDiskFull);
    EXPECT_EQ(done, 1950U);
    EXPECT_EQ(freeSpace(), 0);
}

TEST_F(OverlayOfMemoryTest, ReadingWhatWasTooLargeToKeepFailsAndIsCounted) {
    writeFile(overlay_, "/small", "abc");
    writeFile(overlay_, "/large", std::string(5000, 'x'));
    EXPECT_EQ(overlay_.fileSize("/large"), 5000);
    EXPECT_EQ(readFile(overlay_, "/small"), "abc");
    EXPECT_EQ(overlay_.forgottenReads(), 0);
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(overlay_.open("/large", {}, file), 0);
    char byte = 0;
    std::uint32_t done = 7;
    EXPECT_EQ(file->read(&byte, 1, done), rules_.statusOf(platform::Refusal::kNotKept));
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(overlay_.forgottenReads(), 1);
}

TEST_F(OverlayOfMemoryTest, RefusesWhatTheBaseWouldRefuse) {
    base_.addFile("/ro/f", "1");
    base_.setReadOnly("/ro", 30);
    EXPECT_EQ(overlay_.wouldRefuseWriting("/ro/f"), 30);
    EXPECT_EQ(overlay_.wouldRefuseWriting("/ro/new"), 30);
    EXPECT_EQ(overlay_.wouldRefuseWriting("/new"), 0);
    EXPECT_EQ(overlay_.removeFile("/ro/f"), 30);
    EXPECT_EQ(overlay_.createDirectory("/ro/d"), 30);
    EXPECT_TRUE(overlay_.changes().empty());
    EXPECT_TRUE(base_.count(MemoryFileSystem::Operation::kRemoveFile) == 0);
}

TEST_F(OverlayOfMemoryTest, MakesLinksAndFilesOfUnknownContent) {
    base_.addFile("/f", "1");
    EXPECT_EQ(overlay_.putLink("/link", "/f"), 0);
    EXPECT_EQ(overlay_.kindOf("/link"), PathKind::kLink);
    EXPECT_EQ(readFile(overlay_, "/link"), "1");
    EXPECT_EQ(overlay_.putUnknownFile("/link"), 0);
    EXPECT_EQ(overlay_.kindOf("/link"), PathKind::kFile);
    EXPECT_NE(overlay_.putUnknownFile("/none/f"), 0);
    EXPECT_NE(overlay_.putUnknownFile("/"), 0);
    EXPECT_EQ(readFile(overlay_, "/f"), "1");
}

// A directory with the same content for the system and for an overlay.
class OverlayOfSystemTest : public testing::Test {
protected:
    OverlayOfSystemTest() {
        for (const std::string& directory : {plain_.path(), overlaid_.path()}) {
            for (const char* const name : {"/d", "/d/sub", "/empty"}) {
                EXPECT_EQ(system_.createDirectory(directory + name), 0);
            }
            for (const char* const name : {"/f", "/g", "/d/f", "/d/sub/f"}) {
                writeTestFile(directory + name, std::string("content of ") + name);
            }
        }
    }

    using Times = std::map<std::string, std::filesystem::file_time_type>;
    static Times timesOf(const std::string& directory) {
        Times times;
        const std::filesystem::path top(directory);
        times[""] = std::filesystem::last_write_time(top);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
            times[entry.path().lexically_relative(top).string()] = entry.last_write_time();
        }
        return times;
    }

    platform::FileSystem& system_ = platform::systemFileSystem();
    TemporaryDirectory plain_;
    TemporaryDirectory overlaid_;
    OverlayFileSystem overlay_{system_, platform::systemChangeRules()};
};

TEST_F(OverlayOfSystemTest, LeavesTheDiskAndItsTimesAsTheyWere) {
    const Times before = timesOf(overlaid_.path());
    const std::string top = overlaid_.path();
    writeFile(overlay_, top + "/f", "new");
    writeFile(overlay_, top + "/d/new", "new");
    EXPECT_EQ(overlay_.makeExecutable(top + "/g"), 0);
    EXPECT_EQ(overlay_.replaceFile(top + "/d/f", top + "/g"), 0);
    EXPECT_EQ(overlay_.moveFile(top + "/d", top + "/moved"), 0);
    EXPECT_EQ(overlay_.removeFile(top + "/moved/sub/f"), 0);
    EXPECT_EQ(overlay_.removeDirectory(top + "/moved/sub"), 0);
    EXPECT_EQ(readFile(overlay_, top + "/moved/new"), "new");
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = platform::kRead | platform::kWrite;
    ASSERT_EQ(overlay_.open(top + "/g", options, file), 0);
    std::int64_t position = 0;
    EXPECT_EQ(file->seek(0, platform::Origin::kEnd, position), 0);
    std::uint32_t done = 0;
    EXPECT_EQ(file->write(" and more", 9, done), 0);
    EXPECT_EQ(file->flush(), 0);
    EXPECT_EQ(file->close(), 0);
    EXPECT_EQ(readFile(overlay_, top + "/g"), "content of /d/f and more");
    removeContent(overlay_, top);
    EXPECT_EQ(overlay_.removeDirectory(top), 0);
    EXPECT_FALSE(overlay_.exists(top));
    EXPECT_EQ(timesOf(top), before);
    EXPECT_EQ(readTestFile(top + "/f"), "content of /f");
    EXPECT_EQ(readTestFile(top + "/g"), "content of /g");
}

TEST_F(OverlayOfSystemTest, MovesWholeDirectoriesOfTheBase) {
    const std::string top = overlaid_.path();
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(overlay_.openDirectory(top + "/d/sub", opened), 0);
    writeFile(overlay_, top + "/d/sub/new", "new");
    EXPECT_EQ(overlay_.moveFile(top + "/d", top + "/empty/d2"), 0);
    EXPECT_EQ(overlay_.kindOf(top + "/d"), PathKind::kNothing);
    EXPECT_EQ(readFile(overlay_, top + "/empty/d2/sub/f"), "content of /d/sub/f");
    EXPECT_EQ(readFile(overlay_, top + "/empty/d2/sub/new"), "new");
    EXPECT_EQ(opened->removeFile("f"), 0);
    EXPECT_EQ(overlay_.kindOf(top + "/empty/d2/sub/f"), PathKind::kNothing);
    EXPECT_NE(overlay_.moveFile(top + "/empty", top + "/empty/d2/below"), 0);
    EXPECT_EQ(overlay_.createDirectory(top + "/d"), 0);
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(overlay_.list(top + "/d", entries), 0);
    EXPECT_TRUE(entries.empty());
    EXPECT_TRUE(testFileExists(top + "/d/sub/f"));
    std::vector<std::string> changed;
    for (const FileChange& change : overlay_.changes()) {
        const char* const words[] = {"created", "changed", "replaced", "moved", "deleted"};
        changed.push_back(words[static_cast<int>(change.what)] + (" " + change.path.substr(top.size())));
    }
    EXPECT_THAT(changed,
                testing::UnorderedElementsAre(platform::writtenPath("replaced \\d"),
                                              platform::writtenPath("deleted \\d\\sub\\f"),
                                              platform::writtenPath("moved \\empty\\d2"),
                                              platform::writtenPath("created \\empty\\d2\\sub\\new")));
}

// The numbers come from a table here and from the system there.
TEST_F(OverlayOfSystemTest, RefusesWithTheNumbersOfTheSystem) {
    using Call = int (*)(platform::FileSystem&, const std::string&);
    const std::pair<const char*, Call> calls[] = {
        {"open nothing",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             return files.open(top + "/none", {}, file);
         }},
        {"open below nothing",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             return files.open(top + "/none/f", {}, file);
         }},
        {"open below a file",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             return files.open(top + "/f/below", {}, file);
         }},
        {"open a directory",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             return files.open(top + "/d", {}, file);
         }},
        {"create a file that is there",
         [](platform::FileSystem& files, const std::string& top) {
             platform::OpenOptions options;
             options.access = platform::kWrite;
             options.disposition = platform::Disposition::kCreateNew;
             std::unique_ptr<platform::File> file;
             return files.open(top + "/f", options, file);
         }},
        {"remove nothing",
         [](platform::FileSystem& files, const std::string& top) { return files.removeFile(top + "/none"); }},
        {"remove a directory as a file",
         [](platform::FileSystem& files, const std::string& top) { return files.removeFile(top + "/empty"); }},
        {"remove no directory",
         [](platform::FileSystem& files, const std::string& top) {
             return files.removeDirectory(top + "/none");
         }},
        {"remove a file as a directory",
         [](platform::FileSystem& files, const std::string& top) { return files.removeDirectory(top + "/f"); }},
        {"remove a full directory",
         [](platform::FileSystem& files, const std::string& top) { return files.removeDirectory(top + "/d"); }},
        {"make a directory that is there",
         [](platform::FileSystem& files, const std::string& top) { return files.createDirectory(top + "/d"); }},
        {"make a directory below nothing",
         [](platform::FileSystem& files, const std::string& top) {
             return files.createDirectory(top + "/none/d");
         }},
        {"move nothing",
         [](platform::FileSystem& files, const std::string& top) {
             return files.moveFile(top + "/none", top + "/free");
         }},
        {"move over a file",
         [](platform::FileSystem& files, const std::string& top) {
             return files.moveFile(top + "/f", top + "/g");
         }},
        {"move to nowhere",
         [](platform::FileSystem& files, const std::string& top) {
             return files.moveFile(top + "/f", top + "/none/f");
         }},
        {"replace a directory",
         [](platform::FileSystem& files, const std::string& top) {
             return files.replaceFile(top + "/f", top + "/empty");
         }},
        {"take a full directory away",
         [](platform::FileSystem& files, const std::string& top) {
             return files.takeDirectoryAway(top + "/d", top + "/free");
         }},
        {"list nothing",
         [](platform::FileSystem& files, const std::string& top) {
             std::vector<platform::DirectoryEntry> entries;
             return files.list(top + "/none", entries);
         }},
        {"list a file",
         [](platform::FileSystem& files, const std::string& top) {
             std::vector<platform::DirectoryEntry> entries;
             return files.list(top + "/f", entries);
         }},
        {"open no directory",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::Directory> opened;
             return files.openDirectory(top + "/f", opened);
         }},
        {"resolve a directory",
         [](platform::FileSystem& files, const std::string& top) {
             std::string resolved;
             return files.resolveFile(top + "/d", resolved);
         }},
        {"the text of a file",
         [](platform::FileSystem& files, const std::string& top) {
             std::string target;
             return files.linkTarget(top + "/f", target);
         }},
        {"mark nothing as a program",
         [](platform::FileSystem& files, const std::string& top) {
             return files.makeExecutable(top + "/none");
         }},
        {"write what is open to read",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             EXPECT_EQ(files.open(top + "/f", {}, file), 0);
             std::uint32_t done = 0;
             return file->write("x", 1, done);
         }},
        {"seek before the start",
         [](platform::FileSystem& files, const std::string& top) {
             std::unique_ptr<platform::File> file;
             EXPECT_EQ(files.open(top + "/f", {}, file), 0);
             std::int64_t position = 0;
             return file->seek(-1, platform::Origin::kStart, position);
         }},
    };
    for (const auto& [name, call] : calls) {
        const int expected = call(system_, plain_.path());
        EXPECT_NE(expected, 0) << name;
        EXPECT_EQ(call(overlay_, overlaid_.path()), expected) << name;
    }
    EXPECT_TRUE(overlay_.changes().empty());
}

}  // namespace
