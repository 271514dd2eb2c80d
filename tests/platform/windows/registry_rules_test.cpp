#include "platform/registry_rules.h"

#include <gtest/gtest.h>

namespace {

using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryView;

TEST(WindowsRegistryRules, GivesEachKeyOneAddress) {
    const platform::RegistryRules& rules = platform::systemRegistryRules();
    const RegistryKey redirected =
        rules.canonical({RegistryRoot::kLocalMachine, "SOFTWARE\\Wow6432Node\\Vendor\\A"});
    EXPECT_EQ(redirected.path, "SOFTWARE\\Vendor\\A");
    EXPECT_EQ(redirected.view, RegistryView::k32Bit);
    const RegistryKey top = rules.canonical({RegistryRoot::kLocalMachine, "Software\\WOW6432Node"});
    EXPECT_EQ(top.path, "Software");
    EXPECT_EQ(top.view, RegistryView::k32Bit);
    const RegistryKey shared =
        rules.canonical({RegistryRoot::kCurrentUser, "Software\\Vendor", RegistryView::k32Bit});
    EXPECT_EQ(shared.view, RegistryView::kNative);
    const RegistryKey system =
        rules.canonical({RegistryRoot::kLocalMachine, "System\\Setup", RegistryView::k32Bit});
    EXPECT_EQ(system.view, RegistryView::kNative);
}

}  // namespace
