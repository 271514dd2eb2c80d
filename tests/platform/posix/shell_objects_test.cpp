#include "platform/shell_objects.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "fakes/desktop_entry_reader.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

using platform::LinkDescription;

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

// Sets an environment variable for one test.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value) : name_(name) {
        const char* old = std::getenv(name);
        had_ = old != nullptr;
        old_ = had_ ? old : "";
        setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable() {
        if (had_) {
            setenv(name_, old_.c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    bool had_ = false;
    std::string old_;
};

class PosixShellObjectsTest : public testing::Test {
protected:
    PosixShellObjectsTest() { umask(022); }
    ~PosixShellObjectsTest() override { umask(oldMask_); }

    std::string file(const char* name) { return directory_.file(name); }
    DesktopEntryReader made(const LinkDescription& link) {
        EXPECT_EQ(shell_.createLink(file("Demo.desktop").c_str(), link), 0);
        return DesktopEntryReader(readTestFile(file("Demo.desktop")));
    }
    std::size_t countEntries(const std::string& path) {
        std::vector<platform::DirectoryEntry> entries;
        EXPECT_EQ(platform::systemFileSystem().list(path.c_str(), entries), 0);
        return entries.size();
    }

    const mode_t oldMask_ = umask(022);
    TemporaryDirectory directory_;
    platform::ShellObjects& shell_ = platform::systemShellObjects();
};

TEST_F(PosixShellObjectsTest, ALinkIsAnEntryOfAProgram) {
    const DesktopEntryReader entry =
        made({"C:\\opt\\de mo\\run", "A demo", "-a \"b c\" -x=\"d e\"", "C:\\opt\\de mo", "C:\\opt\\i.png"});
    EXPECT_EQ(entry.value("Type"), "Application");
    EXPECT_EQ(entry.value("Name"), "Demo");
    EXPECT_EQ(entry.value("Comment"), "A demo");
    EXPECT_EQ(entry.command(), (std::vector<std::string>{"/opt/de mo/run", "-a", "b c", "-x=d e"}));
    EXPECT_EQ(entry.value("Path"), "/opt/de mo");
    EXPECT_EQ(entry.value("Icon"), "/opt/i.png");
    EXPECT_EQ(modeOf(file("Demo.desktop")), 0755U);
}

TEST_F(PosixShellObjectsTest, WhatIsNotGivenIsNotWritten) {
    const DesktopEntryReader entry = made({"/opt/run", "", "", "", ""});
    EXPECT_EQ(entry.command(), std::vector<std::string>{"/opt/run"});
    EXPECT_FALSE(entry.has("Comment"));
    EXPECT_FALSE(entry.has("Path"));
    EXPECT_FALSE(entry.has("Icon"));
}

TEST_F(PosixShellObjectsTest, AnEntryOfADocumentOpensIt) {
    writeTestFile(file("read me.txt"), "x");
    EXPECT_EQ(made({file("read me.txt"), "", "", "", ""}).command(),
              (std::vector<std::string>{"xdg-open", file("read me.txt")}));
    EXPECT_EQ(made({directory_.path(), "", "", "", ""}).command(),
              (std::vector<std::string>{"xdg-open", directory_.path()}));
    ASSERT_EQ(platform::systemFileSystem().makeExecutable(file("read me.txt").c_str()), 0);
    EXPECT_EQ(made({file("read me.txt"), "", "", "", ""}).command(),
              std::vector<std::string>{file("read me.txt")});
}

TEST_F(PosixShellObjectsTest, AnUrlLinkIsAnEntryOfItsOwnKind) {
    EXPECT_EQ(shell_.createUrlLink(file("Page.desktop").c_str(), "http://example.com/a%20b"), 0);
    const DesktopEntryReader entry(readTestFile(file("Page.desktop")));
    EXPECT_EQ(entry.value("Type"), "Link");
    EXPECT_EQ(entry.value("Name"), "Page");
    EXPECT_EQ(entry.value("URL"), "http://example.com/a%20b");
    EXPECT_EQ(modeOf(file("Page.desktop")), 0644U);
}

TEST_F(PosixShellObjectsTest, ASymlinkHasTheTextThatWasAskedForAndReplacesOthers) {
    platform::FileSystem& files = platform::systemFileSystem();
    std::string target;
    EXPECT_EQ(shell_.createSymlink("C:" + file("link"), "..\\lib\\run"), 0);
    EXPECT_EQ(files.linkTarget(file("link"), target), 0);
    EXPECT_EQ(target, "../lib/run");
    // What it leads to, a directory too, stays as it is.
    EXPECT_EQ(shell_.createSymlink(file("link"), directory_.path()), 0);
    EXPECT_EQ(shell_.createSymlink(file("link"), "other"), 0);
    EXPECT_EQ(files.linkTarget(file("link"), target), 0);
    EXPECT_EQ(target, "other");
    writeTestFile(file("file"), "old");
    EXPECT_EQ(shell_.createSymlink(file("file"), "link"), 0);
    EXPECT_EQ(files.kindOf(file("file")), platform::PathKind::kLink);
    ASSERT_EQ(files.createDirectory(file("directory")), 0);
    EXPECT_NE(shell_.createSymlink(file("directory"), "link"), 0);
    EXPECT_EQ(countEntries(directory_.path()), 3U);
}

TEST_F(PosixShellObjectsTest, AnEntryIsNoMoreOpenThanTheUserWants) {
    umask(077);
    made({"/opt/run", "", "", "", ""});
    EXPECT_EQ(modeOf(file("Demo.desktop")), 0700U);
}

TEST_F(PosixShellObjectsTest, TheLinkPathMayBeWrittenWithBackslashes) {
    const std::string path = "C:" + directory_.path() + "\\Demo.desktop";
    EXPECT_EQ(shell_.createLink(path.c_str(), {"/opt/run", "", "", "", ""}), 0);
    EXPECT_TRUE(testFileExists(file("Demo.desktop")));
}

TEST_F(PosixShellObjectsTest, ALinkOfTheFileSystemIsReplacedAndNotFollowed) {
    writeTestFile(file("precious"), "keep");
    ASSERT_EQ(symlink(file("precious").c_str(), file("Demo.desktop").c_str()), 0);
    made({"/opt/run", "", "", "", ""});
    EXPECT_EQ(readTestFile(file("precious")), "keep");
    struct stat status {};
    ASSERT_EQ(lstat(file("Demo.desktop").c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
}

TEST_F(PosixShellObjectsTest, APipeInTheLinksPlaceIsReplacedWithoutWaiting) {
    ASSERT_EQ(mkfifo(file("Demo.desktop").c_str(), 0600), 0);
    made({"/opt/run", "", "", "", ""});
    EXPECT_EQ(countEntries(directory_.path()), 1U);
}

TEST_F(PosixShellObjectsTest, AFailureLeavesWhatWasThereAndNothingElse) {
    writeTestFile(file("Demo.desktop"), "old");
    const std::string name(300, 'x');
    EXPECT_EQ(shell_.createLink(file(name.c_str()).c_str(), {"/opt/run", "", "", "", ""}), ENAMETOOLONG);
    EXPECT_EQ(shell_.createLink("", {"/opt/run", "", "", "", ""}), ENOENT);
    EXPECT_EQ(shell_.createUrlLink("", "http://example.com"), ENOENT);
    EXPECT_EQ(shell_.createSymlink("", "target"), ENOENT);
    EXPECT_EQ(shell_.createUrlLink("/dev/null/x", "http://example.com"), ENOTDIR);
    EXPECT_EQ(readTestFile(file("Demo.desktop")), "old");
    EXPECT_EQ(countEntries(directory_.path()), 1U);
}

// A program "xdg-open" that reports its arguments, standard input and standard output through a pipe.
class OpeningTest : public PosixShellObjectsTest {
protected:
    OpeningTest() {
        EXPECT_EQ(mkfifo(file("told").c_str(), 0600), 0);
        writeScript("xdg-open", "xdg-open");
    }
    void writeScript(const char* name, const char* word) {
        writeTestFile(file(name),
                      "#!/bin/sh\n{ echo " + std::string(word) +
                          "; for a; do printf '<%s>\\n' \"$a\"; done; readlink /proc/$$/fd/0; } > '" +
                          file("told") + "'\n");
        EXPECT_EQ(platform::systemFileSystem().makeExecutable(file(name).c_str()), 0);
    }
    // What the opened program reported; waits for it and its end.
    std::string told() {
        constexpr int kLongEnough = 60000;
        const int pipe = open(file("told").c_str(), O_RDONLY | O_NONBLOCK);
        pollfd waiting{pipe, POLLIN, 0};
        EXPECT_EQ(poll(&waiting, 1, kLongEnough), 1);
        fcntl(pipe, F_SETFL, 0);
        std::string text;
        char buffer[1024];
        for (ssize_t count; (count = read(pipe, buffer, sizeof buffer)) > 0;) {
            text.append(buffer, static_cast<std::size_t>(count));
        }
        close(pipe);
        return text;
    }
    void expectOpened(const std::string& path, const std::string& argument) {
        ASSERT_TRUE(shell_.openDocument(path.c_str())) << path;
        EXPECT_EQ(told(), "xdg-open\n<" + argument + ">\n/dev/null\n");
    }

    // Whoever calls this test with sudo is not who opens the document.
    ScopedVariable sudo_{"SUDO_UID", ""};
    ScopedVariable pkexec_{"PKEXEC_UID", ""};
    ScopedVariable path_{"PATH", directory_.path() + ":" + std::getenv("PATH")};
};

TEST_F(OpeningTest, ADocumentIsOpenedByTheUserWhoRaisedTheRights) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root has raised rights";
    }
    constexpr uid_t kNobody = 65534;
    ASSERT_EQ(chmod(directory_.path().c_str(), 0755), 0);
    ASSERT_EQ(chown(file("told").c_str(), kNobody, kNobody), 0);
    writeTestFile(file("xdg-open"), "#!/bin/sh\n{ id -u; echo \"$1\"; } > '" + file("told") + "'\n");
    ASSERT_EQ(chmod(file("xdg-open").c_str(), 0755), 0);
    writeTestFile(file("a.txt"), "x");
    const ScopedVariable sudo("SUDO_UID", "65534");
    ASSERT_TRUE(shell_.openDocument(file("a.txt")));
    EXPECT_EQ(told(), "65534\n" + file("a.txt") + "\n");
    ASSERT_TRUE(shell_.openForUser("http://example.com"));
    EXPECT_EQ(told(), "65534\nhttp://example.com\n");
}

TEST_F(OpeningTest, NothingIsOpenedForAUserWhoseRightsWereNotRaised) {
    writeTestFile(file("a.txt"), "x");
    EXPECT_FALSE(shell_.openForUser(file("a.txt")));
    EXPECT_FALSE(shell_.openForUser("http://example.com"));
}

TEST_F(OpeningTest, ADocumentIsHandedToTheDesktop) {
    writeTestFile(file("read me.txt"), "x");
    expectOpened(file("read me.txt"), file("read me.txt"));
    expectOpened("C:" + directory_.path() + "\\read me.txt", file("read me.txt"));
    expectOpened(directory_.path(), directory_.path());
}

TEST_F(OpeningTest, AnUrlIsHandedOverAsItIs) {
    expectOpened("http://example.com/a\\b c?d=$HOME&e", "http://example.com/a\\b c?d=$HOME&e");
    expectOpened("mailto:somebody@example.com", "mailto:somebody@example.com");
}

TEST_F(OpeningTest, AProgramIsStartedItself) {
    writeScript("tool", "tool");
    ASSERT_TRUE(shell_.openDocument(file("tool").c_str()));
    EXPECT_EQ(told(), "tool\n/dev/null\n");
}

TEST_F(OpeningTest, WhatOnlyLooksLikeAProgramIsADocument) {
    writeTestFile(file("page.txt"), "no program");
    ASSERT_EQ(platform::systemFileSystem().makeExecutable(file("page.txt").c_str()), 0);
    expectOpened(file("page.txt"), file("page.txt"));
}

TEST_F(OpeningTest, ARelativeNameIsNeitherAnOptionNorAProgramOfThePath) {
    char before[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(chdir(directory_.path().c_str()), 0);
    writeTestFile(file("--help"), "x");
    expectOpened("--help", "./--help");
    ASSERT_EQ(chdir(before), 0);
}

TEST_F(OpeningTest, NothingIsOpenedWithoutAnOpener) {
    writeTestFile(file("a.txt"), "x");
    const ScopedVariable empty("PATH", file("nowhere"));
    EXPECT_FALSE(shell_.openDocument(file("a.txt").c_str()));
    EXPECT_FALSE(shell_.openDocument("http://example.com"));
}

TEST_F(OpeningTest, NothingIsOpenedThatIsNotThere) {
    EXPECT_FALSE(shell_.openDocument(file("none").c_str()));
    EXPECT_FALSE(shell_.openDocument(""));
    EXPECT_FALSE(shell_.openDocument(""));
}

}  // namespace
