#include "ui/reentry_guard.h"

#include <gtest/gtest.h>

namespace {

TEST(ReentryGuard, LetsNobodyInUntilTheFirstHasLeft) {
    ReentryGuard guard;
    {
        const ReentryGuard::Entry first(guard);
        EXPECT_TRUE(first.isFirst());
        {
            const ReentryGuard::Entry second(guard);
            EXPECT_FALSE(second.isFirst());
        }
        EXPECT_TRUE(guard.isHeld());
    }
    EXPECT_FALSE(guard.isHeld());
    EXPECT_TRUE(ReentryGuard::Entry(guard).isFirst());
}

TEST(ReentryGuard, IsFreeAfterAnException) {
    ReentryGuard guard;
    EXPECT_THROW(
        {
            const ReentryGuard::Entry entry(guard);
            throw 1;
        },
        int);
    EXPECT_FALSE(guard.isHeld());
}

}  // namespace
