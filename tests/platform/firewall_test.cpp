#include "platform/firewall.h"

#include <gtest/gtest.h>

namespace {

TEST(SystemFirewallTest, ConnectsOrReportsTheFailedCall) {
    std::unique_ptr<platform::FirewallProfile> profile;
    const platform::FirewallOutcome outcome = platform::systemFirewall().connect(profile);
    EXPECT_EQ(outcome.done(), profile != nullptr);
    EXPECT_EQ(outcome.done(), outcome.error == 0);
}

TEST(SystemFirewallTest, AnOutcomeIsDoneWithoutAFailedCall) {
    EXPECT_TRUE(platform::FirewallOutcome().done());
    EXPECT_FALSE((platform::FirewallOutcome{platform::FirewallCall::kNoService, 1}.done()));
}

}  // namespace
