#include "platform/processes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "base/path_functions.h"
#include "fakes/temporary_directory.h"
#include "platform/posix/proc_files.h"

namespace {

constexpr std::uint32_t kLongEnough = 60000;

// A child of this process in which `action` runs until somebody ends it; collected by the destructor.
class ForkedProcess {
public:
    template <typename Action>
    explicit ForkedProcess(Action prepare) {
        int ready[2] = {-1, -1};
        EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
        id_ = fork();
        if (id_ == 0) {
            prepare();
            (void)!write(ready[1], "x", 1);
            for (;;) {
                pause();
            }
        }
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
    }
    ~ForkedProcess() {
        if (!collected_) {
            kill(id_, SIGKILL);
            endSignal();
        }
    }

    std::uint32_t id() const { return static_cast<std::uint32_t>(id_); }
    int endSignal() {
        int status = 0;
        EXPECT_EQ(waitpid(id_, &status, 0), id_);
        collected_ = true;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    pid_t id_ = -1;
    bool collected_ = false;
};

class PosixProcessesTest : public testing::Test {
protected:
    int exitCodeOf(const std::string& commandLine, const char* directory = "") {
        int error = 0;
        const auto child = processes_.start(commandLine.c_str(), directory, error);
        EXPECT_EQ(error, 0) << commandLine;
        return child != nullptr && child->wait(kLongEnough) ? child->exitCode() : -1;
    }

    platform::Processes& processes_ = platform::systemProcesses();
};

TEST_F(PosixProcessesTest, APoliteSignalComesFirst) {
    ForkedProcess process([] {});
    EXPECT_TRUE(processes_.terminate(process.id(), kLongEnough));
    EXPECT_EQ(process.endSignal(), SIGTERM);
}

TEST_F(PosixProcessesTest, AStubbornProcessIsEndedHard) {
    ForkedProcess process([] { std::signal(SIGTERM, SIG_IGN); });
    EXPECT_TRUE(processes_.terminate(process.id(), 20));
    EXPECT_EQ(process.endSignal(), SIGKILL);
}

TEST_F(PosixProcessesTest, NeitherTheSystemNorTheOwnLineIsEnded) {
    for (const pid_t id : {0, 1, getpid(), getppid(), platform::proc_files::parentOf(getppid())}) {
        EXPECT_FALSE(processes_.terminate(static_cast<std::uint32_t>(id), 0)) << id;
    }
    EXPECT_FALSE(processes_.terminate(0xFFFFFFFFU, 0));
}

TEST_F(PosixProcessesTest, AnEndedProcessIsNotRunning) {
    const pid_t id = fork();
    if (id == 0) {
        _exit(0);
    }
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(id), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(platform::proc_files::isAlive(id));
    std::vector<platform::ProcessInfo> list;
    EXPECT_TRUE(processes_.list(list));
    for (const auto& process : list) {
        EXPECT_NE(process.id, static_cast<std::uint32_t>(id));
    }
    EXPECT_EQ(waitpid(id, nullptr, 0), id);
}

TEST_F(PosixProcessesTest, GivesTheParentOfAProcess) {
    EXPECT_EQ(platform::proc_files::parentOf(getpid()), getppid());
    EXPECT_EQ(platform::proc_files::parentOf(0x7FFFFFFF), 0);
}

TEST_F(PosixProcessesTest, ADeletedExecutableKeepsItsPath) {
    const TemporaryDirectory directory;
    const std::string copy = directory.file("copy of sleep");
    ASSERT_EQ(exitCodeOf("cp /bin/sleep \"" + copy + "\""), 0);
    int error = 0;
    const auto child = processes_.start(("\"" + copy + "\" 600").c_str(), "", error);
    ASSERT_NE(child, nullptr);
    ASSERT_EQ(unlink(copy.c_str()), 0);
    std::vector<platform::ProcessInfo> list;
    ASSERT_TRUE(processes_.list(list));
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const auto& process) { return process.path == copy; });
    ASSERT_NE(found, list.end());
    EXPECT_EQ(found->name, "copy of sleep");
    EXPECT_TRUE(processes_.terminate(found->id, kLongEnough));
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), 128 + SIGTERM);
}

TEST_F(PosixProcessesTest, OnlyBareNamesAreLookedForInThePath) {
    EXPECT_EQ(exitCodeOf("true"), 0);
    EXPECT_EQ(exitCodeOf("false"), 1);
    EXPECT_EQ(exitCodeOf("C:\\bin\\false"), 1);
    const TemporaryDirectory directory;
    int error = 0;
    EXPECT_EQ(processes_.start("./true", directory.path().c_str(), error), nullptr);
    EXPECT_EQ(error, ENOENT);
}

TEST_F(PosixProcessesTest, WordsReachTheProgramUnchanged) {
    EXPECT_EQ(exitCodeOf("test \"a  b\" = \"a  b\""), 0);
    EXPECT_EQ(exitCodeOf("test x\\y = x/y"), 1);
    EXPECT_EQ(exitCodeOf("test -z \"\""), 0);
}

TEST_F(PosixProcessesTest, ChildrenInheritTheStandardStreamsOnly) {
    const int leak = dup(STDERR_FILENO);
    ASSERT_GT(leak, STDERR_FILENO);
    EXPECT_EQ(exitCodeOf("test -e /proc/self/fd/" + std::to_string(leak)), 1);
    EXPECT_EQ(exitCodeOf("test -e /proc/self/fd/1"), 0);
    close(leak);
}

TEST_F(PosixProcessesTest, DroppedChildrenAreCollectedByALaterStart) {
    int error = 0;
    processes_.start("true", "", error).reset();
    siginfo_t info{};
    // Waits until the dropped child has ended, if it wasn't collected at once.
    waitid(P_ALL, 0, &info, WEXITED | WNOWAIT);
    EXPECT_EQ(exitCodeOf("true"), 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixProcessesTest, OnlyRootIsAnAdministrator) {
    EXPECT_EQ(processes_.isAdministrators(static_cast<std::uint32_t>(getpid())), geteuid() == 0);
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be somebody else";
    }
    const ForkedProcess somebody([] { (void)!setresuid(12345, 12345, 12345); });
    EXPECT_FALSE(processes_.isAdministrators(somebody.id()));
    // Its files in /proc are root's, because its memory isn't to be seen.
    const ForkedProcess hidden([] {
        (void)!setresuid(12345, 12345, 12345);
        prctl(PR_SET_DUMPABLE, 0);
    });
    EXPECT_FALSE(processes_.isAdministrators(hidden.id()));
    const ForkedProcess half([] { (void)!setresuid(12345, 0, 0); });
    EXPECT_FALSE(processes_.isAdministrators(half.id()));
}

TEST_F(PosixProcessesTest, AProgramLearnsItsOwnNameAsTheSystemWritesIt) {
    const TemporaryDirectory directory;
    const std::string script = directory.file("show");
    std::ofstream(script) << "#!/bin/sh\ncase \"$0\" in *\\\\*) exit 1;; esac\n";
    ASSERT_EQ(chmod(script.c_str(), 0700), 0);
    std::string own = script;
    std::replace(own.begin(), own.end(), '/', '\\');
    EXPECT_EQ(exitCodeOf('"' + own + '"'), 0);
}

}  // namespace
