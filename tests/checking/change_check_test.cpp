#include "checking/change_check.h"

#include "checking/check_bench.h"

namespace {

class ChangeCheckTest : public testing::Test {
protected:
    // The actions begin in line 3. The product can be uninstalled.
    static std::string install(const std::string& actions) {
        return std::string(kPages) + "<AdditionalInstall>\n" + actions + "</AdditionalInstall>";
    }
    static std::string remove(const std::string& actions) {
        return "<PreUninstall>" + actions + "</PreUninstall>";
    }
    static std::string cleanUp(const std::string& directory, const std::string& names) {
        return "<UninstallWildcards><P Dest='" + directory + "'>" + names + "</P></UninstallWildcards>";
    }
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }

    static constexpr char kPages[] = "<UninstallDialogs><Finish/></UninstallDialogs>";

    CheckBench bench_{
        [](const CheckedParts& parts) { checkChanges(parts.context, parts.files, parts.paths); }};
};

TEST_F(ChangeCheckTest, FindsCreatedFilesThatStay) {
    const std::string sections =
        install("<CreateFile Dest='[D]/doc'>A</CreateFile>") + set("<FN Alias='A'>texts/a.md</FN>");
    EXPECT_EQ(bench_.find(sections), (Found{"change-without-undo 3:1"}));
    EXPECT_EQ(bench_.messages(sections), (Found{"the uninstallation leaves the file \"[d]/doc/a.md\""}));
    EXPECT_EQ(bench_.find(sections + remove("<RemoveFile>[D]/doc/a.md</RemoveFile>")), Found());
    EXPECT_EQ(bench_.find(sections + remove("<RemoveFile>[D]/doc/b.md</RemoveFile>")),
              (Found{"change-without-undo 3:1"}));
    EXPECT_EQ(bench_.find(sections + cleanUp("[D]", "*.md")), Found());
    EXPECT_EQ(bench_.find(sections + set("<FN Dest='[D]/doc'>a.md</FN>")), Found());
}

TEST_F(ChangeCheckTest, FindsCopiesThatStay) {
    const std::string sections = install("<CopyFile Dest='/x/b'>/x/a</CopyFile>");
    EXPECT_EQ(bench_.find(sections), (Found{"change-without-undo 3:1"}));
    EXPECT_EQ(bench_.find(sections + cleanUp("/x", "b")), Found());
    EXPECT_EQ(bench_.find(sections + remove("<RunProgram>/x/clean</RunProgram>")), Found());
    EXPECT_EQ(bench_.find(std::string(kPages) + remove("<CopyFile Dest='/x/b'>/x/a</CopyFile>")), Found());
}

TEST_F(ChangeCheckTest, FindsFilesWhoseDirectoryStaysBecauseOfThem) {
    const std::string copy = "<CopyFile Dest='/x/b'>/x/a</CopyFile>";
    const std::string files = set("<FN Dest='/x'>a</FN>");
    EXPECT_EQ(
        bench_.messages(install(copy) + files),
        (Found{"nothing removes the file \"/x/b\", so its directory stays and the uninstallation fails"}));
    EXPECT_EQ(bench_.find(install(copy) + files), (Found{"file-not-removed 3:1"}));
    EXPECT_EQ(bench_.find(install(copy) + files + cleanUp("/x", "b")), Found());
    EXPECT_EQ(bench_.find(install("<CopyFile Dest='/etc/b'>/x/a</CopyFile>") + set("<FN Dest='/etc'>a</FN>")),
              (Found{"change-without-undo 3:1"}));
    EXPECT_EQ(bench_.find(install("<CopyFile Dest='/x/b' Condition='[V]==1'>/x/a</CopyFile>") + files),
              (Found{"change-without-undo 3:1"}));
    EXPECT_EQ(bench_.find(std::string(kPages) + "<Chosen>\n" + copy + "</Chosen>" + files),
              (Found{"change-without-undo 3:1"}))
        << "it may never be done";
}

TEST_F(ChangeCheckTest, FindsIniFilesThatStayAmongTheFilesOfTheProduct) {
    const std::string entries = std::string(kPages) +
                                "<IniFiles>\n<Add FileName='/x/y/a.ini' Section='s' Key='k'>1</Add>"
                                "<Add FileName='/x/y/a.ini' Section='s' Key='l'>1</Add></IniFiles>";
    EXPECT_EQ(bench_.find(entries + set("<FN Dest='/x'>a</FN>")), (Found{"change-without-undo 3:16"}));
    EXPECT_EQ(bench_.find(entries + set("<FN Dest='/x/y'>a</FN>")), (Found{"file-not-removed 3:16"}));
    EXPECT_EQ(bench_.find(entries + set("<FN Dest='/x'>a</FN><FN Dest='/x/y'>a.ini</FN>")), Found());
    EXPECT_EQ(bench_.find(entries + set("<FN Dest='/z'>a</FN>")), Found());
    EXPECT_EQ(bench_.find(entries + set("<FN Dest='/x'>a</FN>") + cleanUp("/x", "*.ini")), Found());
}

TEST_F(ChangeCheckTest, FindsValuesOfTheRegistryThatAreKeptOutOfTheLog) {
    const std::string sections = install(
        "<Registry>\n<AddValue Place='HKEY_CURRENT_USER' Path='Software/X' Value='V' ActionLog='1==0'>1"
        "</AddValue></Registry>");
    EXPECT_EQ(bench_.find(sections), (Found{"change-without-undo 4:1"}));
    EXPECT_EQ(
        bench_.find(sections + remove("<Registry><RemoveValue Place='HKEY_CURRENT_USER' Path='SOFTWARE\\x' "
                                      "Value='V'/></Registry>")),
        Found());
    EXPECT_EQ(
        bench_.find(sections + remove("<Registry><RemoveValue Place='HKEY_LOCAL_MACHINE' Path='Software/X' "
                                      "Value='V'/></Registry>")),
        (Found{"change-without-undo 4:1"}));
    EXPECT_EQ(bench_.find(install("<Registry><AddKey Place='HKEY_USERS' Path='X'/></Registry>")), Found());
}

TEST_F(ChangeCheckTest, SaysNothingOfAProductThatStays) {
    EXPECT_EQ(bench_.find("<AdditionalInstall><CopyFile Dest='/x/b'>/x/a</CopyFile></AdditionalInstall>"),
              Found());
}

}  // namespace
