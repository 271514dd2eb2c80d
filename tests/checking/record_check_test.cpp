#include "checking/record_check.h"

#include "checking/check_bench.h"

namespace {

class RecordCheckTest : public testing::Test {
protected:
    static std::string records(const std::string& elements) {
        return "<Installation><Uninstall>\n" + elements + "\n</Uninstall></Installation>";
    }
    static std::string set(const std::string& files) { return "<FileSet Name='S'>\n" + files + "</FileSet>"; }
    static std::string values(const std::string& elements) {
        return "<DefValues>" + elements + "</DefValues>";
    }
    static std::string systems() {
        return values(
            "<Value Name='U' DataType='value' Condition='1==1'>installer</Value>"
            "<Value Name='U' DataType='value' Condition='1==2'>installer.exe</Value>");
    }

    CheckBench bench_{
        [](const CheckedParts& parts) { checkRecords(parts.context, parts.files, parts.paths); }};
};

TEST_F(RecordCheckTest, FindsThatNoLogIsKept) {
    EXPECT_EQ(bench_.find("<UninstallDialogs><Finish/></UninstallDialogs>\n<Installation/>"),
              (Found{"record-missing 3:1"}));
    EXPECT_EQ(bench_.find("<UninstallDialogs><Finish/></UninstallDialogs>" +
                          records("<LegacyInstallLogFile AppName='A'>/x</LegacyInstallLogFile>")),
              (Found{"record-missing 2:61"}));
    EXPECT_EQ(bench_.find("<Installation/>"), Found());
}

TEST_F(RecordCheckTest, FindsThatNoArchiveIsKeptForTheFilesThatAskForIt) {
    const std::string files =
        set("<FN Dest='/x' BackupExisting='1'>a</FN><FN Dest='/x' BackupExisting='1'>b</FN>");
    EXPECT_EQ(bench_.find(files), (Found{"record-backup-missing 3:31"}));
    EXPECT_EQ(bench_.find(files + records("<InstallBackupFile>/x/b</InstallBackupFile>")), Found());
    EXPECT_EQ(bench_.find(set("<FN Dest='/x'>a</FN><FN BackupExisting='1'>b</FN>")), Found());
}

TEST_F(RecordCheckTest, FindsRecordsAmongTheFilesOfOthers) {
    EXPECT_EQ(bench_.find(records("<InstallLogFile>/var/log/a.log</InstallLogFile>\n"
                                  "<InstallBackupFile>[D]/b</InstallBackupFile>")),
              (Found{"record-outside 3:17"}));
    EXPECT_EQ(
        bench_.find(records("<InstallLogFile>/etc/a.log</InstallLogFile>") + set("<FN Dest='/etc'>a</FN>")),
        Found());
}

TEST_F(RecordCheckTest, FindsRecordsThatNoCleanUpDeletes) {
    const std::string sections = "<UninstallDialogs><Finish/></UninstallDialogs>" +
                                 values("<Value Name='D' DataType='value'>/x/u</Value>") +
                                 "<FileSet Name='S'><FN Dest='[D]'>f</FN></FileSet>" +
                                 records(
                                     "<InstallLogFile>[D]/a.log</InstallLogFile>\n"
                                     "<InstallBackupFile>[D]/b.bin</InstallBackupFile>");
    EXPECT_EQ(bench_.find(sections), (Found{"record-not-removed 3:17", "record-not-removed 4:20"}));
    EXPECT_EQ(bench_.find(sections + "<UninstallWildcards><R Dest='/x'>*.log</R></UninstallWildcards>"),
              (Found{"record-not-removed 4:20"}));
    EXPECT_EQ(bench_.find(sections + "<UninstallWildcards><R Dest='[D]'>*.log</R><R Dest='[D]'>b.bin</R>"
                                     "</UninstallWildcards>"),
              Found());
    EXPECT_EQ(bench_.find(sections + "<UninstallWildcards><R Dest='/x/y'>*</R></UninstallWildcards>"),
              (Found{"record-not-removed 3:17", "record-not-removed 4:20"}));
}

TEST_F(RecordCheckTest, OnlyWarnsOfRecordsThatStayInADirectoryOfTheMachine) {
    const std::string sections =
        "<UninstallDialogs><Finish/></UninstallDialogs>" +
        values(
            "<Value Name='E' DataType='envvar'>GREETER</Value>"
            "<Value Name='D' DataType='value'>/x/u</Value>") +
        "<FileSet Name='S'><FN Dest='/etc'>f</FN><FN Dest='[E]'>f</FN><FN Dest='[D]'>f</FN></FileSet>";
    const auto found = [&](const std::string& log) {
        return bench_.find(sections + records("<InstallLogFile>" + log + "</InstallLogFile>"));
    };
    EXPECT_EQ(found("/etc/a.log"), (Found{"record-left 3:17"}));
    EXPECT_EQ(found("[E]/a.log"), (Found{"record-left 3:17"}));
    EXPECT_EQ(found("[$E]/a.log"), (Found{"record-left 3:17"}));
    EXPECT_EQ(found("[D]/a.log"), (Found{"record-not-removed 3:17"}));
}

TEST_F(RecordCheckTest, FindsRecordsInADirectoryThatNothingMakes) {
    const std::string sections = values("<Value Name='D' DataType='value'>/x/u</Value>") +
                                 records(
                                     "<InstallLogFile>[D]/log/a.log</InstallLogFile>\n"
                                     "<InstallBackupFile>[D]/b.bin</InstallBackupFile>") +
                                 set("<FN Dest='[D]'>f</FN>");
    EXPECT_EQ(bench_.find(sections), (Found{"record-no-directory 3:17"}));
    EXPECT_EQ(bench_.find("<UninstallDialogs><Finish/></UninstallDialogs>" + sections),
              (Found{"record-no-directory 3:17", "record-not-removed 4:20"}));
    EXPECT_EQ(bench_.find(sections + set("<Tree Dest='[D]/log' From='t'/>")), Found());
}

TEST_F(RecordCheckTest, FindsAnUninstallationThatNothingInstalls) {
    const std::string sections = values("<Value Name='D' DataType='value'>/x/u</Value>") +
                                 "<FileSet Name='S'><FN Dest='[D]'>f</FN></FileSet>" +
                                 records(
                                     "<InstallLogFile>[D]/l</InstallLogFile>"
                                     "<UninstallXmlFile>[D]/install.xml</UninstallXmlFile>\n"
                                     "<UninstallCmd>[D]/installer</UninstallCmd>");
    EXPECT_EQ(bench_.find(sections), (Found{"record-not-installed 3:57", "record-not-installed 4:15"}));
    EXPECT_EQ(bench_.messages(sections + set("<FN Dest='/x'>install.xml</FN>"
                                             "<FN Dest='/x/u' Executable='1'>installer</FN>")),
              (Found{"no FN installs \"[D]/install.xml\", which may be \"/x/u/install.xml\""}));
    EXPECT_EQ(bench_.find(sections + set("<FN Dest='/x/u'>a/install.xml</FN>"
                                         "<FN Dest='[D]/' Executable='1'>installer</FN>")),
              Found());
    EXPECT_EQ(bench_.find(sections + set("<Other/>")), Found());
}

TEST_F(RecordCheckTest, LooksWhereUsersLeaveADirectoryAsItIs) {
    const std::string asked = values("<Value Name='D' DataType='value'>/x/u</Value>") +
                              "<Dialogs><P><Field Type='Directory'>D</Field></P></Dialogs>" +
                              set("<FN Dest='[D]'>install.xml</FN>");
    const auto found = [&](const std::string& record, const std::string& path) {
        return bench_.messages(asked + records("<InstallLogFile>[D]/l</InstallLogFile><" + record + ">" +
                                               path + "</" + record + ">"));
    };
    EXPECT_EQ(found("UninstallXmlFile", "[D]/install.xml"), Found());
    EXPECT_EQ(found("UninstallXmlFile", "[D]/in[D]stall.xml"),
              (Found{"no FN installs \"[D]/in[D]stall.xml\", which may be \"/x/u/in/x/ustall.xml\""}));
    EXPECT_EQ(found("InstallBackupFile", "[D]/b[D]"),
              (Found{"nothing makes the directory of \"[D]/b[D]\", so the installation fails"}));
}

TEST_F(RecordCheckTest, FindsAnUninstallerThatIsMissingOnOneSystem) {
    const std::string sections =
        systems() + records("<InstallLogFile>/x/l</InstallLogFile>\n<UninstallCmd>/x/[U]</UninstallCmd>");
    const std::string both =
        set("<FN Dest='/x' Executable='1'>installer</FN><FN Dest='/x'>installer.exe</FN>");
    EXPECT_EQ(bench_.find(sections + both), Found());
    const std::string one = set("<FN Dest='/x' Executable='1'>installer</FN>");
    EXPECT_EQ(bench_.messages(sections + one),
              (Found{"no FN installs \"/x/[U]\", which may be \"/x/installer.exe\""}));
    bench_.targets.windows = false;
    EXPECT_EQ(bench_.find(sections + one), Found());
}

TEST_F(RecordCheckTest, SaysNothingOfPathsThatOnlyARunKnows) {
    EXPECT_EQ(bench_.find(records("<InstallLogFile>[A]/l</InstallLogFile><UninstallCmd>[A]/[B]</UninstallCmd>"
                                  "<UninstallXmlFile>[A]/install.xml</UninstallXmlFile>") +
                          set("<FN Dest='[C]'>install.xml</FN>")),
              Found());
    EXPECT_EQ(bench_.find(records("<InstallLogFile>[A]/l</InstallLogFile>\n"
                                  "<UninstallXmlFile>[A]/install.xml</UninstallXmlFile>") +
                          set("<FN Dest='[A]/x'>install.xml</FN>")),
              (Found{"record-not-installed 4:19"}));
}

TEST_F(RecordCheckTest, ComparesPathsWithoutCaseOnWindowsAlone) {
    const std::string sections =
        records("<InstallLogFile>C:/X/l</InstallLogFile>\n<UninstallCmd>C:/X/Installer.exe</UninstallCmd>") +
        set("<FN Dest='C:/x'>installer.exe</FN>");
    EXPECT_EQ(bench_.find(sections), (Found{"record-not-installed 4:15"}));
    bench_.targets.linux = false;
    EXPECT_EQ(bench_.find(sections), Found());
}

TEST_F(RecordCheckTest, FindsAnUninstallerThatIsNotMarkedAsAProgram) {
    const std::string sections =
        records("<InstallLogFile>/x/l</InstallLogFile><UninstallCmd>/x/installer</UninstallCmd>") +
        set("<FN Dest='/x'>installer</FN>");
    EXPECT_EQ(bench_.find(sections), (Found{"record-not-program 5:1"}));
    bench_.targets.linux = false;
    EXPECT_EQ(bench_.find(sections), Found());
}

}  // namespace
