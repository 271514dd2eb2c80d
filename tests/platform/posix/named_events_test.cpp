#include "platform/named_events.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace {

class PosixNamedEventsTest : public testing::Test {
protected:
    const std::string name_ = "TandrelTestPosixEvent" + std::to_string(getpid());
    platform::NamedEvents& events_ = platform::systemNamedEvents();
};

TEST_F(PosixNamedEventsTest, AKilledOwnerLeavesNoSignalBehind) {
    const pid_t child = fork();
    if (child == 0) {
        const auto event = events_.create(name_.c_str());
        events_.signal(name_.c_str());
        raise(SIGKILL);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    ASSERT_TRUE(events_.signal(name_.c_str()));
    const auto event = events_.create(name_.c_str());
    ASSERT_NE(event, nullptr);
    EXPECT_FALSE(event->wait(0));
    EXPECT_TRUE(events_.signal(name_.c_str()));
    EXPECT_TRUE(event->wait(0));
}

TEST_F(PosixNamedEventsTest, ASignalCrossesProcesses) {
    const auto event = events_.create(name_.c_str());
    ASSERT_NE(event, nullptr);
    const pid_t child = fork();
    if (child == 0) {
        _exit(events_.signal(name_.c_str()) ? 0 : 1);
    }
    EXPECT_TRUE(event->wait(60000));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(PosixNamedEventsTest, TheEventIsTheUsersAlone) {
    const auto event = events_.create(name_.c_str());
    struct stat status {};
    ASSERT_EQ(stat(("/dev/shm/sem." + name_).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(PosixNamedEventsTest, RefusesImpossibleNames) {
    for (const char* name : {"", "a/b"}) {
        EXPECT_EQ(events_.create(name), nullptr);
        EXPECT_FALSE(events_.signal(name));
    }
}

}  // namespace
