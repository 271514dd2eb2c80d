#include <windows.h>

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/windows/wide_text.h"

namespace {

using platform::Protection;

class WindowsFileSystemProtectionTest : public testing::Test {
protected:
    platform::FileSystem& files_ = platform::systemFileSystem();
    TemporaryDirectory directory_;
};

TEST_F(WindowsFileSystemProtectionTest, GivesShortAndOtherSpellingsTheirOneName) {
    writeTestFile(directory_.file("A long file name.txt"), "x");
    std::wstring shortName(MAX_PATH, L'\0');
    const std::wstring longName = platform::systemPath(directory_.file("A long file name.txt"));
    const DWORD length = GetShortPathNameW(longName.c_str(), shortName.data(), MAX_PATH);
    ASSERT_GT(length, 0U);
    shortName.resize(length);
    std::string real;
    std::string realOfShort;
    ASSERT_EQ(files_.realPath(directory_.file("A LONG file name.txt"), real), 0);
    EXPECT_TRUE(real.ends_with("\\A long file name.txt")) << real;
    ASSERT_EQ(files_.realPath(platform::utf8Of(shortName), realOfShort), 0);
    EXPECT_EQ(realOfShort, real);
}

TEST_F(WindowsFileSystemProtectionTest, WhatEverybodyMayChangeIsNotProtected) {
    const std::string path = directory_.file("open");
    writeTestFile(path, "x");
    SECURITY_DESCRIPTOR everybody;
    ASSERT_NE(InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION), 0);
    ASSERT_NE(SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE), 0);
    ASSERT_NE(SetFileSecurityW(platform::systemPath(path).c_str(), DACL_SECURITY_INFORMATION, &everybody), 0);
    EXPECT_FALSE(files_.isProtected(path, Protection::kUserAndAdministrators));
    EXPECT_FALSE(files_.isProtected(path, Protection::kAdministrators));
}

TEST_F(WindowsFileSystemProtectionTest, HasTheSystemRemoveWhatIsInUse) {
    const std::string path = directory_.file("later");
    writeTestFile(path, "x");
    ASSERT_EQ(files_.removeAtRestart(path), 0);
    EXPECT_TRUE(testFileExists(path));
    DWORD size = 0;
    std::wstring pending(0x10000, L'\0');
    size = static_cast<DWORD>(pending.size() * sizeof(wchar_t));
    ASSERT_EQ(
        RegGetValueW(HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Control\\Session Manager",
                     L"PendingFileRenameOperations", RRF_RT_REG_MULTI_SZ, nullptr, pending.data(), &size),
        ERROR_SUCCESS);
    EXPECT_NE(pending.find(platform::systemPath(path)), std::wstring::npos);
}

TEST(WindowsSharedNamesTest, AnotherObjectUnderTheNameOfAnEventIsNotUsed) {
    const std::string name = "TandrelTestMutex" + std::to_string(GetCurrentProcessId());
    const platform::Handle mutex(CreateMutexW(nullptr, FALSE, platform::wideOf(name).c_str()));
    ASSERT_TRUE(mutex);
    EXPECT_EQ(platform::systemNamedEvents().create(name), nullptr);
    EXPECT_FALSE(platform::systemNamedEvents().signal(name));
}

}  // namespace
