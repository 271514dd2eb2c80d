#include <gtest/gtest.h>

#include "engine/changes/own_registry.h"
#include "engine/changes/registry_change.h"

namespace {

using platform::kRegNotFound;
using platform::kRegOk;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

constexpr char kUser[] = "HKEY_CURRENT_USER";

class RegistryChangeMachineTest : public testing::Test {
protected:
    void SetUp() override {
        int created = 0;
        ASSERT_EQ(registry_.createKey(RegistryRoot::kCurrentUser, "Software", RegistryView::kNative, created),
                  kRegOk);
        removeAll();
    }
    void TearDown() override { removeAll(); }

    void removeAll() {
        for (const char* key : {"a\\b", "a\\foreign", "a", ""}) {
            registry_.deleteKey(RegistryRoot::kCurrentUser,
                                std::string("Software\\TandrelChangeTest\\") + key, RegistryView::kNative);
        }
    }
    RegistryChange::WriteResult write(std::string_view path, std::string_view type, std::string_view data) {
        return RegistryChange::writeValue(registry_, {{kUser, path}, "Name", type, data});
    }
    int createKey(std::string_view path) { return RegistryChange::createKey(registry_, {kUser, path}); }
    int deleteKeys(std::string_view path, int levels) {
        return RegistryChange::deleteKeys(registry_, {kUser, path}, levels);
    }
    void expectValue(std::string_view key, std::uint32_t type, std::string_view data) {
        RegistryValue value;
        EXPECT_EQ(registry_.readValue(RegistryRoot::kCurrentUser, key, RegistryView::kNative, "Name", value),
                  kRegOk);
        EXPECT_EQ(value.type, type);
        EXPECT_EQ(value.data, data);
    }
    int testKey(std::string_view key) {
        return registry_.testKey(RegistryRoot::kCurrentUser, key, RegistryView::kNative);
    }

    platform::Registry& registry_ = platform::systemRegistry();
};

TEST_F(RegistryChangeMachineTest, WritesValuesOfEachTypeAndTakesThemBack) {
    constexpr char kKey[] = "Software\\TandrelChangeTest\\a\\b";
    const auto first = write("Software/TandrelChangeTest/a/b", "REG_DWORD", "ff");
    EXPECT_TRUE(first.isDone());
    EXPECT_EQ(first.createdLevels, 3);
    expectValue(kKey, platform::kRegDword, std::string_view("\xff\0\0\0", 4));
    const auto second = write(kKey, "REG_BINARY", "00Ff");
    EXPECT_TRUE(second.isDone());
    EXPECT_EQ(second.createdLevels, 0);
    expectValue(kKey, platform::kRegBinary, std::string_view("\0\xff", 2));
    EXPECT_TRUE(write(kKey, "", "Gr\xc3\xbc\xc3\x9f").isDone());
    expectValue(kKey, platform::kRegString, "Gr\xc3\xbc\xc3\x9f");
    EXPECT_TRUE(write(kKey, "REG_OTHER", "x").isDone());
    expectValue(kKey, platform::kRegString, "");
    EXPECT_EQ(RegistryChange::deleteValue(registry_, {kUser, kKey}, "Name"), kRegOk);
    EXPECT_EQ(RegistryChange::deleteValue(registry_, {kUser, kKey}, "Name"), kRegNotFound);
    EXPECT_EQ(deleteKeys(kKey, 3), 3);
    EXPECT_EQ(testKey("Software\\TandrelChangeTest"), kRegNotFound);
    EXPECT_EQ(testKey("Software"), kRegOk);
}

TEST_F(RegistryChangeMachineTest, KeepsAForeignSubkey) {
    EXPECT_EQ(createKey("Software/TandrelChangeTest/a/b"), 3);
    EXPECT_EQ(createKey("Software/TandrelChangeTest/a/b"), 0);
    EXPECT_EQ(createKey("Software/TandrelChangeTest/a/foreign"), 1);
    EXPECT_EQ(deleteKeys("Software/TandrelChangeTest/a/b", 3), 1);
    EXPECT_EQ(testKey("Software\\TandrelChangeTest\\a\\foreign"), kRegOk);
    EXPECT_EQ(testKey("Software\\TandrelChangeTest\\a\\b"), kRegNotFound);
}

TEST_F(RegistryChangeMachineTest, LeavesNoLevelOfAKeyThatCannotBeMade) {
    const std::string path = "Software/TandrelChangeTest/a/" + std::string(300, 'k');
    EXPECT_EQ(createKey(path), 0);
    EXPECT_EQ(testKey("Software\\TandrelChangeTest"), kRegNotFound);
    const auto result = write(path, "", "x");
    EXPECT_FALSE(result.isDone());
    EXPECT_EQ(result.createdLevels, 0);
    EXPECT_EQ(testKey("Software\\TandrelChangeTest"), kRegNotFound);
}

}  // namespace
