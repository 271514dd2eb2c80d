#include "installer/uninstallation_lock.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "installer/start_messages.h"
#include "platform/memory/memory_platform.h"

namespace {

using platform::LockResult;

class UninstallationLockTest : public testing::Test {
protected:
    UninstallationLockTest() { machine_.processes.ownId = 500; }

    MemoryPlatform machine_;
    FakeConsole log_;
    StartMessages messages_{machine_.console, platform::showMessage};
    platform::Platform bundle_ = machine_.bundle();
    UninstallationLock lock_{bundle_, messages_, log_};
};

TEST_F(UninstallationLockTest, IsTakenAtOnceWhereNobodyElseUninstalls) {
    EXPECT_TRUE(lock_.take());
    EXPECT_EQ(machine_.events.heldLocks, 1);
    EXPECT_EQ(machine_.events.lockings.size(), 1U);
    EXPECT_EQ(machine_.console.errors, "");
    lock_.release();
    EXPECT_EQ(machine_.events.heldLocks, 0);
}

TEST_F(UninstallationLockTest, WaitsForAnotherOneAndSaysSo) {
    machine_.events.lockResults = {LockResult::kBusy};
    EXPECT_TRUE(lock_.take());
    EXPECT_EQ(machine_.events.heldLocks, 1);
    ASSERT_EQ(machine_.events.lockings.size(), 2U);
    EXPECT_EQ(machine_.events.lockings[0].first, machine_.events.lockings[1].first);
    EXPECT_EQ(machine_.events.lockings[1].second, UninstallationLock::kWaitMilliseconds);
    EXPECT_EQ(machine_.console.errors, "Another uninstallation is at work. Waiting for its end ...\n");
}

TEST_F(UninstallationLockTest, DoesNotWaitForEver) {
    machine_.events.lockResults = {LockResult::kBusy, LockResult::kBusy};
    EXPECT_FALSE(lock_.take());
    EXPECT_EQ(machine_.events.lockings.size(), 2U);
    EXPECT_NE(machine_.console.errors.find("ERROR: Another uninstallation is still at work."),
              std::string::npos);
}

TEST_F(UninstallationLockTest, GoesOnWithoutALockWhereTheSystemHasNone) {
    machine_.events.lockResults = {LockResult::kUnavailable};
    EXPECT_TRUE(lock_.take());
    EXPECT_TRUE(log_.hasLine("WARNING: Nothing keeps other uninstallations from starting: no lock"));
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(UninstallationLockTest, OneThatAnotherOneStartedDoesNotWaitForThatOne) {
    EXPECT_TRUE(lock_.take());
    machine_.processes.running = {{500, "ormeluninst.dll", ""}};
    machine_.processes.ownId = 501;
    machine_.events.lockResults = {LockResult::kBusy};
    UninstallationLock inner(bundle_, messages_, log_);
    EXPECT_TRUE(inner.take());
    EXPECT_EQ(machine_.events.heldLocks, 1);
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(UninstallationLockTest, WhoWasStartedByOneThatHasEndedWaitsLikeAnybody) {
    EXPECT_TRUE(lock_.take());
    machine_.processes.running = {{600, "ormeluninst.dll", ""}};
    machine_.events.lockResults = {LockResult::kBusy, LockResult::kBusy};
    UninstallationLock later(bundle_, messages_, log_);
    EXPECT_FALSE(later.take());
}

}  // namespace
