#include "wini/wini_modifications.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "fakes/fake_platform.h"

namespace {

TEST(WiniModificationsTest, ChangesNothingAheadOfTheSession) {
    FakePlatform machine;
    WiniModifications modifications(machine.bundle());
    EXPECT_THROW(modifications.registerApplication(), std::logic_error);
}

class WiniModificationsFamiliesTest : public testing::Test {
protected:
    WiniModificationsFamiliesTest() { modifications_.attach(product_, errors_, log_); }

    FakePlatform machine_;
    FakeEngine product_;
    ErrorList errors_;
    FakeConsole log_;
    WiniModifications modifications_{machine_.bundle()};
};

TEST_F(WiniModificationsFamiliesTest, changeTheRegistryOfTheMachine) {
    constexpr auto kUser = platform::RegistryRoot::kCurrentUser;
    int created = 0;
    EXPECT_EQ(
        modifications_.writeRegistryValue("HKEY_CURRENT_USER", "Software/Demo", nullptr, "n", "d", created),
        0);
    EXPECT_EQ(created, 2);
    EXPECT_EQ(modifications_.createRegistryKey("HKEY_CURRENT_USER", "Software/Demo/Sub"), 1);
    EXPECT_EQ(modifications_.deleteRegistryValue("HKEY_CURRENT_USER", "Software/Demo", "n"), 0);
    EXPECT_EQ(machine_.registry.value(kUser, "Software\\Demo", "n"), nullptr);
    EXPECT_EQ(modifications_.deleteRegistryKeys("HKEY_CURRENT_USER", "Software/Demo/Sub", 3), 3);
    EXPECT_FALSE(machine_.registry.hasKey(kUser, "Software"));
}

TEST_F(WiniModificationsFamiliesTest, registerTheProductOfTheSession) {
    EXPECT_TRUE(modifications_.registerApplication());
    EXPECT_TRUE(modifications_.removeUninstallEntry("Full name"));
    EXPECT_FALSE(modifications_.removeUninstallEntry("Full name"));
}

}  // namespace
