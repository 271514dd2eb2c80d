#include "engine/action_log_writer.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"
#include "platform/memory/memory_file_system.h"
#include "support/p_file_console.h"

namespace {

constexpr char kPath[] = "C:\\temp\\log";

class ActionLogWriterTest : public testing::Test {
protected:
    ActionLogWriterTest() { files_.addDirectory("C:\\temp"); }

    std::string written() {
        EXPECT_TRUE(writer_.close());
        return files_.content(kPath);
    }

    MemoryFileSystem files_;
    PFileConsole console_{files_};
    ActionLogWriter writer_{console_};
};

TEST_F(ActionLogWriterTest, WritesTheLayoutOfTheFormatByteForByte) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeHeader("C:/apps/demo/uninstall/demo_install.xml", "C:/apps/demo/uninstall/backup.bin");
    writer_.writeVariables({{"STDROOT", "C:\\apps\\demo"}, {"INSTALL_ERROR", "0"}});
    writer_.writeDirectory(3, "C:\\apps\\demo\\uninstall\\");
    writer_.writeFile(false, "C:\\apps\\demo\\uninstall\\installer.exe");
    writer_.writeFile(true, "C:\\apps\\demo\\readme.txt");
    writer_.writeRecord(ActionLogFormat::kEnvironment, {"ADD", "PATH", "C:\\apps\\demo\\bin"});
    writer_.writeRecord(ActionLogFormat::kIni, {"CREATE", "C:\\apps\\demo\\demo.ini", "Paths", "Root", "x"});
    writer_.writeRecord(ActionLogFormat::kModifyFile, {"ADDAFTER", "a", "b"});
    writer_.writeRecord(ActionLogFormat::kShortcut, {"CREATE", "C:\\menu\\Demo\\Uninstall.lnk"});
    writer_.writeRecord(ActionLogFormat::kFirewall, {"PORT", "30304", "TCP;UDP", "Demo service"});
    writer_.writeRecord(ActionLogFormat::kRegistryKey, {"2", "HKEY_LOCAL_MACHINE", "Software\\Demo"});
    writer_.writeRecord(ActionLogFormat::kRegistryValue,
                        {"HKEY_LOCAL_MACHINE", "Software\\Demo", "FileName"});
    EXPECT_EQ(written(),
              "C:/apps/demo/uninstall/demo_install.xml\r\n"
              "C:/apps/demo/uninstall/backup.bin\r\n"
              "NUMVARS\t2\r\n"
              "VAR\tSTDROOT\tC:\\apps\\demo\r\n"
              "VAR\tINSTALL_ERROR\t0\r\n"
              "DIR\t3\tC:\\apps\\demo\\uninstall\\\r\n"
              "FILE\tCREATE\tC:\\apps\\demo\\uninstall\\installer.exe\r\n"
              "FILE\tOVER\tC:\\apps\\demo\\readme.txt\r\n"
              "ENV\tADD\tPATH\tC:\\apps\\demo\\bin\r\n"
              "INI\tCREATE\tC:\\apps\\demo\\demo.ini\tPaths\tRoot\tx\r\n"
              "MODIFYFILE\tADDAFTER\ta\tb\r\n"
              "SHORTCUT\tCREATE\tC:\\menu\\Demo\\Uninstall.lnk\r\n"
              "FIREWALL\tPORT\t30304\tTCP;UDP\tDemo service\r\n"
              "REGKEY\t2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\r\n"
              "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tFileName\r\n");
}

TEST_F(ActionLogWriterTest, WritesEmptyHeaderLinesAndEmptyValues) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeHeader("", "");
    writer_.writeVariables({{"EMPTY", ""}});
    EXPECT_EQ(written(), "\r\n\r\nNUMVARS\t1\r\nVAR\tEMPTY\t\r\n");
}

TEST_F(ActionLogWriterTest, WritesALineOfTheLimitWholeAndCutsALongerOne) {
    const std::string head = "FILE\tCREATE\t";
    const std::string fits(ActionLogFormat::kLineLimit - head.size(), 'p');
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeFile(false, fits);
    writer_.writeFile(false, fits + "q");
    EXPECT_EQ(written(), head + fits + "\r\n" + head + fits + "\r\n");
}

TEST_F(ActionLogWriterTest, KeepsALineBreakFromBeginningARecordOfItsOwn) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeVariables({{"A", "x\r\nFILE\tCREATE\t/etc/passwd"}, {"B", "y"}});
    EXPECT_EQ(written(), "NUMVARS\t2\r\nVAR\tA\tx  FILE\tCREATE\t/etc/passwd\r\nVAR\tB\ty\r\n");
}

