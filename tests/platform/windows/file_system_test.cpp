#include "platform/file_system.h"

#include <windows.h>

#include <aclapi.h>
#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "platform/program.h"
#include "platform/windows/wide_text.h"

namespace {

using platform::Disposition;
using platform::File;
using platform::OpenOptions;
using platform::systemFileSystem;

class WindowsFileSystem : public testing::Test {
protected:
    static int open(const std::string& path, const OpenOptions& options, std::unique_ptr<File>& outFile) {
        return systemFileSystem().open(path.c_str(), options, outFile);
    }

    TemporaryDirectory directory_;
    std::unique_ptr<File> file_;
    std::unique_ptr<File> other_;
};

TEST_F(WindowsFileSystem, EnforcesTheShareModes) {
    const std::string path = directory_.file("shared.txt");
    writeTestFile(path, "content");
    ASSERT_EQ(open(path, {.access = platform::kWrite, .share = platform::kShareRead}, file_), 0);
    EXPECT_EQ(open(path, {.access = platform::kWrite, .share = platform::kShareRead}, other_),
              ERROR_SHARING_VIOLATION);
    EXPECT_EQ(other_, nullptr);
    EXPECT_EQ(open(path, {.access = platform::kRead, .share = platform::kShareRead}, other_),
              ERROR_SHARING_VIOLATION);
    EXPECT_EQ(open(path, {.access = platform::kRead, .share = platform::kShareRead | platform::kShareWrite},
                   other_),
              0);
    EXPECT_EQ(systemFileSystem().removeFile(path.c_str()), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(systemFileSystem().moveFile(path.c_str(), directory_.file("to").c_str()),
              ERROR_SHARING_VIOLATION);
}

TEST_F(WindowsFileSystem, GivesTheSizeOfAFileThatNobodyElseMayOpen) {
    const std::string path = directory_.file("locked.txt");
    writeTestFile(path, "12345");
    ASSERT_EQ(
        open(path, {.access = platform::kRead | platform::kWrite, .share = platform::kShareNone}, file_), 0);
    EXPECT_EQ(systemFileSystem().fileSize(path.c_str()), 5);
    EXPECT_TRUE(systemFileSystem().exists(path.c_str()));
}

TEST_F(WindowsFileSystem, GivesPrivateFilesToThisUserAlone) {
    const std::string path = directory_.file("private.txt");
    const OpenOptions options{.access = platform::kRead | platform::kWrite,
                              .disposition = Disposition::kCreatePrivate};
    ASSERT_EQ(open(path, options, file_), 0);
    EXPECT_EQ(open(path, options, other_), ERROR_FILE_EXISTS);

    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ASSERT_EQ(GetNamedSecurityInfoW(platform::systemPath(path.c_str()).c_str(), SE_FILE_OBJECT,
                                    DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr, &descriptor),
              static_cast<DWORD>(ERROR_SUCCESS));
    ASSERT_NE(list, nullptr);
    EXPECT_GT(list->AceCount, 0);
    for (WORD i = 0; i < list->AceCount; i++) {
        void* entry = nullptr;
        ASSERT_NE(GetAce(list, i, &entry), 0);
        auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        EXPECT_FALSE(allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                     IsWellKnownSid(&allowed->SidStart, WinWorldSid) && allowed->Mask != 0)
            << "everybody may do " << allowed->Mask;
    }
    LocalFree(descriptor);
}

// What the system stores of the access list, as a text that can be compared.
std::string accessListOf(const std::string& path) {
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    EXPECT_EQ(GetNamedSecurityInfoW(platform::systemPath(path).c_str(), SE_FILE_OBJECT,
                                    DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr, &descriptor),
              static_cast<DWORD>(ERROR_SUCCESS));
    const auto* bytes = reinterpret_cast<const char*>(list);
    const std::string text = list != nullptr ? std::string(bytes, bytes + list->AclSize) : std::string();
    LocalFree(descriptor);
    return text;
}

TEST_F(WindowsFileSystem, GivesAPrivateFileTheRightsOfItsDirectory) {
    const std::string path = directory_.file("private.txt");
    const std::string plain = directory_.file("plain.txt");
    writeTestFile(plain, "x");
    ASSERT_EQ(open(path, {.access = platform::kWrite, .disposition = Disposition::kCreatePrivate}, file_), 0);
    file_.reset();
    ASSERT_NE(accessListOf(path), accessListOf(plain));
    EXPECT_EQ(systemFileSystem().takeDirectoryRights(path), 0);
    EXPECT_EQ(accessListOf(path), accessListOf(plain));
}

TEST_F(WindowsFileSystem, GivesNoRightsToWhatIsNotThere) {
    EXPECT_EQ(systemFileSystem().takeDirectoryRights(directory_.file("none")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(systemFileSystem().takeDirectoryRights("nul"), ERROR_INVALID_NAME);
}

TEST_F(WindowsFileSystem, RefusesDevices) {
    for (const char* name : {"nul", "con.log", "COM1", "aux.txt"}) {
        const std::string path = directory_.file(name);
        EXPECT_EQ(open(path, {.access = platform::kWrite, .disposition = Disposition::kOpenOrCreate}, file_),
                  ERROR_INVALID_NAME)
            << name;
        EXPECT_EQ(file_, nullptr);
        EXPECT_FALSE(systemFileSystem().exists(path.c_str())) << name;
        EXPECT_EQ(systemFileSystem().createDirectory(path.c_str()), ERROR_INVALID_NAME) << name;
        EXPECT_EQ(systemFileSystem().removeFile(path.c_str()), ERROR_INVALID_NAME) << name;
    }
    writeTestFile(directory_.file("a"), "");
    EXPECT_EQ(systemFileSystem().moveFile(directory_.file("a").c_str(), directory_.file("prn").c_str()),
              ERROR_INVALID_NAME);
    EXPECT_EQ(open("\\\\.\\pipe\\tandrel-test", {}, file_), ERROR_INVALID_NAME);
}

TEST_F(WindowsFileSystem, WorksWithPathsOverTheOldLimit) {
    std::string path = directory_.path();
    for (int i = 0; i < 4; i++) {
        path += "/" + std::string(100, static_cast<char>('a' + i));
        ASSERT_EQ(systemFileSystem().createDirectory(path.c_str()), 0) << path;
    }
    const std::string file = path + "/file.txt";
    ASSERT_EQ(open(file, {.access = platform::kWrite, .disposition = Disposition::kCreateNew}, file_), 0);
    file_.reset();
    EXPECT_EQ(systemFileSystem().fileSize(file.c_str()), 0);
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(systemFileSystem().list(path.c_str(), entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, "file.txt");
    EXPECT_EQ(systemFileSystem().replaceFile(file.c_str(), (path + "/other").c_str()), 0);
    EXPECT_EQ(systemFileSystem().removeFile((path + "/other").c_str()), 0);
}

TEST_F(WindowsFileSystem, DoesNotTouchARunningProgram) {
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    EXPECT_NE(systemFileSystem().removeFile(image.c_str()), 0);
    EXPECT_NE(open(image, {.access = platform::kWrite, .share = 7}, file_), 0);
    EXPECT_EQ(open(image, {}, file_), 0);
}

TEST_F(WindowsFileSystem, TakesNoWildcardForAnEntry) {
    writeTestFile(directory_.file("one.txt"), "1");
    EXPECT_FALSE(systemFileSystem().exists(directory_.file("*.txt").c_str()));
    EXPECT_EQ(systemFileSystem().fileSize(directory_.file("?ne.txt").c_str()), -1);
    EXPECT_EQ(systemFileSystem().removeFile(directory_.file("*").c_str()), ERROR_INVALID_NAME);
}

TEST_F(WindowsFileSystem, ListsTheRootOfADrive) {
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(systemFileSystem().list("C:\\", entries), 0);
    EXPECT_FALSE(entries.empty());
    EXPECT_EQ(systemFileSystem().list("C:/", entries), 0);
    EXPECT_FALSE(entries.empty());
}

TEST_F(WindowsFileSystem, FormsTemporaryNamesFromTheLowHalfOfTheNumber) {
    std::string temporary;
    ASSERT_TRUE(systemFileSystem().temporaryDirectory(temporary));
    EXPECT_TRUE(systemFileSystem().isDirectory(temporary.c_str()));
    EXPECT_NE(temporary.back(), '\\');
    std::string path;
    ASSERT_TRUE(systemFileSystem().temporaryName("orinstall", 0x1ABCD, path));
    EXPECT_EQ(_stricmp(path.c_str(), (temporary + "\\oriABCD.tmp").c_str()), 0) << path;
    ASSERT_TRUE(systemFileSystem().temporaryName("orinstall", 0x70000, path));
    EXPECT_EQ(_stricmp(path.c_str(), (temporary + "\\ori7.tmp").c_str()), 0) << path;
    EXPECT_FALSE(systemFileSystem().exists(path.c_str()));
}

TEST_F(WindowsFileSystem, FailsToSeekBeforeTheStart) {
    writeTestFile(directory_.file("f"), "abc");
    ASSERT_EQ(open(directory_.file("f"), {}, file_), 0);
    std::int64_t position = 0;
    EXPECT_EQ(file_->seek(-1, platform::Origin::kStart, position), ERROR_NEGATIVE_SEEK);
}

TEST_F(WindowsFileSystem, SeesTheMarksOfADirectory) {
    const std::string path = directory_.file("d");
    ASSERT_EQ(systemFileSystem().createDirectory(path.c_str()), 0);
    EXPECT_TRUE(systemFileSystem().isOrdinaryDirectory(path.c_str()));
    for (const DWORD mark : {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM}) {
        ASSERT_NE(SetFileAttributesW(platform::wideOf(path.c_str()).c_str(), mark), 0);
        EXPECT_FALSE(systemFileSystem().isOrdinaryDirectory(path.c_str())) << mark;
    }
    EXPECT_FALSE(systemFileSystem().isOrdinaryDirectory(directory_.file("none").c_str()));
}

TEST_F(WindowsFileSystem, AnOpenFileTakesTheAttributesOfAFileThatCanBeWrittenTo) {
    const std::string from = directory_.file("from");
    const std::string to = directory_.file("to");
    writeTestFile(from, "a");
    const OpenOptions options{.access = platform::kWrite, .disposition = Disposition::kCreatePrivate};
    ASSERT_EQ(open(to, options, file_), 0);
    ASSERT_NE(SetFileAttributesA(from.c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
    EXPECT_EQ(file_->takeRightsOf(from), 0);
    EXPECT_EQ(GetFileAttributesA(to.c_str()) & FILE_ATTRIBUTE_HIDDEN, DWORD{FILE_ATTRIBUTE_HIDDEN});
    const std::string hidden = systemFileSystem().rightsOf(from);
    ASSERT_NE(SetFileAttributesA(from.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_EQ(file_->takeRightsOf(from), ERROR_ACCESS_DENIED);
    EXPECT_EQ(systemFileSystem().rightsOf(from), "");
    ASSERT_NE(SetFileAttributesA(from.c_str(), FILE_ATTRIBUTE_NORMAL), 0);
    EXPECT_NE(systemFileSystem().rightsOf(from), hidden);
}

// A file with this name was listed as "..\\victim" once.
TEST_F(WindowsFileSystem, ListsNoNameThatLeadsElsewhere) {
    const std::wstring separator = L"\xDBC0\xDC5C";  // 0x100000 + '\\'
    const std::wstring base = platform::systemPath(directory_.path()) + L"\\";
    for (const std::wstring& name :
         {L".." + separator + L"victim", std::wstring(L"\xDBC0\xDCC3\xDBC0\xDCA9")}) {
        const platform::Handle made(CreateFileW((base + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(made);
    }
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(systemFileSystem().openDirectory(directory_.path(), opened), 0);
    std::vector<platform::DirectoryEntry> entries;
    std::vector<platform::DirectoryEntry> same;
    ASSERT_EQ(systemFileSystem().list(directory_.path(), entries), 0);
    ASSERT_EQ(opened->list(same), 0);
    // The bytes of the second name would come back as another one.
    ASSERT_EQ(entries.size(), 1U);
    ASSERT_EQ(same.size(), 1U);
    EXPECT_EQ(entries[0].name, "..\xF4\x80\x81\x9Cvictim");
    EXPECT_EQ(same[0].name, entries[0].name);
    EXPECT_EQ(opened->removeFile(entries[0].name), 0);
}

TEST_F(WindowsFileSystem, AnOpenDirectoryRefusesStreams) {
    writeTestFile(directory_.file("f"), "abc");
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(systemFileSystem().openDirectory(directory_.path(), opened), 0);
    EXPECT_EQ(opened->removeFile("f:stream"), ERROR_INVALID_NAME);
    EXPECT_EQ(opened->removeFile("f"), 0);
}

}  // namespace
