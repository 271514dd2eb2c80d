#include "platform/named_events.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/processes.h"

namespace {

constexpr std::uint32_t kLongEnough = 60000;

class NamedEventsTest : public testing::Test {
protected:
    // The name of one run: several may go on at the same time.
    const std::string name_ = "TandrelTestEvent" + std::to_string(platform::systemProcesses().currentId());
    platform::NamedEvents& events_ = platform::systemNamedEvents();
};

TEST_F(NamedEventsTest, SignallingNobodyFails) {
    EXPECT_FALSE(events_.signal(name_.c_str()));
}

TEST_F(NamedEventsTest, ANewEventIsNotSignalled) {
    const auto event = events_.create(name_.c_str());
    ASSERT_NE(event, nullptr);
    EXPECT_FALSE(event->wait(0));
    EXPECT_FALSE(event->wait(5));
}

TEST_F(NamedEventsTest, ASignalBeforeTheWaitIsKept) {
    const auto event = events_.create(name_.c_str());
    ASSERT_NE(event, nullptr);
    EXPECT_TRUE(events_.signal(name_.c_str()));
    EXPECT_TRUE(events_.signal(name_.c_str()));
    EXPECT_TRUE(event->wait(0));
}

TEST_F(NamedEventsTest, ASignalWakesAWaiter) {
    const auto event = events_.create(name_.c_str());
    ASSERT_NE(event, nullptr);
    std::thread signaller([&] { EXPECT_TRUE(events_.signal(name_.c_str())); });
    EXPECT_TRUE(event->wait(kLongEnough));
    signaller.join();
}

TEST_F(NamedEventsTest, CreateOpensTheExistingEvent) {
    const auto first = events_.create(name_.c_str());
    const auto second = events_.create(name_.c_str());
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(events_.signal(name_.c_str()));
    EXPECT_TRUE(second->wait(0));
}

TEST_F(NamedEventsTest, TheNameGoesWithTheEvent) {
    events_.create(name_.c_str()).reset();
    EXPECT_FALSE(events_.signal(name_.c_str()));
}

TEST_F(NamedEventsTest, TwoNamesAreTwoEvents) {
    const auto first = events_.create((name_ + "a").c_str());
    const auto second = events_.create((name_ + "b").c_str());
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(events_.signal((name_ + "a").c_str()));
    EXPECT_FALSE(second->wait(0));
    EXPECT_TRUE(first->wait(0));
}

TEST_F(NamedEventsTest, ALockIsHeldUntilItGoes) {
    std::unique_ptr<platform::NamedLock> lock;
    std::unique_ptr<platform::NamedLock> second;
    ASSERT_EQ(events_.lock(name_, 0, lock), platform::LockResult::kTaken);
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(events_.lock(name_, 1, second), platform::LockResult::kBusy);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(events_.lock(name_ + "x", 0, second), platform::LockResult::kTaken);
    lock.reset();
    EXPECT_EQ(events_.lock(name_, kLongEnough, lock), platform::LockResult::kTaken);
}

TEST_F(NamedEventsTest, WaitsForALock) {
    std::unique_ptr<platform::NamedLock> lock;
    ASSERT_EQ(events_.lock(name_, 0, lock), platform::LockResult::kTaken);
    std::thread other([&] { lock.reset(); });
    std::unique_ptr<platform::NamedLock> second;
    EXPECT_EQ(events_.lock(name_, kLongEnough, second), platform::LockResult::kTaken);
    other.join();
}

TEST_F(NamedEventsTest, AnImpossibleNameIsNoLock) {
    std::unique_ptr<platform::NamedLock> lock;
    for (const char* name : {"", "a/b"}) {
        EXPECT_EQ(events_.lock(name, 0, lock), platform::LockResult::kUnavailable) << name;
    }
}

}  // namespace