TEST_F(ActionLogWriterTest, OpensANewLogForThisUserAlone) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeHeader("a", "b");
    EXPECT_EQ(written(), "a\r\nb\r\n");
    EXPECT_TRUE(files_.isPrivate(kPath));
}

TEST_F(ActionLogWriterTest, TakesNoNameThatSomebodyElseHas) {
    files_.addFile("C:\\victim", "precious");
    files_.addLink(kPath, "C:\\victim");
    EXPECT_FALSE(writer_.openNew(kPath));
    EXPECT_EQ(files_.kindOf(kPath), platform::PathKind::kLink);
    EXPECT_EQ(files_.content("C:\\victim"), "precious");
    EXPECT_FALSE(writer_.openNew("C:\\victim"));
    EXPECT_EQ(files_.content("C:\\victim"), "precious");
}

TEST_F(ActionLogWriterTest, AppendsToAPublishedLogWithoutPrefixes) {
    files_.addFile(kPath, "first\r\n");
    ASSERT_TRUE(writer_.openToAppend(kPath));
    writer_.writeRecord(ActionLogFormat::kRegistryKey, {"1", "HKEY_USERS", "a"});
    EXPECT_EQ(written(), "first\r\nREGKEY\t1\tHKEY_USERS\ta\r\n");
}

TEST_F(ActionLogWriterTest, FailsWhenTheLogCannotBeOpened) {
    files_.setReadOnly("C:\\temp");
    EXPECT_FALSE(writer_.openNew(kPath));
    EXPECT_FALSE(writer_.isOpen());
    writer_.writeHeader("a", "b");  // silent
    EXPECT_FALSE(files_.hasFile(kPath));
}

TEST_F(ActionLogWriterTest, TakesARecordOutAgainThatDoesNotFitTheDisk) {
    ASSERT_TRUE(writer_.openNew(kPath));
    EXPECT_TRUE(writer_.writeFile(false, "/first"));
    files_.setFreeSpace(6);
    EXPECT_FALSE(writer_.writeFile(false, "/a"));
    EXPECT_EQ(files_.content(kPath), "FILE\tCREATE\t/first\r\n");
    files_.setFreeSpace(-1);
    EXPECT_TRUE(writer_.writeFile(false, "/b"));
    EXPECT_TRUE(writer_.hasFailed());
    EXPECT_FALSE(writer_.close());
    EXPECT_EQ(files_.content(kPath), "FILE\tCREATE\t/first\r\nFILE\tCREATE\t/b\r\n");
}

TEST_F(ActionLogWriterTest, TakesNoMoreRecordsAfterAPartThatStays) {
    ASSERT_TRUE(writer_.openNew(kPath));
    files_.setFreeSpace(6);
    files_.failAt(MemoryFileSystem::Operation::kTruncate, kPath, 1);
    EXPECT_FALSE(writer_.writeFile(false, "/a"));
    files_.setFreeSpace(-1);
    EXPECT_FALSE(writer_.writeFile(false, "/b"));
    EXPECT_FALSE(writer_.close());
    EXPECT_EQ(files_.content(kPath), "FILE\tC");
}

TEST_F(ActionLogWriterTest, WithdrawsRecordsWhoseChangesWereNotMade) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeVariables({});
    const std::int64_t start = writer_.position();
    EXPECT_TRUE(writer_.writeFile(false, "/VAR"));
    EXPECT_TRUE(writer_.writeFile(false, "/b"));
    writer_.withdrawFrom(start);
    EXPECT_TRUE(writer_.writeFile(false, "/VAR/c"));
    EXPECT_EQ(written(), "NUMVARS\t0\r\nRECORDS\r\nFILE\tCREATE\t/VAR/c\r\n");
}

TEST_F(ActionLogWriterTest, WithdrawsNothingOfARecordThatWasThereBefore) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.copyRecord("ENV\tCREATE\tX");
    const std::int64_t start = writer_.position();
    EXPECT_TRUE(writer_.writeRecord(ActionLogFormat::kEnvironment, {"CREATE", "X"}, "0123"));
    writer_.withdrawFrom(start);
    EXPECT_EQ(written(), "ENV\tCREATE\tX\r\n");
}

