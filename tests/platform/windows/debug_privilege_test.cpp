#include "platform/windows/debug_privilege.h"

#include <gtest/gtest.h>

namespace {

bool threadHasToken() {
    HANDLE token = nullptr;
    if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, FALSE, &token) == 0) {
        return false;
    }
    CloseHandle(token);
    return true;
}

TEST(DebugPrivilege, IsHeldByTheThreadForAWhileOnly) {
    ASSERT_FALSE(threadHasToken());
    {
        const platform::DebugPrivilege privilege;
        EXPECT_TRUE(threadHasToken());
        const platform::DebugPrivilege again;
        EXPECT_EQ(again.enabled(), privilege.enabled());
    }
    EXPECT_FALSE(threadHasToken());
}

}  // namespace
