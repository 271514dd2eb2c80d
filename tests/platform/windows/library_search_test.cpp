#include "platform/windows/library_search.h"

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "platform/program.h"
#include "platform/windows/child_program.h"
#include "platform/windows/wide_text.h"

namespace {

using platform::findProgram;
using platform::systemPath;

std::wstring lowerCase(std::wstring text) {
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring systemFile(const wchar_t* name) {
    wchar_t directory[MAX_PATH]{};
    EXPECT_NE(GetSystemDirectoryW(directory, MAX_PATH), 0U);
    return lowerCase(std::wstring(directory) + L"\\" + name);
}

// A directory with a program and a library, and the environment and current directory of this process, which
// come back afterwards.
class PlantedTest : public testing::Test {
protected:
    PlantedTest() {
        EXPECT_NE(GetCurrentDirectoryW(MAX_PATH, before_), 0U);
        path_.resize(GetEnvironmentVariableW(L"PATH", nullptr, 0));
        path_.resize(GetEnvironmentVariableW(L"PATH", path_.data(), static_cast<DWORD>(path_.size())));
        writeTestFile(directory_.file("tandrel-planted.exe"), "found, not started");
        EXPECT_NE(SetCurrentDirectoryW(planted().c_str()), 0);
    }
    ~PlantedTest() override {
        EXPECT_NE(SetCurrentDirectoryW(before_), 0);
        setPath(path_);
    }

    static void setPath(const std::wstring& path) {
        EXPECT_NE(SetEnvironmentVariableW(L"PATH", path.c_str()), 0);
    }
    std::wstring planted() const { return systemPath(directory_.path()); }

    const TemporaryDirectory directory_;

private:
    wchar_t before_[MAX_PATH]{};
    std::wstring path_;
};

using FindProgram = PlantedTest;

TEST_F(FindProgram, LooksIntoTheDirectoryOfTheSystem) {
    setPath(L"");
    EXPECT_EQ(lowerCase(findProgram(L"cmd.exe")), systemFile(L"cmd.exe"));
    EXPECT_EQ(lowerCase(findProgram(L"cmd")), systemFile(L"cmd.exe"));
}

TEST_F(FindProgram, LooksIntoTheDirectoriesOfPath) {
    setPath(L"C:\\tandrel-none;" + planted());
    EXPECT_EQ(lowerCase(findProgram(L"tandrel-planted")), lowerCase(planted() + L"\\tandrel-planted.exe"));
}

TEST_F(FindProgram, DoesNotLookIntoTheCurrentDirectory) {
    for (const wchar_t* path : {L"", L".", L";", L".;;..", L"C:;C:."}) {
        setPath(path);
        EXPECT_EQ(findProgram(L"tandrel-planted.exe"), L"") << path;
    }
}

TEST_F(FindProgram, PrefersTheDirectoryOfTheSystem) {
    writeTestFile(directory_.file("cmd.exe"), "planted");
    setPath(planted());
    EXPECT_EQ(lowerCase(findProgram(L"cmd.exe")), systemFile(L"cmd.exe"));
}

TEST_F(FindProgram, FindsNothingForAnEmptyName) {
    EXPECT_EQ(findProgram(L""), L"");
}

TEST(LoadSystemLibrary, LoadsItFromTheDirectoryOfTheSystem) {
    const HMODULE library = platform::loadSystemLibrary(L"bcrypt.dll");
    ASSERT_NE(library, nullptr);
    wchar_t path[MAX_PATH]{};
    ASSERT_NE(GetModuleFileNameW(library, path, MAX_PATH), 0U);
    EXPECT_EQ(lowerCase(path), systemFile(L"bcrypt.dll"));
    EXPECT_EQ(platform::loadSystemLibrary(L"tandrel-none.dll"), nullptr);
}

// Not a test: the search order can't be taken back, so this runs in a process of its own.
TEST(LibrarySearch, DISABLED_findsALibraryOfTheCurrentDirectoryOnlyBefore) {
    const TemporaryDirectory directory;
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    // Any image will do that is only to be mapped.
    ASSERT_NE(
        CopyFileW(systemPath(image).c_str(), systemPath(directory.file("tandrel-planted.dll")).c_str(), TRUE),
        0);
    ASSERT_NE(SetCurrentDirectoryW(systemPath(directory.path()).c_str()), 0);
    const HMODULE before = LoadLibraryExW(L"tandrel-planted.dll", nullptr, DONT_RESOLVE_DLL_REFERENCES);
    ASSERT_NE(before, nullptr) << GetLastError();
    FreeLibrary(before);
    platform::searchLibrariesInSystemOnly();
    EXPECT_EQ(LoadLibraryExW(L"tandrel-planted.dll", nullptr, DONT_RESOLVE_DLL_REFERENCES), nullptr);
    EXPECT_NE(LoadLibraryExW(L"version.dll", nullptr, 0), nullptr);
    SetCurrentDirectoryW(L"C:\\");
}

TEST(LibrarySearch, LeavesOutTheCurrentDirectory) {
    const ChildResult result =
        runChild("LibrarySearch.DISABLED_findsALibraryOfTheCurrentDirectoryOnlyBefore", "");
    EXPECT_EQ(result.exitCode, 0) << result.output << result.error;
}

}  // namespace
