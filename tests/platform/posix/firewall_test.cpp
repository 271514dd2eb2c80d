#include "platform/firewall.h"

#include <gtest/gtest.h>

namespace {

TEST(PosixFirewallTest, IsNotAvailable) {
    std::unique_ptr<platform::FirewallProfile> profile;
    const platform::FirewallOutcome outcome = platform::systemFirewall().connect(profile);
    EXPECT_EQ(outcome.failed, platform::FirewallCall::kNoService);
    EXPECT_EQ(profile, nullptr);
}

}  // namespace
