#include "platform/registry_rules.h"

#include <gtest/gtest.h>

namespace {

using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryView;

TEST(RegistryRulesTest, RefusesNothingOfTheUsersOwn) {
    const RegistryKey key{RegistryRoot::kCurrentUser, "Software\\TandrelRules\\Missing"};
    EXPECT_EQ(platform::systemRegistryRules().wouldRefuse(key), platform::kRegOk);
    EXPECT_EQ(platform::systemRegistry().testKey(key.root, key.path, key.view), platform::kRegNotFound);
}

TEST(RegistryRulesTest, NamesIgnoreCaseAndHaveALimit) {
    const platform::RegistryRules& rules = platform::systemRegistryRules();
    EXPECT_EQ(rules.nameKey("Name"), rules.nameKey("NAME"));
    EXPECT_NE(rules.nameKey("Name"), rules.nameKey("Names"));
    EXPECT_TRUE(rules.isKeyName(std::string(255, 'k')));
    EXPECT_FALSE(rules.isKeyName(std::string(256, 'k')));
    EXPECT_FALSE(rules.isValueName(std::string(20000, 'v')));
    EXPECT_NE(rules.statusOfRootDeletion(), platform::kRegOk);
}

// What is written by one address is read by the other where both are one key.
TEST(RegistryRulesTest, AnAddressOfItsOwnStaysAsItIs) {
    const platform::RegistryRules& rules = platform::systemRegistryRules();
    const RegistryKey key{RegistryRoot::kLocalMachine, "Software\\Vendor", RegistryView::k32Bit};
    const RegistryKey canonical = rules.canonical(key);
    EXPECT_EQ(canonical.path, key.path);
    EXPECT_EQ(canonical.view, key.view);
    const RegistryKey twice = rules.canonical(canonical);
    EXPECT_EQ(twice.path, canonical.path);
    EXPECT_EQ(twice.view, canonical.view);
}

}  // namespace
