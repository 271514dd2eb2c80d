#include "platform/file_system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "fakes/temporary_directory.h"
#include "platform/environment.h"
#include "platform/posix/posix_file.h"

namespace {

using platform::Disposition;
using platform::File;
using platform::OpenOptions;

class PosixFileSystemTest : public testing::Test {
protected:
    std::string path(const char* name) const { return directory_.file(name); }

    int create(const std::string& path, Disposition disposition) {
        OpenOptions options;
        options.access = platform::kWrite;
        options.disposition = disposition;
        std::unique_ptr<File> file;
        return files_.open(path.c_str(), options, file);
    }

    std::unique_ptr<File> openNew(const char* name) {
        OpenOptions options;
        options.access = platform::kWrite;
        options.disposition = Disposition::kCreatePrivate;
        std::unique_ptr<File> file;
        EXPECT_EQ(files_.open(path(name), options, file), 0);
        return file;
    }

    static mode_t modeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory_;
    platform::FileSystem& files_ = platform::systemFileSystem();
};

TEST_F(PosixFileSystemTest, NewFilesAreNeverMadeThroughALink) {
    ASSERT_EQ(symlink(path("target").c_str(), path("link").c_str()), 0);
    EXPECT_EQ(create(path("link"), Disposition::kCreateNew), EEXIST);
    EXPECT_EQ(create(path("link"), Disposition::kCreatePrivate), EEXIST);
    EXPECT_FALSE(testFileExists(path("target")));
}

TEST_F(PosixFileSystemTest, ReadsTheTextOfALink) {
    ASSERT_EQ(symlink("../no//such", path("link").c_str()), 0);
    writeTestFile(path("f"), "abc");
    std::string target = "stale";
    EXPECT_EQ(files_.linkTarget(path("link"), target), 0);
    EXPECT_EQ(target, "../no//such");
    EXPECT_EQ(files_.linkTarget(path("f"), target), EINVAL);
    EXPECT_EQ(target, "");
    EXPECT_EQ(files_.linkTarget(path("none"), target), ENOENT);
}

TEST_F(PosixFileSystemTest, ListsTheDiskAsItIs) {
    using platform::DiskEntry;
    using platform::PathKind;
    ASSERT_EQ(symlink(".", path("link").c_str()), 0);
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    writeTestFile(path("program"), "abcd");
    ASSERT_EQ(chmod(path("program").c_str(), 0700), 0);
    writeTestFile(path("group"), "");
    ASSERT_EQ(chmod(path("group").c_str(), 0654), 0);
    writeTestFile(path("b\\ack"), "a");
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(files_.openDirectory(directory_.path(), opened), 0);
    std::vector<DiskEntry> entries;
    ASSERT_EQ(opened->listDisk(entries), 0);
    std::sort(entries.begin(), entries.end(),
              [](const DiskEntry& a, const DiskEntry& b) { return a.name < b.name; });
    std::string found;
    for (const DiskEntry& entry : entries) {
        found += entry.name + " " + std::to_string(static_cast<int>(entry.kind)) + " " +
                 std::to_string(entry.size) + (entry.isProgram ? " program" : "") +
                 (entry.isNameable ? "" : " unnameable") + "\n";
    }
    EXPECT_EQ(found, "b\\ack 1 1 unnameable\ngroup 1 0\nlink 3 -1\npipe 4 -1\nprogram 1 4 program\n");
}

TEST_F(PosixFileSystemTest, PrivateFilesAreTheUsersAlone) {
    ASSERT_EQ(create(path("f"), Disposition::kCreatePrivate), 0);
    EXPECT_EQ(modeOf(path("f")), 0600U);
}

TEST_F(PosixFileSystemTest, APipeInAFilesPlaceIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::unique_ptr<File> file;
    EXPECT_EQ(files_.open(path("pipe").c_str(), {}, file), ENXIO);
    EXPECT_EQ(create(path("pipe"), Disposition::kCreateAlways), ENXIO);
}

TEST_F(PosixFileSystemTest, MakeExecutableFollowsTheReadBits) {
    writeTestFile(path("f"), "");
    for (const auto& [before, after] : {std::pair{0600, 0700}, {0640, 0750}, {0644, 0755}, {0400, 0500}}) {
        ASSERT_EQ(chmod(path("f").c_str(), static_cast<mode_t>(before)), 0);
        EXPECT_EQ(files_.makeExecutable(path("f").c_str()), 0);
        EXPECT_EQ(modeOf(path("f")), static_cast<mode_t>(after));
    }
    EXPECT_EQ(files_.makeExecutable(path("none").c_str()), ENOENT);
}

TEST_F(PosixFileSystemTest, IgnoresADrive) {
    ASSERT_EQ(create("C:" + path("f"), Disposition::kCreateNew), 0);
    EXPECT_TRUE(testFileExists(path("f")));
}

TEST_F(PosixFileSystemTest, LinksToDirectoriesAreListedAsNone) {
    ASSERT_EQ(symlink("/", path("link").c_str()), 0);
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(files_.list(directory_.path().c_str(), entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_FALSE(entries[0].isDirectory);
    EXPECT_EQ(files_.removeFile(path("link").c_str()), 0);
    EXPECT_TRUE(files_.isDirectory("/"));
}

TEST_F(PosixFileSystemTest, ALinkWithoutATargetExists) {
    ASSERT_EQ(symlink("nowhere", path("link").c_str()), 0);
    EXPECT_TRUE(files_.exists(path("link").c_str()));
    EXPECT_EQ(files_.fileSize(path("link").c_str()), -1);
}

TEST_F(PosixFileSystemTest, AFullDiskFailsTheWrite) {
    OpenOptions options;
    options.access = platform::kWrite;
    std::unique_ptr<File> file;
    ASSERT_EQ(files_.open("/dev/full", options, file), 0);
    std::uint32_t done = 77;
    EXPECT_EQ(file->write("x", 1, done), ENOSPC);
    EXPECT_EQ(done, 0U);
}

TEST_F(PosixFileSystemTest, ReadFillsTheBufferFromWhatArrivesInPieces) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    platform::PosixFile file(ends[0]);
    ASSERT_EQ(write(ends[1], "abc", 3), 3);
    ASSERT_EQ(write(ends[1], "def", 3), 3);
    char text[6] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(file.read(text, sizeof text, done), 0);
    EXPECT_EQ(std::string(text, done), "abcdef");
    close(ends[1]);
}

TEST_F(PosixFileSystemTest, TemporaryNamesFollowTheEnvironment) {
    platform::Environment& environment = platform::systemEnvironment();
    const std::optional<std::string> before = environment.get("TMPDIR");
    ASSERT_TRUE(environment.set("TMPDIR", (directory_.path() + "//").c_str()));
    std::string name;
    std::string again;
    EXPECT_TRUE(files_.temporaryName("pre", 26, name));
    EXPECT_TRUE(files_.temporaryName("pre", 26, again));
    EXPECT_FALSE(files_.temporaryName("pre", 0, name));
    ASSERT_TRUE(environment.set("TMPDIR", ""));
    std::string standard;
    EXPECT_TRUE(files_.temporaryDirectory(standard));
    ASSERT_EQ(before ? setenv("TMPDIR", before->c_str(), 1) : unsetenv("TMPDIR"), 0);
    EXPECT_EQ(standard, "/tmp");
    EXPECT_EQ(name.find(directory_.path() + "/pre1a-"), 0U) << name;
    EXPECT_NE(name, again);
}

TEST_F(PosixFileSystemTest, DescriptorsAreNotInherited) {
    writeTestFile(path("f"), "");
    std::unique_ptr<File> file;
    ASSERT_EQ(files_.open(path("f").c_str(), OpenOptions{}, file), 0);
    // The lowest free number less one is the file's, or lies below it.
    const int next = dup(STDERR_FILENO);
    for (int number = STDERR_FILENO + 1; number < next; ++number) {
        struct stat opened {};
        struct stat wanted {};
        ASSERT_EQ(stat(path("f").c_str(), &wanted), 0);
        if (fstat(number, &opened) == 0 && opened.st_ino == wanted.st_ino && opened.st_dev == wanted.st_dev) {
            EXPECT_NE(fcntl(number, F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    close(next);
}

TEST_F(PosixFileSystemTest, KnowsTheDirectoriesOfTheSystem) {
    for (const char* system : {"/", "/opt", "/opt/", "\\usr\\local", "C:/tmp", "/usr/local/bin"}) {
        EXPECT_FALSE(files_.isOrdinaryDirectory(system)) << system;
    }
    EXPECT_TRUE(files_.isOrdinaryDirectory(directory_.path().c_str()));
    EXPECT_FALSE(files_.isOrdinaryDirectory(path("none").c_str()));
    ASSERT_EQ(create(path("file"), Disposition::kCreateNew), 0);
    EXPECT_FALSE(files_.isOrdinaryDirectory(path("file").c_str()));
    ASSERT_EQ(symlink(directory_.path().c_str(), path("link").c_str()), 0);
    EXPECT_FALSE(files_.isOrdinaryDirectory(path("link").c_str()));
}

TEST_F(PosixFileSystemTest, RemovesLinksButNoDevices) {
    ASSERT_EQ(create(path("file"), Disposition::kCreateNew), 0);
    ASSERT_EQ(symlink(path("file").c_str(), path("link").c_str()), 0);
    EXPECT_EQ(files_.removeFile(path("link").c_str()), 0);
    EXPECT_TRUE(files_.exists(path("file").c_str()));
    if (mknod(path("device").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
        GTEST_SKIP() << "this user can't make devices";
    }
    EXPECT_EQ(files_.removeFile(path("device").c_str()), EPERM);
    EXPECT_TRUE(files_.exists(path("device").c_str()));
    EXPECT_EQ(unlink(path("device").c_str()), 0);
}

TEST_F(PosixFileSystemTest, ResolvesLinksToPlainFiles) {
    writeTestFile(path("f"), "abc");
    ASSERT_EQ(symlink("f", path("link").c_str()), 0);
    ASSERT_EQ(symlink("none", path("dangling").c_str()), 0);
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::string resolved;
    ASSERT_EQ(files_.resolveFile(path("link").c_str(), resolved), 0);
    EXPECT_EQ(resolved.substr(resolved.rfind('/')), "/f");
    EXPECT_EQ(files_.resolveFile(path("dangling").c_str(), resolved), ENOENT);
    EXPECT_EQ(files_.resolveFile(path("pipe").c_str(), resolved), ENXIO);
    EXPECT_EQ(files_.resolveFile("/dev/null", resolved), ENXIO);
    EXPECT_EQ(resolved, "");
}

// The mask of the process, put back at the end.
class Umask {
public:
    explicit Umask(mode_t mask) : before_(umask(mask)) {}
    ~Umask() { umask(before_); }

private:
    mode_t before_;
};

TEST_F(PosixFileSystemTest, AnOpenFileTakesModeAndOwner) {
    writeTestFile(path("from"), "a");
    const bool isRoot = geteuid() == 0;
    ASSERT_EQ(isRoot ? chown(path("from").c_str(), 12345, 23456) : 0, 0);
    for (const mode_t mode : {0600, 0644, 0750, 04755}) {
        ASSERT_EQ(chmod(path("from").c_str(), mode), 0);
        std::unique_ptr<File> file = openNew("to");
        EXPECT_EQ(file->takeRightsOf(path("from")), 0);
        struct stat status {};
        ASSERT_EQ(stat(path("to").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, mode);
        EXPECT_EQ(status.st_uid, isRoot ? 12345 : geteuid());
        EXPECT_EQ(files_.rightsOf(path("to")), files_.rightsOf(path("from")));
        EXPECT_EQ(unlink(path("to").c_str()), 0);
    }
}

TEST_F(PosixFileSystemTest, AnOpenFileTakesNoRightsThroughALinkOrFromADevice) {
    writeTestFile(path("victim"), "a");
    ASSERT_EQ(symlink("victim", path("link").c_str()), 0);
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0666), 0);
    std::unique_ptr<File> file = openNew("to");
    EXPECT_EQ(file->takeRightsOf(path("link")), ELOOP);
    EXPECT_EQ(file->takeRightsOf(path("pipe")), ENXIO);
    EXPECT_EQ(file->takeRightsOf("/dev/null"), ENXIO);
    EXPECT_EQ(modeOf(path("to")), 0600U);
}

TEST_F(PosixFileSystemTest, EachDifferenceOfTheRightsCounts) {
    writeTestFile(path("a"), "");
    ASSERT_EQ(chmod(path("a").c_str(), 0644), 0);
    std::set<std::string> seen{files_.rightsOf(path("a"))};
    ASSERT_EQ(chmod(path("a").c_str(), 0645), 0);
    EXPECT_TRUE(seen.insert(files_.rightsOf(path("a"))).second);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(path("a").c_str(), 12345, 0), 0);
        EXPECT_TRUE(seen.insert(files_.rightsOf(path("a"))).second);
        ASSERT_EQ(chown(path("a").c_str(), 12345, 23456), 0);
        EXPECT_TRUE(seen.insert(files_.rightsOf(path("a"))).second);
    }
    ASSERT_EQ(symlink("a", path("link").c_str()), 0);
    EXPECT_EQ(files_.rightsOf(path("link")), "");
}

TEST_F(PosixFileSystemTest, RightsDoNotDependOnTheMask) {
    for (const mode_t mask : {0000, 0077, 0022}) {
        const Umask changed(mask);
        for (const auto& [rights, mode] : {std::pair{platform::FileRights::kPlain, 0644U},
                                           {platform::FileRights::kProgram, 0755U},
                                           {platform::FileRights::kPrivate, 0600U}}) {
            std::unique_ptr<File> file = openNew("f");
            EXPECT_EQ(file->setRights(rights), 0);
            EXPECT_EQ(modeOf(path("f")), mode);
            EXPECT_EQ(unlink(path("f").c_str()), 0);
        }
        EXPECT_EQ(files_.createDirectory(path("d")), 0);
        EXPECT_EQ(modeOf(path("d")), 0755U);
        EXPECT_EQ(files_.removeDirectory(path("d")), 0);
    }
}

// Otherwise somebody could keep it open for writing from before it got its rights.
TEST_F(PosixFileSystemTest, NobodyElseMayWriteAFreshFileWithoutAMask) {
    const Umask changed(0);
    for (const Disposition disposition : {Disposition::kCreateNew, Disposition::kCreateAlways,
                                          Disposition::kOpenOrCreate, Disposition::kCreatePrivate}) {
        ASSERT_EQ(create(path("f"), disposition), 0);
        EXPECT_EQ(modeOf(path("f")) & 0022U, 0U);
        EXPECT_EQ(unlink(path("f").c_str()), 0);
    }
}

TEST_F(PosixFileSystemTest, ADirectoryKeepsTheGroupThatItsParentHandsDown) {
    ASSERT_EQ(chmod(directory_.path().c_str(), 02755), 0);
    const Umask changed(0077);
    EXPECT_EQ(files_.createDirectory(path("d")), 0);
    EXPECT_EQ(modeOf(path("d")), 02755U);
}

TEST_F(PosixFileSystemTest, MarksNoProgramThroughALinkOrUnderTwoNames) {
    writeTestFile(path("victim"), "");
    ASSERT_EQ(chmod(path("victim").c_str(), 0644), 0);
    ASSERT_EQ(symlink("victim", path("link").c_str()), 0);
    EXPECT_EQ(files_.makeExecutable(path("link")), ELOOP);
    ASSERT_EQ(link(path("victim").c_str(), path("other").c_str()), 0);
    EXPECT_EQ(files_.makeExecutable(path("other")), EMLINK);
    EXPECT_EQ(modeOf(path("victim")), 0644U);
    ASSERT_EQ(chmod(path("victim").c_str(), 0755), 0);
    EXPECT_EQ(files_.makeExecutable(path("other")), 0);
    EXPECT_NE(files_.makeExecutable(directory_.path()), 0);
}

TEST_F(PosixFileSystemTest, OpensNoLinkWhereNoneIsToBeFollowed) {
    writeTestFile(path("f"), "abc");
    ASSERT_EQ(symlink("f", path("link").c_str()), 0);
    OpenOptions options;
    options.followLinks = false;
    std::unique_ptr<File> file;
    EXPECT_EQ(files_.open(path("link"), options, file), ELOOP);
    EXPECT_EQ(files_.open(path("f"), options, file), 0);
}

TEST_F(PosixFileSystemTest, KnowsLinksPipesAndDevicesByThemselves) {
    using platform::PathKind;
    ASSERT_EQ(symlink("/", path("link").c_str()), 0);
    ASSERT_EQ(symlink("none", path("dangling").c_str()), 0);
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.kindOf(path("link")), PathKind::kLink);
    EXPECT_EQ(files_.kindOf(path("dangling")), PathKind::kLink);
    EXPECT_EQ(files_.kindOf(path("pipe")), PathKind::kOther);
    EXPECT_EQ(files_.kindOf("/dev/null"), PathKind::kOther);
    EXPECT_EQ(files_.kindOf(std::string(5000, 'x')), PathKind::kOther);
}

// The calls above would turn each `\` into a separator.
TEST_F(PosixFileSystemTest, ListsNoNameThatLeadsElsewhere) {
    ASSERT_EQ(mkdir(path("d").c_str(), 0700), 0);
    writeTestFile(path("victim"), "precious");
    for (const char* name : {"/..\\victim", "/a\\b", "/\\", "/plain"}) {
        const int made = ::open((path("d") + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        ASSERT_GE(made, 0);
        ::close(made);
    }
    ASSERT_EQ(mkdir((path("d") + "/..\\..").c_str(), 0700), 0);
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(files_.list(path("d"), entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, "plain");
    // What isn't listed keeps its directory.
    EXPECT_EQ(files_.removeFile(path("d/plain")), 0);
    EXPECT_EQ(files_.removeDirectory(path("d")), ENOTEMPTY);
}

TEST_F(PosixFileSystemTest, AnOpenDirectoryWinsOverASwap) {
    ASSERT_EQ(mkdir(path("d").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(path("d/sub").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(path("outside").c_str(), 0700), 0);
    for (const char* file : {"d/f", "d/sub/f", "outside/f"}) {
        writeTestFile(path(file), "abc");
    }
    std::unique_ptr<platform::Directory> opened;
    std::unique_ptr<platform::Directory> below;
    ASSERT_EQ(files_.openDirectory(path("d"), opened), 0);
    ASSERT_EQ(opened->openDirectory("sub", below), 0);
    ASSERT_EQ(rename(path("d").c_str(), path("moved").c_str()), 0);
    ASSERT_EQ(symlink(path("outside").c_str(), path("d").c_str()), 0);
    EXPECT_EQ(opened->removeFile("f"), 0);
    EXPECT_EQ(below->removeFile("f"), 0);
    EXPECT_EQ(opened->removeDirectory("sub"), 0);
    EXPECT_EQ(readTestFile(path("outside/f")), "abc");
    EXPECT_FALSE(testFileExists(path("moved/f")));
    EXPECT_EQ(files_.openDirectory(path("d"), opened), ENOTDIR);
    EXPECT_EQ(files_.openDirectory(path("d") + "/", opened), ENOTDIR);
}

TEST_F(PosixFileSystemTest, AnOpenDirectoryRemovesLinksButOpensNone) {
    ASSERT_EQ(mkdir(path("d").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(path("outside").c_str(), 0700), 0);
    writeTestFile(path("outside/f"), "abc");
    ASSERT_EQ(symlink("../outside", path("d/link").c_str()), 0);
    std::unique_ptr<platform::Directory> opened;
    std::unique_ptr<platform::Directory> below;
    ASSERT_EQ(files_.openDirectory(path("d"), opened), 0);
    EXPECT_NE(opened->openDirectory("link", below), 0);
    EXPECT_NE(opened->removeDirectory("link"), 0);
    EXPECT_EQ(opened->removeFile("link"), 0);
    EXPECT_EQ(readTestFile(path("outside/f")), "abc");
}

}  // namespace
