#include "platform/memory/memory_registry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using platform::RegistryRoot;
using platform::RegistryView;
constexpr RegistryRoot kMachine = RegistryRoot::kLocalMachine;
constexpr RegistryView kNative = RegistryView::kNative;

class MemoryRegistryTest : public testing::Test {
protected:
    std::vector<std::string> keys(const char* path) {
        std::vector<std::string> names;
        EXPECT_EQ(0, registry_.listKeys(kMachine, path, kNative, names));
        return names;
    }

    MemoryRegistry registry_;
    int created_ = 99;
};

TEST_F(MemoryRegistryTest, CountsTheLevelsThatItMakes) {
    EXPECT_EQ(0, registry_.createKey(kMachine, "Soft\\A\\B", kNative, created_));
    EXPECT_EQ(3, created_);
    EXPECT_EQ(0, registry_.createKey(kMachine, "soft\\a\\C", kNative, created_));
    EXPECT_EQ(1, created_);
    EXPECT_EQ(0, registry_.createKey(kMachine, "SOFT", kNative, created_));
    EXPECT_EQ(0, created_);
    EXPECT_EQ((std::vector<std::string>{"B", "C"}), keys("Soft\\A"));
    EXPECT_EQ((std::vector<std::string>{"Soft"}), keys(""));
}

TEST_F(MemoryRegistryTest, KeepsRootsAndViewsApart) {
    registry_.addKey(kMachine, "A");
    EXPECT_EQ(0, registry_.testKey(kMachine, "a", kNative));
    EXPECT_EQ(platform::kRegNotFound, registry_.testKey(kMachine, "A", RegistryView::k32Bit));
    EXPECT_EQ(platform::kRegNotFound, registry_.testKey(RegistryRoot::kUsers, "A", kNative));
}

TEST_F(MemoryRegistryTest, DeletesKeysWithoutSubkeysOnly) {
    registry_.addText(kMachine, "A\\B", "v", "x");
    registry_.addKey(kMachine, "AB");
    EXPECT_EQ(platform::kRegAccessDenied, registry_.deleteKey(kMachine, "A", kNative));
    EXPECT_EQ(0, registry_.deleteKey(kMachine, "A\\B", kNative));
    EXPECT_EQ(0, registry_.deleteKey(kMachine, "A", kNative));
    EXPECT_EQ(platform::kRegNotFound, registry_.deleteKey(kMachine, "A", kNative));
    EXPECT_EQ((std::vector<std::string>{"AB"}), keys(""));
}

TEST_F(MemoryRegistryTest, KeepsValuesByNameInAnyCase) {
    registry_.addKey(kMachine, "A");
    platform::RegistryValue value{platform::kRegDword, std::string("\1\0\0\0", 4)};
    EXPECT_EQ(0, registry_.writeValue(kMachine, "A", kNative, "Name", value));
    EXPECT_EQ(0, registry_.writeValue(kMachine, "A", kNative, "", {platform::kRegString, "default"}));
    platform::RegistryValue read;
    EXPECT_EQ(0, registry_.readValue(kMachine, "a", kNative, "NAME", read));
    EXPECT_EQ(platform::kRegDword, read.type);
    EXPECT_EQ(value.data, read.data);
    std::vector<std::string> names;
    EXPECT_EQ(0, registry_.listValues(kMachine, "A", kNative, names));
    EXPECT_EQ((std::vector<std::string>{"", "Name"}), names);
    EXPECT_EQ(0, registry_.deleteValue(kMachine, "A", kNative, "name"));
    EXPECT_EQ(platform::kRegNotFound, registry_.readValue(kMachine, "A", kNative, "Name", read));
    EXPECT_EQ(platform::kRegNotFound, registry_.deleteValue(kMachine, "A", kNative, "name"));
    EXPECT_EQ(platform::kRegNotFound, registry_.writeValue(kMachine, "B", kNative, "Name", value));
    ASSERT_NE(nullptr, registry_.value(kMachine, "A", ""));
    EXPECT_EQ("default", registry_.value(kMachine, "A", "")->data);
}

TEST_F(MemoryRegistryTest, RefusesBelowItsBarriers) {
    registry_.addText(kMachine, "A\\B", "v", "x");
    registry_.setReadOnly("a");
    platform::RegistryValue value;
    EXPECT_EQ(0, registry_.readValue(kMachine, "A\\B", kNative, "v", value));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.writeValue(kMachine, "A\\B", kNative, "v", value));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.deleteValue(kMachine, "A\\B", kNative, "v"));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.deleteKey(kMachine, "A\\B", kNative));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.createKey(kMachine, "A\\C", kNative, created_));
    EXPECT_EQ(0, created_);
    EXPECT_EQ(0, registry_.createKey(kMachine, "AB", kNative, created_));
    registry_.setForbidden("A");
    EXPECT_EQ(platform::kRegAccessDenied, registry_.readValue(kMachine, "A\\B", kNative, "v", value));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.testKey(kMachine, "A", kNative));
}

TEST_F(MemoryRegistryTest, RefusesOneOperationOfAKind) {
    using Operation = MemoryRegistry::Operation;
    registry_.addText(kMachine, "A", "v", "x");
    registry_.failAt(Operation::kReadValue, 2);
    platform::RegistryValue value;
    EXPECT_EQ(0, registry_.readValue(kMachine, "A", kNative, "v", value));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.readValue(kMachine, "A", kNative, "v", value));
    EXPECT_EQ(0, registry_.readValue(kMachine, "A", kNative, "v", value));
    for (const Operation operation :
         {Operation::kCreateKey, Operation::kDeleteKey, Operation::kWriteValue, Operation::kDeleteValue}) {
        registry_.failAt(operation, 1);
    }
    EXPECT_EQ(platform::kRegAccessDenied, registry_.createKey(kMachine, "B", kNative, created_));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.writeValue(kMachine, "A", kNative, "v", {}));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.deleteValue(kMachine, "A", kNative, "v"));
    EXPECT_EQ(platform::kRegAccessDenied, registry_.deleteKey(kMachine, "A", kNative));
    EXPECT_EQ(0, registry_.deleteKey(kMachine, "A", kNative));
}

TEST_F(MemoryRegistryTest, RecordsChanges) {
    registry_.createKey(kMachine, "A", RegistryView::k32Bit, created_);
    registry_.writeValue(RegistryRoot::kCurrentUser, "B", kNative, "n", {});
    EXPECT_EQ((std::vector<std::string>{"createKey HKLM\\A (32)", "writeValue HKCU\\B:n"}),
              registry_.operations);
}

}  // namespace
