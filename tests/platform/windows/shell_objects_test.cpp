#include "platform/shell_objects.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include <algorithm>

#include "fakes/temporary_directory.h"
#include "platform/named_events.h"
#include "platform/program.h"
#include "platform/registry.h"
#include "platform/windows/com_objects.h"
#include "platform/windows/missing_component.h"
#include "platform/windows/private_security.h"
#include "platform/windows/wide_text.h"

namespace {

using platform::ComApartment;
using platform::ComPointer;
using platform::LinkDescription;
using platform::utf8Of;
using platform::wideOf;

// What the shell itself reads from a link.
LinkDescription readLink(const std::string& path) {
    const ComApartment apartment;
    ComPointer<IShellLinkW> link;
    EXPECT_EQ(
        CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.receiveAny()),
        S_OK);
    ComPointer<IPersistFile> file;
    EXPECT_EQ(link->QueryInterface(IID_IPersistFile, file.receiveAny()), S_OK);
    EXPECT_EQ(file->Load(wideOf(path).c_str(), STGM_READ), S_OK);
    wchar_t text[2048] = L"";
    LinkDescription read;
    EXPECT_EQ(link->GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH), S_OK);
    read.target = utf8Of(text);
    EXPECT_EQ(link->GetDescription(text, 2048), S_OK);
    read.description = utf8Of(text);
    EXPECT_EQ(link->GetArguments(text, 2048), S_OK);
    read.arguments = utf8Of(text);
    EXPECT_EQ(link->GetWorkingDirectory(text, 2048), S_OK);
    read.workDirectory = utf8Of(text);
    int icon = -1;
    text[0] = L'\0';
    EXPECT_EQ(link->GetIconLocation(text, 2048, &icon), S_OK);
    EXPECT_EQ(icon, 0);
    read.iconPath = utf8Of(text);
    return read;
}

// How often the thread may leave its apartments: 0 when each one that was entered was left.
int openApartments() {
    int count = 0;
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    while (CoGetApartmentType(&type, &qualifier) == S_OK && count < 100) {
        CoUninitialize();
        ++count;
    }
    return count;
}

class WindowsShellObjectsTest : public testing::Test {
protected:
    ~WindowsShellObjectsTest() override { EXPECT_EQ(openApartments(), 0); }

    TemporaryDirectory directory_;
    platform::ShellObjects& shell_ = platform::systemShellObjects();
};

TEST_F(WindowsShellObjectsTest, TheShellReadsBackWhatALinkWasGiven) {
    const std::string path = directory_.file("D\xc3\xa9mo.lnk");
    const LinkDescription link{"C:\\windows\\notepad.exe", "D\xc3\xa9mo \xd0\x96", "-a \"b c\"",
                               "C:\\windows", "C:\\windows\\icon.ico"};
    EXPECT_EQ(shell_.createLink(path.c_str(), link), 0);
    const LinkDescription read = readLink(path);
    EXPECT_EQ(read.target, link.target);
    EXPECT_EQ(read.description, link.description);
    EXPECT_EQ(read.arguments, link.arguments);
    EXPECT_EQ(read.workDirectory, link.workDirectory);
    EXPECT_EQ(read.iconPath, link.iconPath);
}

TEST_F(WindowsShellObjectsTest, WhatIsNotGivenStaysEmpty) {
    const std::string path = directory_.file("a.lnk");
    EXPECT_EQ(shell_.createLink(path.c_str(), {"C:\\windows\\notepad.exe", "", "", "", ""}), 0);
    const LinkDescription read = readLink(path);
    EXPECT_EQ(read.description, "");
    EXPECT_EQ(read.arguments, "");
    EXPECT_EQ(read.workDirectory, "");
    EXPECT_EQ(read.iconPath, "");
}

TEST_F(WindowsShellObjectsTest, ATargetThatIsNotThereIsNoFailure) {
    const std::string path = directory_.file("a.lnk");
    EXPECT_EQ(shell_.createLink(path.c_str(), {"C:\\none\\none.exe", "", "", "", ""}), 0);
    EXPECT_EQ(readLink(path).target, "C:\\none\\none.exe");
}

TEST_F(WindowsShellObjectsTest, TheLinkPathMayBeWrittenWithSlashes) {
    std::string path = directory_.file("a.lnk");
    std::replace(path.begin(), path.end(), '\\', '/');
    EXPECT_EQ(shell_.createLink(path.c_str(), {"C:\\windows\\notepad.exe", "", "", "", ""}), 0);
    EXPECT_TRUE(testFileExists(directory_.file("a.lnk")));
}

TEST_F(WindowsShellObjectsTest, AnUrlLinkIsAnInternetShortcut) {
    EXPECT_EQ(shell_.createUrlLink(directory_.file("a.url").c_str(), "http://example.com/a%20b?c=d&e"), 0);
    EXPECT_EQ(readTestFile(directory_.file("a.url")),
              "[InternetShortcut]\r\nURL=http://example.com/a%20b?c=d&e\r\n");
}

