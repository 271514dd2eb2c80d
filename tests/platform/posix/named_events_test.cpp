#include "platform/named_events.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "fakes/temporary_directory.h"
#include "platform/posix/lock_file.h"

namespace {

using platform::LockResult;

constexpr uid_t kSomebody = 12345;

class PosixNamedEventsTest : public testing::Test {
protected:
    ~PosixNamedEventsTest() override {
        for (const auto& entry : std::filesystem::directory_iterator("/dev/shm")) {
            if (entry.path().string().starts_with(path_)) {
                std::filesystem::remove_all(entry.path());
            }
        }
    }
    // What is under the name can't be signalled, and makes place for an event that works.
    void expectThatItIsNoObstacle() {
        EXPECT_FALSE(events_.signal(name_));
        const auto event = events_.create(name_);
        ASSERT_NE(event, nullptr);
        EXPECT_FALSE(event->wait(0));
        EXPECT_TRUE(events_.signal(name_));
        EXPECT_TRUE(event->wait(0));
    }
    void occupy(std::size_t size, mode_t mode = 0600) {
        writeTestFile(path_, std::string(size, '\xff'));
        ASSERT_EQ(chmod(path_.c_str(), mode), 0);
    }

    const std::string name_ = "TandrelTestPosixEvent" + std::to_string(getpid());
    const std::string path_ = "/dev/shm/sem." + name_;
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

TEST_F(PosixNamedEventsTest, AFileOfAnotherSizeIsNoSemaphore) {
    for (const std::size_t size :
         {std::size_t{0}, sizeof(sem_t) - 1, sizeof(sem_t) + 1, std::size_t{10000}}) {
        occupy(size);
        expectThatItIsNoObstacle();
    }
}

TEST_F(PosixNamedEventsTest, ADirectoryIsNoSemaphore) {
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
    expectThatItIsNoObstacle();
}

TEST_F(PosixNamedEventsTest, AFullDirectoryIsMovedAndKeepsItsContent) {
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
    writeTestFile(path_ + "/file", "mine");
    expectThatItIsNoObstacle();
    std::size_t kept = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm")) {
        kept += entry.path().string().starts_with(path_ + ".moved-") && testFileExists(entry.path() / "file");
    }
    EXPECT_EQ(kept, 1U);
}

TEST_F(PosixNamedEventsTest, ALinkOrAPipeIsNoSemaphore) {
    TemporaryDirectory directory;
    writeTestFile(directory.file("file"), std::string(sizeof(sem_t), '\0'));
    ASSERT_EQ(symlink(directory.file("file").c_str(), path_.c_str()), 0);
    expectThatItIsNoObstacle();
    EXPECT_EQ(readTestFile(directory.file("file")), std::string(sizeof(sem_t), '\0'));
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    expectThatItIsNoObstacle();
}

TEST_F(PosixNamedEventsTest, ASemaphoreThatOthersCanCutIsNotUsed) {
    occupy(sizeof(sem_t), 0666);
    EXPECT_FALSE(events_.signal(name_));
}

TEST_F(PosixNamedEventsTest, ASemaphoreOfSomebodyElseIsNoObstacle) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root gives files away";
    }
    occupy(sizeof(sem_t));
    ASSERT_EQ(chown(path_.c_str(), kSomebody, kSomebody), 0);
    expectThatItIsNoObstacle();
}

TEST_F(PosixNamedEventsTest, WhoLocksTheFileHoldsNobodyUp) {
    const auto event = events_.create(name_);
    const int file = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    const auto second = events_.create(name_);  // the file has a lock of both by now
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(flock(file, LOCK_SH | LOCK_NB), 0);
    EXPECT_NE(events_.create(name_), nullptr);
    close(file);
}

TEST_F(PosixNamedEventsTest, TheLibrarysOwnSemaphoresAreSignalled) {
    sem_t* semaphore = sem_open(("/" + name_).c_str(), O_CREAT | O_EXCL, 0600, 0);
    ASSERT_NE(semaphore, SEM_FAILED);
    EXPECT_TRUE(events_.signal(name_));
    EXPECT_EQ(sem_trywait(semaphore), 0);
    sem_close(semaphore);
}

class LockFileTest : public testing::Test {
protected:
    LockResult take(std::uint32_t milliseconds = 0) {
        return platform::lockFile(place_, "work", milliseconds, lock_);
    }

    TemporaryDirectory directory_;
    const std::string place_ = directory_.file("state");
    const std::string path_ = place_ + "/work.lock";
    std::unique_ptr<platform::NamedLock> lock_;
};

TEST_F(LockFileTest, MakesItsDirectoryAndLeavesNoFile) {
    EXPECT_EQ(take(), LockResult::kTaken);
    EXPECT_TRUE(testFileExists(path_));
    lock_.reset();
    EXPECT_FALSE(testFileExists(path_));
}

TEST_F(LockFileTest, AKilledHolderHoldsNothing) {
    int ready[2];
    ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
        const bool taken = take() == LockResult::kTaken;
        _exit(write(ready[1], taken ? "1" : "0", 1) == 1 ? pause() : 1);
    }
    char taken = 0;
    EXPECT_EQ(read(ready[0], &taken, 1), 1);
    EXPECT_EQ(taken, '1');
    EXPECT_EQ(take(), LockResult::kBusy);
    kill(child, SIGKILL);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(take(), LockResult::kTaken);
    close(ready[0]);
    close(ready[1]);
}

TEST_F(LockFileTest, WhatIsNoFileOfThisUserIsNotLocked) {
    ASSERT_EQ(mkdir(place_.c_str(), 0700), 0);
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
    EXPECT_EQ(take(), LockResult::kUnavailable);
    ASSERT_EQ(rmdir(path_.c_str()), 0);
    ASSERT_EQ(symlink(directory_.file("elsewhere").c_str(), path_.c_str()), 0);
    EXPECT_EQ(take(), LockResult::kUnavailable);
    EXPECT_FALSE(testFileExists(directory_.file("elsewhere")));
}

}  // namespace
