#include "platform/program.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "platform/memory/memory_registry.h"

namespace {

using platform::administratorDirectories;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

constexpr char kVersionKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr char kValue[] = "ProgramFilesDir";

class AdministratorDirectories : public testing::Test {
protected:
    void put(const RegistryValue& value) {
        int created = 0;
        ASSERT_EQ(
            registry_.createKey(RegistryRoot::kLocalMachine, kVersionKey, RegistryView::kNative, created), 0);
        ASSERT_EQ(registry_.writeValue(RegistryRoot::kLocalMachine, kVersionKey, RegistryView::kNative,
                                       kValue, value),
                  0);
    }

    MemoryRegistry registry_;
};

TEST_F(AdministratorDirectories, AreTheProgramDirectoryOfTheRegistry) {
    put({platform::kRegString, "D:\\Programs"});
    EXPECT_EQ(administratorDirectories(registry_), std::vector<std::string>{"D:\\Programs"});
}

TEST_F(AdministratorDirectories, AreNoneWithoutTheKeyOrTheValue) {
    EXPECT_TRUE(administratorDirectories(registry_).empty());
    int created = 0;
    registry_.createKey(RegistryRoot::kLocalMachine, kVersionKey, RegistryView::kNative, created);
    EXPECT_TRUE(administratorDirectories(registry_).empty());
}

TEST_F(AdministratorDirectories, AreNoneWhenTheValueIsNoText) {
    put({platform::kRegDword, std::string(4, 'C')});
    EXPECT_TRUE(administratorDirectories(registry_).empty());
    put({platform::kRegString, ""});
    EXPECT_TRUE(administratorDirectories(registry_).empty());
}

TEST_F(AdministratorDirectories, AreNoneWhenTheTextIsLongerThanAnyDirectory) {
    put({platform::kRegString, "C:\\" + std::string(516, 'x')});
    EXPECT_EQ(administratorDirectories(registry_).size(), 1U);
    put({platform::kRegString, "C:\\" + std::string(517, 'x')});
    EXPECT_TRUE(administratorDirectories(registry_).empty());
}

TEST(OwnImage, IsAnAbsolutePath) {
    std::string path;
    ASSERT_TRUE(platform::ownImagePath(path));
    EXPECT_EQ(path[1], ':');
    EXPECT_EQ(path[2], '\\');
}

TEST(LastSystemError, IsTheSystemsNumber) {
    SetLastError(4711);
    EXPECT_EQ(platform::lastSystemError(), 4711);
}

}  // namespace
