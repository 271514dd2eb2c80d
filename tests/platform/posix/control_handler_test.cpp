#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string>
#include <thread>

#include "platform/clock.h"
#include "platform/console_device.h"
#include "platform/processes.h"

namespace {

using platform::ControlEvent;

std::atomic<int> lastEvent{-1};
std::atomic<int> eventCount{0};
std::atomic<bool> onMainThread{false};
std::thread::id mainThread;

bool recordEvent(ControlEvent event) {
    lastEvent = static_cast<int>(event);
    onMainThread = std::this_thread::get_id() == mainThread;
    ++eventCount;
    return true;
}

bool refuseEvent(ControlEvent) {
    return false;
}

// Runs `action` in a process of its own, because the handler is one for the whole process, and gives its wait
// status.
template <typename Action>
int statusOfChild(Action action) {
    const pid_t child = fork();
    if (child == 0) {
        mainThread = std::this_thread::get_id();
        _exit(action());
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

// The event that the handler got for a signal, or -1; 100 more when it ran on the main thread.
int eventOf(int signal) {
    const int before = eventCount;
    kill(getpid(), signal);
    for (int look = 0; look < 10000 && eventCount == before; ++look) {
        platform::sleepMilliseconds(1);
    }
    return eventCount == before ? -1 : lastEvent + (onMainThread ? 100 : 0);
}

int exitCodeOf(int status) {
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status);
}

TEST(ControlHandlerTest, SignalsReachTheHandlerOnAThreadOfItsOwn) {
    const int status = statusOfChild([] {
        if (!platform::setControlHandler(recordEvent)) {
            return 1;
        }
        if (eventOf(SIGINT) != static_cast<int>(ControlEvent::kInterrupt)) {
            return 2;
        }
        if (eventOf(SIGQUIT) != static_cast<int>(ControlEvent::kBreak)) {
            return 6;
        }
        if (eventOf(SIGHUP) != static_cast<int>(ControlEvent::kClose)) {
            return 3;
        }
        if (eventOf(SIGTERM) != static_cast<int>(ControlEvent::kShutdown)) {
            return 4;
        }
        return eventOf(SIGINT) == static_cast<int>(ControlEvent::kInterrupt) ? 0 : 5;
    });
    EXPECT_EQ(exitCodeOf(status), 0);
}

TEST(ControlHandlerTest, ARefusedEventEndsTheProcessAsTheSystemDoes) {
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP, SIGTERM}) {
        const int status = statusOfChild([signal] {
            const rlimit noCoreFile{0, 0};
            setrlimit(RLIMIT_CORE, &noCoreFile);
            platform::setControlHandler(refuseEvent);
            kill(getpid(), signal);
            platform::sleepMilliseconds(60000);
            return 1;
        });
        ASSERT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), signal);
    }
}

TEST(ControlHandlerTest, AStoppedProcessContinuesAfterwards) {
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);  // the system doesn't stop a group that no shell of the session could continue
        platform::setControlHandler(recordEvent);
        kill(getpid(), SIGTSTP);
        for (int look = 0; look < 60000 && eventCount == 0; ++look) {
            platform::sleepMilliseconds(1);
        }
        _exit(eventCount == 1 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
    ASSERT_TRUE(WIFSTOPPED(status));
    EXPECT_EQ(WSTOPSIG(status), SIGTSTP);
    kill(child, SIGCONT);
    kill(child, SIGINT);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(exitCodeOf(status), 0);
}

TEST(ControlHandlerTest, AnIgnoredSignalStaysIgnored) {
    const int status = statusOfChild([] {
        std::signal(SIGHUP, SIG_IGN);
        platform::setControlHandler(refuseEvent);
        kill(getpid(), SIGHUP);
        // A signal that is served comes before the one behind it, so this one shows that the first was
        // dropped.
        platform::setControlHandler(recordEvent);
        return eventOf(SIGINT) == static_cast<int>(ControlEvent::kInterrupt) && eventCount == 1 ? 0 : 1;
    });
    EXPECT_EQ(exitCodeOf(status), 0);
}

TEST(ControlHandlerTest, ChildProgramsStartWithDefaultSignals) {
    const int status = statusOfChild([] {
        platform::setControlHandler(recordEvent);
        std::signal(SIGPIPE, SIG_IGN);
        // The C library lets children ignore the two signals after the 31 ordinary ones, which it keeps for
        // itself.
        for (const char* mask : {"SigBlk:.0{16}$", "SigIgn:.0{7}[01][08]0{7}$"}) {
            int error = 0;
            const std::string commandLine = "grep -qE " + std::string(mask) + " /proc/self/status";
            const auto child = platform::systemProcesses().start(commandLine.c_str(), "", error);
            if (child == nullptr || !child->wait(60000) || child->exitCode() != 0) {
                return 1;
            }
        }
        return 0;
    });
    EXPECT_EQ(exitCodeOf(status), 0);
}

}  // namespace
