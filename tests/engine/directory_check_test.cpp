#include "engine/directory_check.h"

#include "engine/installation_fixture.h"
#include "platform/memory/memory_environment.h"

namespace {

TEST(DirectoryFaultTest, AcceptsWhatALogCanHold) {
    for (const char* path :
         {"/opt/demo", "\\opt\\demo\\", "C:\\demo", "c:/my demo/x", "\\\\server\\share", "/"}) {
        EXPECT_EQ(directoryFault(path), "") << path;
    }
    EXPECT_EQ(directoryFault("/" + std::string(1000, 'd')), "");
}

TEST(DirectoryFaultTest, NamesWhatALogCannotHold) {
    EXPECT_EQ(directoryFault(""), "it is empty");
    EXPECT_EQ(directoryFault("/opt/a\tb"), "it holds control characters");
    EXPECT_EQ(directoryFault("/opt/a\nb"), "it holds control characters");
    EXPECT_EQ(directoryFault("/opt/a "), "it ends with a blank");
    EXPECT_EQ(directoryFault("/opt/a /"), "it ends with a blank");
    for (const char* path : {"demo", "./demo", "..\\demo", "C:demo", "C:"}) {
        EXPECT_EQ(directoryFault(path), "it is relative") << path;
    }
    EXPECT_EQ(directoryFault("/" + std::string(1010, 'd')), "it is too long");
}

TEST(AbsolutePathTest, CountsFromTheCurrentDirectory) {
    MemoryEnvironment environment;
    environment.current = "/home/me";
    EXPECT_EQ(absolutePath(environment, "demo"), "\\home\\me\\demo");
    EXPECT_EQ(absolutePath(environment, "a\\b"), "\\home\\me\\a\\b");
    for (const char* path : {"/opt/demo", "\\opt", "C:\\demo", "C:demo", ""}) {
        EXPECT_EQ(absolutePath(environment, path), path);
    }
    environment.current.clear();
    EXPECT_EQ(absolutePath(environment, "demo"), "demo");
}

class DirectoryCheckTest : public InstallationTest {
protected:
    void describeFiles(const std::string& files, const std::string& uninstall = kUninstall) {
        pack({{"one", "one", "1"}, {"two", "two", "22"}});
        describe(uninstall + "<FileSet Name='S'>" + files + "</FileSet><InstallerControlVariables>" +
                 "<InstallError>ERR</InstallError></InstallerControlVariables>");
    }
    // Refused without any change, and said why.
    void expectRefused(const std::string& fault) {
        const std::vector<std::string> before = files_.allFiles();
        ui_.take();
        EXPECT_FALSE(install());
        EXPECT_EQ(files_.allFiles(), before);
        EXPECT_EQ(valueOf("ERR"), "1");
        const std::vector<std::string> messages = ui_.callsOf("addMessage(");
        ASSERT_EQ(messages.size(), 2U);
        EXPECT_NE(messages[0].find(fault), std::string::npos) << messages[0];
        EXPECT_EQ(messages[1], "addMessage(\"Nothing was installed.\")");
    }
};

TEST_F(DirectoryCheckTest, RefusesADirectoryThatBecameEmpty) {
    describeFiles("<FN Dest='/app'>one</FN><FN Dest='[DIR]'>two</FN>");
    variables_.set("DIR", "");
    expectRefused("\"[DIR]\" of files can't be recorded, \"\": it is empty");
}

TEST_F(DirectoryCheckTest, RefusesEachKindOfFault) {
    describeFiles("<FN Dest='[DIR]'>one</FN>");
    for (const char* value : {"/app/a\tb", "/app ", "app", "[MISSING]/x"}) {
        variables_.set("DIR", value);
        const std::string path = value;
        ui_.take();
        EXPECT_FALSE(install()) << path;
        EXPECT_FALSE(files_.hasDirectory("/app")) << path;
        EXPECT_EQ(ui_.countOf("addMessage(\"Nothing was installed.\")"), 1) << path;
    }
    variables_.set("DIR", "/app");
    EXPECT_TRUE(install());
}

TEST_F(DirectoryCheckTest, LooksAtSelectedFilesOnly) {
    describeFiles("<FN Dest='/app'>one</FN><FN Dest='[DIR]' Condition='1==2'>two</FN><FN Dest=''>two</FN>");
    EXPECT_TRUE(install());
    EXPECT_TRUE(files_.hasFile("/app/one"));
}

TEST_F(DirectoryCheckTest, RefusesRecordsThatNobodyWouldFind) {
    describeFiles("<FN Dest='/app'>one</FN>",
                  "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile>"
                  "<InstallBackupFile>backup.bin</InstallBackupFile></Uninstall></Installation>");
    expectRefused("backup file can't be recorded");
}

TEST_F(DirectoryCheckTest, ShowsNoControlCharacters) {
    describeFiles("<FN Dest='[DIR]'>one</FN>");
    variables_.set("DIR", "/app/\x1b[31m");
    expectRefused("/app/?[31m");
}

}  // namespace
