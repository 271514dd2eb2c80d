#include "wini/registry_access.h"

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "fakes/memory_registry.h"

namespace {

using platform::RegistryRoot;

TEST(RegistryAccessTest, knowsTheFourHives) {
    EXPECT_EQ(registryRootOf("HKEY_CLASSES_ROOT"), RegistryRoot::kClassesRoot);
    EXPECT_EQ(registryRootOf("HKEY_CURRENT_USER"), RegistryRoot::kCurrentUser);
    EXPECT_EQ(registryRootOf("HKEY_LOCAL_MACHINE"), RegistryRoot::kLocalMachine);
    EXPECT_EQ(registryRootOf("HKEY_USERS"), RegistryRoot::kUsers);
    EXPECT_EQ(registryRootOf("HKLM"), std::nullopt);
    EXPECT_EQ(registryRootOf("HKEY_USERS2"), std::nullopt);
    EXPECT_EQ(registryRootOf(""), std::nullopt);
    EXPECT_EQ(registryRootOf(nullptr), std::nullopt);
}

TEST(RegistryAccessTest, readsValuesAndListsKeys) {
    MemoryRegistry registry;
    registry.addKey(RegistryRoot::kCurrentUser, "Software\\Demo\\Sub");
    registry.addText(RegistryRoot::kCurrentUser, "Software\\Demo", "Root", "/app");
    SystemRegistryValue value;
    EXPECT_TRUE(readRegistryValue(registry, "HKEY_CURRENT_USER", "Software\\Demo", "Root", value));
    EXPECT_EQ(value.type, platform::kRegString);
    EXPECT_EQ(value.data, "/app");
    EXPECT_FALSE(readRegistryValue(registry, "HKEY_CURRENT_USER", "Software\\Demo", "None", value));
    EXPECT_FALSE(readRegistryValue(registry, "HKEY_USERS", "Software\\Demo", "Root", value));
    EXPECT_FALSE(readRegistryValue(registry, "elsewhere", "Software\\Demo", "Root", value));
    std::vector<std::string> names;
    EXPECT_TRUE(listRegistryKeys(registry, "HKEY_CURRENT_USER", "Software\\Demo", names));
    EXPECT_EQ(names, std::vector<std::string>{"Sub"});
    EXPECT_FALSE(listRegistryKeys(registry, "HKEY_CURRENT_USER", "None", names));
    EXPECT_FALSE(listRegistryKeys(registry, "elsewhere", "Software", names));
}

}  // namespace
