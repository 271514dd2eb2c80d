#include "engine/run_locks.h"

#include <gmock/gmock.h>

#include "platform/memory/memory_platform.h"

namespace {

using platform::LockResult;
using Result = ProductLock::Result;

class ProductLockTest : public testing::Test {
protected:
    ProductLock make() { return ProductLock(machine_.bundle(), DebugLog()); }

    MemoryPlatform machine_;
    MemoryNamedEvents& events_ = machine_.events;
};

TEST_F(ProductLockTest, IsHeldUntilItIsReleasedOrGone) {
    {
        ProductLock lock = make();
        EXPECT_EQ(lock.take("Demo"), Result::kTaken);
        EXPECT_EQ(events_.heldLocks, 1);
        lock.release();
        EXPECT_EQ(events_.heldLocks, 0);
        EXPECT_EQ(lock.take("Demo"), Result::kTaken);
    }
    EXPECT_EQ(events_.heldLocks, 0);
}

TEST_F(ProductLockTest, HasANameForEachProduct) {
    ProductLock lock = make();
    for (const char* product : {"Demo", "Demo", "Other/\\:*"}) {
        lock.take(product);
    }
    ASSERT_EQ(events_.lockings.size(), 3U);
    EXPECT_EQ(events_.lockings[0].first, events_.lockings[1].first);
    EXPECT_NE(events_.lockings[0].first, events_.lockings[2].first);
    EXPECT_EQ(events_.lockings[2].first.find_first_of("/\\:*"), std::string::npos);
}

TEST_F(ProductLockTest, IsBusyWhileAnotherRunHasIt) {
    events_.lockResults = {LockResult::kBusy};
    ProductLock lock = make();
    EXPECT_EQ(lock.take("Demo"), Result::kBusy);
    EXPECT_EQ(machine_.environment.get("TANDREL_RUN"), std::nullopt);
}

TEST_F(ProductLockTest, BelongsToTheRunThatStartedThisOne) {
    events_.lockResults = {LockResult::kBusy, LockResult::kBusy};
    machine_.environment.variables["TANDREL_RUN"] = "77";
    ProductLock lock = make();
    EXPECT_EQ(lock.take("Demo"), Result::kBusy);
    machine_.processes.running = {{77, "setup", "/setup"}};
    EXPECT_EQ(lock.take("Demo"), Result::kPartOfAnother);
}

TEST_F(ProductLockTest, IsNoObstacleWhereThereIsNone) {
    events_.lockResults = {LockResult::kUnavailable};
    ProductLock lock = make();
    EXPECT_EQ(lock.take("Demo"), Result::kTaken);
}

TEST_F(ProductLockTest, TellsTheProgramsItStartsWhoHoldsIt) {
    ProductLock lock = make();
    lock.take("Demo");
    EXPECT_EQ(machine_.environment.get("TANDREL_RUN"), std::to_string(machine_.processes.currentId()));
}

TEST(JournalsLockTest, IsNullWhereAnotherRunHasIt) {
    MemoryNamedEvents events;
    EXPECT_NE(lockJournals(events, 0), nullptr);
    events.lockResults = {LockResult::kBusy};
    EXPECT_EQ(lockJournals(events, 20), nullptr);
    EXPECT_EQ(events.lockings[1].second, 20U);
}

}  // namespace
