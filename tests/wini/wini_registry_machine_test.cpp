#include <gtest/gtest.h>

#include "engine/changes/registry_change.h"
#include "wini/machine_fixture.h"

namespace {

using platform::kRegNotFound;
using platform::kRegOk;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

constexpr char kUser[] = "HKEY_CURRENT_USER";

// Changes to the registry of this machine.
class WiniRegistryMachineTest : public MachineTest {
protected:
    void SetUp() override {
        int created = 0;
        ASSERT_EQ(machine_.registry.createKey(RegistryRoot::kCurrentUser, "Software", RegistryView::kNative,
                                              created),
                  kRegOk);
        removeAll();
    }
    void TearDown() override { removeAll(); }

    void removeAll() {
        for (const char* key : {"a\\b", "a\\foreign", "a", ""}) {
            machine_.registry.deleteKey(RegistryRoot::kCurrentUser,
                                        std::string("Software\\TandrelWiniTest\\") + key,
                                        RegistryView::kNative);
        }
    }
    std::optional<int> write(std::string_view path, std::string_view type, std::string_view data,
                             int& outCreated) {
        const auto result =
            RegistryChange::writeValue(machine_.registry, {{kUser, path}, "Name", type, data});
        outCreated = result.createdLevels;
        return result.status;
    }
    RegistryValue userValue(const char* key) {
        RegistryValue value;
        EXPECT_EQ(machine_.registry.readValue(RegistryRoot::kCurrentUser, key, RegistryView::kNative, "Name",
                                              value),
                  kRegOk);
        return value;
    }
    int testUserKey(const char* key) {
        return machine_.registry.testKey(RegistryRoot::kCurrentUser, key, RegistryView::kNative);
    }
};

TEST_F(WiniRegistryMachineTest, WritesValuesOfEachTypeAndTakesThemBack) {
    constexpr char kKey[] = "Software\\TandrelWiniTest\\a\\b";
    int created = 0;
    EXPECT_EQ(write("Software/TandrelWiniTest/a/b", "REG_DWORD", "ff", created), kRegOk);
    EXPECT_EQ(created, 3);
    EXPECT_EQ(userValue(kKey).type, platform::kRegDword);
    EXPECT_EQ(userValue(kKey).data, std::string("\xff\0\0\0", 4));
    EXPECT_EQ(write(kKey, "REG_BINARY", "00Ff", created), 0);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegBinary);
    EXPECT_EQ(userValue(kKey).data, std::string("\0\xff", 2));
    EXPECT_EQ(write(kKey, "", "Gr\xc3\xbc\xc3\x9f", created), 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegString);
    EXPECT_EQ(userValue(kKey).data, "Gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(write(kKey, "REG_OTHER", "x", created), 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegString);
    EXPECT_EQ(userValue(kKey).data, "");
    EXPECT_EQ(RegistryChange::deleteValue(machine_.registry, {kUser, kKey}, "Name"), 0);
    EXPECT_EQ(RegistryChange::deleteValue(machine_.registry, {kUser, kKey}, "Name"), kRegNotFound);
    EXPECT_EQ(RegistryChange::deleteKeys(machine_.registry, {kUser, kKey}, 3), 3);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
    EXPECT_EQ(testUserKey("Software"), kRegOk);
}

TEST_F(WiniRegistryMachineTest, KeepsAForeignSubkey) {
    EXPECT_EQ(RegistryChange::createKey(machine_.registry, {kUser, "Software/TandrelWiniTest/a/b"}), 3);
    EXPECT_EQ(RegistryChange::createKey(machine_.registry, {kUser, "Software/TandrelWiniTest/a/b"}), 0);
    EXPECT_EQ(RegistryChange::createKey(machine_.registry, {kUser, "Software/TandrelWiniTest/a/foreign"}), 1);
    EXPECT_EQ(RegistryChange::deleteKeys(machine_.registry, {kUser, "Software/TandrelWiniTest/a/b"}, 3), 1);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest\\a\\foreign"), kRegOk);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest\\a\\b"), kRegNotFound);
}

TEST_F(WiniRegistryMachineTest, LeavesNoLevelOfAKeyThatCanNotBeMade) {
    const std::string path = "Software/TandrelWiniTest/a/" + std::string(300, 'k');
    EXPECT_EQ(RegistryChange::createKey(machine_.registry, {kUser, path}), 0);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
    int created = 77;
    EXPECT_NE(write(path, "", "x", created), 0);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
}

}  // namespace