TEST_F(ActionLogWriterTest, SaysInFrontOfARecordWhatItsChangeReplaces) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeVariables({});
    EXPECT_TRUE(writer_.writeFile(false, "/VAR", "0123"));
    EXPECT_EQ(written(), "NUMVARS\t0\r\nBEFORE\t0123\r\nFILE\tCREATE\t/VAR\r\n");
}

TEST_F(ActionLogWriterTest, ContinuesALogAfterItsLastWholeLine) {
    files_.addFile(kPath, "first\r\nFILE\tCREATE\t/a");
    ASSERT_TRUE(writer_.openToAppend(kPath));
    EXPECT_TRUE(writer_.writeFile(false, "/b"));
    EXPECT_EQ(written(), "first\r\nFILE\tCREATE\t/b\r\n");
}

TEST_F(ActionLogWriterTest, IsOnTheDiskAfterAFlush) {
    ASSERT_TRUE(writer_.openNew(kPath));
    EXPECT_TRUE(writer_.flush());
    EXPECT_TRUE(files_.didOperation("flush C:/temp/log"));
    files_.failAt(MemoryFileSystem::Operation::kFlush, kPath, 1);
    EXPECT_FALSE(writer_.flush());
    EXPECT_FALSE(writer_.close());
}

TEST_F(ActionLogWriterTest, DropsRecordsWithoutALog) {
    EXPECT_TRUE(writer_.writeFile(false, "/a"));
    EXPECT_TRUE(writer_.flush());
    writer_.withdrawFrom(writer_.position());
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(ActionLogWriterTest, NoticesAFailureThatTheSystemReportsAtTheClosing) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeHeader("a", "b");
    files_.failAt(MemoryFileSystem::Operation::kClose, kPath, 1);
    EXPECT_FALSE(writer_.close());
}

TEST_F(ActionLogWriterTest, KeepsARecordThatLooksLikeAVariableApartFromThem) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeVariables({{"A", "1"}});
    writer_.writeFile(false, "/opt/VARIETY/a");
    writer_.writeFile(false, "/opt/VARIETY/b");
    EXPECT_EQ(written(),
              "NUMVARS\t1\r\nVAR\tA\t1\r\nRECORDS\r\nFILE\tCREATE\t/opt/VARIETY/a\r\n"
              "FILE\tCREATE\t/opt/VARIETY/b\r\n");
}

TEST_F(ActionLogWriterTest, NeedsNoSuchLineAfterAnotherRecord) {
    ASSERT_TRUE(writer_.openNew(kPath));
    writer_.writeVariables({});
    writer_.writeFile(false, "/opt/a");
    writer_.writeFile(false, "/opt/VARIETY/b");
    EXPECT_EQ(written(), "NUMVARS\t0\r\nFILE\tCREATE\t/opt/a\r\nFILE\tCREATE\t/opt/VARIETY/b\r\n");
}

TEST_F(ActionLogWriterTest, KeepsARecordApartThatContinuesALog) {
    files_.addFile(kPath, "NUMVARS\t1\r\nVAR\tA\t1\r\n");
    ASSERT_TRUE(writer_.openToAppend(kPath));
    writer_.writeRecord(ActionLogFormat::kRegistryValue, {"HKEY_USERS", "k", "VAR"});
    EXPECT_EQ(written(), "NUMVARS\t1\r\nVAR\tA\t1\r\nRECORDS\r\nREGVAL\tHKEY_USERS\tk\tVAR\r\n");
}

TEST_F(ActionLogWriterTest, WritesWhatWasCopiedAgainOnlyWhereTheUndoCounts) {
    ASSERT_TRUE(writer_.openNew(kPath));
    const std::string records = "SHORTCUT\tCREATE\t/a\r\nENV\tADD\tPATH\t/b\r\nENV\tCREATE\tX\r\n";
    for (const char* line : {"SHORTCUT\tCREATE\t/a", "ENV\tADD\tPATH\t/b", "ENV\tCREATE\tX"}) {
        writer_.copyRecord(line);
    }
    writer_.writeRecord(ActionLogFormat::kShortcut, {"CREATE", "/a"});
    writer_.writeRecord(ActionLogFormat::kEnvironment, {"ADD", "PATH", "/b"});
    writer_.writeRecord(ActionLogFormat::kEnvironment, {"CREATE", "X"});
    writer_.writeRecord(ActionLogFormat::kEnvironment, {"CREATE", "Y"});
    EXPECT_EQ(written(), records + "ENV\tADD\tPATH\t/b\r\nENV\tCREATE\tY\r\n");
}

}  // namespace