TEST_F(WindowsShellObjectsTest, AFailedSavingLeavesTheApartment) {
    EXPECT_NE(shell_.createLink(directory_.file("none\\a.lnk").c_str(), {"a", "", "", "", ""}), 0);
    EXPECT_NE(shell_.createUrlLink(directory_.file("none\\a.url").c_str(), "http://example.com"), 0);
    EXPECT_EQ(shell_.createSymlink(directory_.file("a"), "b"), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(openApartments(), 0);
}

TEST_F(WindowsShellObjectsTest, LinksAreMadeInsideAnApartmentThatIsThereAlready) {
    const ComApartment apartment;
    ASSERT_EQ(apartment.result(), S_OK);
    EXPECT_EQ(shell_.createUrlLink(directory_.file("a.url").c_str(), "http://example.com"), 0);
    EXPECT_EQ(ComApartment().result(), S_FALSE);  // it is still there
}

TEST_F(WindowsShellObjectsTest, AnApartmentOfAnotherKindIsAFailure) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(shell_.createLink(directory_.file("a.lnk").c_str(), {"a", "", "", "", ""}),
              static_cast<int>(RPC_E_CHANGED_MODE));
    EXPECT_EQ(shell_.createUrlLink(directory_.file("a.url").c_str(), "http://example.com"),
              static_cast<int>(RPC_E_CHANGED_MODE));
    EXPECT_FALSE(testFileExists(directory_.file("a.lnk")));
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE);
    CoUninitialize();
    CoUninitialize();
}

TEST_F(WindowsShellObjectsTest, WithoutItsComponentNoLinkIsMade) {
    {
        const MissingComponent shellLink("{00021401-0000-0000-C000-000000000046}");
        EXPECT_NE(shell_.createLink(directory_.file("a.lnk").c_str(), {"a", "", "", "", ""}), 0);
        const MissingComponent shortcut("{FBF23B40-E3F0-101B-8488-00AA003E56F8}");
        EXPECT_NE(shell_.createUrlLink(directory_.file("a.url").c_str(), "http://example.com"), 0);
    }
    EXPECT_EQ(openApartments(), 0);
    EXPECT_FALSE(testFileExists(directory_.file("a.lnk")));
    EXPECT_FALSE(testFileExists(directory_.file("a.url")));
    EXPECT_EQ(shell_.createLink(directory_.file("a.lnk").c_str(), {"a", "", "", "", ""}), 0);
}

constexpr char kOpened[] = "TandrelDocumentOpened";

// Not a test: what the copy of this program does that the next test has started for a document.
TEST(OpeningChild, DISABLED_SignalsThatItWasStarted) {
    EXPECT_TRUE(platform::systemNamedEvents().signal(kOpened));
}

// A class of documents that this program opens.
class DocumentClass {
public:
    DocumentClass() {
        std::string image;
        EXPECT_TRUE(platform::ownImagePath(image));
        setText(".tandreldoc", "tandreldocument");
        setText(
            "tandreldocument\\shell\\open\\command",
            "\"" + image +
                "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=OpeningChild.* \"%1\"");
    }
    ~DocumentClass() {
        for (const char* key :
             {".tandreldoc", "tandreldocument\\shell\\open\\command", "tandreldocument\\shell\\open",
              "tandreldocument\\shell", "tandreldocument"}) {
            EXPECT_EQ(registry_.deleteKey(kRoot, key, kView), 0) << key;
        }
    }
    DocumentClass(const DocumentClass&) = delete;
    DocumentClass& operator=(const DocumentClass&) = delete;

private:
    static constexpr auto kRoot = platform::RegistryRoot::kClassesRoot;
    static constexpr auto kView = platform::RegistryView::kNative;

    void setText(const char* key, const std::string& text) {
        int created = 0;
        EXPECT_EQ(registry_.createKey(kRoot, key, kView, created), 0);
        EXPECT_EQ(registry_.writeValue(kRoot, key, kView, "", {platform::kRegString, text}), 0);
    }

    platform::Registry& registry_ = platform::systemRegistry();
};

TEST_F(WindowsShellObjectsTest, ADocumentIsOpenedByTheProgramOfItsClass) {
    constexpr std::uint32_t kLong = 60000;
    const DocumentClass documents;
    writeTestFile(directory_.file("a b.tandreldoc"), "x");
    const auto opened = platform::systemNamedEvents().create(kOpened);
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(shell_.openDocument(directory_.file("a b.tandreldoc").c_str()));
    EXPECT_TRUE(opened->wait(kLong));
    openApartments();  // the shell's own
}

TEST_F(WindowsShellObjectsTest, ADocumentIsOpenedByTheDesktopOfTheUserWhoRaisedTheRights) {
    if (platform::holderOfThisProcess() != platform::Holder::kAdministrators) {
        GTEST_SKIP() << "this process has the user's own rights";
    }
    constexpr std::uint32_t kLong = 60000;
    const DocumentClass documents;
    writeTestFile(directory_.file("a.tandreldoc"), "x");
    const auto opened = platform::systemNamedEvents().create(kOpened);
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(shell_.openForUser(directory_.file("a.tandreldoc")));
    EXPECT_TRUE(opened->wait(kLong));
    openApartments();
}

TEST_F(WindowsShellObjectsTest, ADocumentOfTheCurrentDirectoryIsNotOpenedByItsName) {
    const DocumentClass documents;
    writeTestFile(directory_.file("a.tandreldoc"), "x");
    wchar_t before[MAX_PATH]{};
    ASSERT_NE(GetCurrentDirectoryW(MAX_PATH, before), 0U);
    ASSERT_NE(SetCurrentDirectoryW(platform::systemPath(directory_.path()).c_str()), 0);
    EXPECT_FALSE(shell_.openDocument("a.tandreldoc"));
    EXPECT_NE(SetCurrentDirectoryW(before), 0);
}

TEST_F(WindowsShellObjectsTest, ADocumentOfNoClassIsNotOpened) {
    writeTestFile(directory_.file("a.tandrelnone"), "x");
    EXPECT_FALSE(shell_.openDocument(directory_.file("a.tandrelnone").c_str()));
    EXPECT_FALSE(shell_.openForUser(directory_.file("a.tandrelnone")));
    EXPECT_FALSE(shell_.openDocument(directory_.file("none.exe").c_str()));
    EXPECT_FALSE(shell_.openForUser(directory_.file("none.exe")));
    openApartments();
}

}  // namespace
