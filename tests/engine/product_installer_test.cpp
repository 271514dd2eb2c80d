#include "engine/product_installer.h"

#include "installation_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class ProductInstallerTest : public InstallationTest {
protected:
    ProductInstallerTest() {
        files_.addDirectory("/app");
        phases_ = {{"First phase", [this](InstallerUI*) { return run("first"); }},
                   {"Second phase", [this](InstallerUI*) { return run("second"); }}};
    }
    void describeProduct(const std::string& files = "", const std::string& uninstall = kUninstall) {
        pack({{"one", "one", "1"}});
        describe(uninstall + ("<FileSet Name='S'>" + files + "</FileSet>") +
                 "<InstallerControlVariables><InstallError>FAILED_INSTALL</InstallError>"
                 "</InstallerControlVariables>");
    }
    int run(const std::string& phase) {
        ran_.push_back(phase);
        return failing_ == phase ? 1 : 0;
    }

    std::vector<std::string> ran_;
    std::string failing_;
};

TEST_F(ProductInstallerTest, runsThePhasesAndReportsSuccess) {
    describeProduct();
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(ran_, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(ui_.callsOf("set"),
              (std::vector<std::string>{"setStatusText(\"First phase\")", "setStatusText(\"Second phase\")",
                                        "setCurrentProgress(100)",
                                        "setStatusText(\"The installation was successful.\")"}));
    EXPECT_EQ(ui_.countOf("beginProgress"), 1);
    EXPECT_EQ(ui_.countOf("endProgress"), 1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "(none)");
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ProductInstallerTest, goesOnBehindAFailedPhaseAndReportsIt) {
    describeProduct();
    failing_ = "first";
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(ran_, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(log_.lines(), (std::vector<std::string>{"WARNING: An error ocurred during installation",
                                                      "ERROR: Encountered an error during First phase"}));
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    EXPECT_EQ(errors_, std::vector<std::string>{"Error during: First phase"});
    EXPECT_EQ(ui_.countOf("setStatusText(\"There were errors during the installation.\")"), 1);
    EXPECT_EQ(ui_.countOf("addFileLine(\"Encountered errors during installation:\""), 1);
    EXPECT_TRUE(files_.hasFile("/app/install.log"));
}

TEST_F(ProductInstallerTest, leavesTheDecisionAloneWhenErrorsAreIgnored) {
    describeProduct();
    failing_ = "second";
    ui_.ignoreErrors = 1;
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "(none)");
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ProductInstallerTest, changesNothingWithoutTemporaryNames) {
    describeProduct("<FN Dest='/app'>one</FN>");
    system_.temporaryNamesLeft = 0;
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: Obtaining temp filename for install temp log!"});
    EXPECT_TRUE(ran_.empty());
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(ProductInstallerTest, changesNothingWhenTheArchiveCannotBeOpened) {
    describeProduct("<FN Dest='/app'>one</FN>");
    system_.temporaryNamesLeft = 1;
    EXPECT_EQ(install(), -1);
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"ERROR: Obtaining temp filename for install temp backup!"});
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_FALSE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_FALSE(installLog_.isOpen());
}

TEST_F(ProductInstallerTest, publishesNothingForAProductWithoutUninstallation) {
    describeProduct("<FN Dest='/app'>one</FN>", "");
    EXPECT_EQ(install(), 0);
    EXPECT_TRUE(files_.hasFile("/app/one"));
    for (const std::string& file : files_.allFiles()) {
        EXPECT_FALSE(file.starts_with("/tmp")) << file;
        EXPECT_EQ(file.find("install.log"), std::string::npos);
    }
}

TEST_F(ProductInstallerTest, writesEmptyHeaderLinesWithoutUninstallation) {
    describeProduct("",
                    "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
                    "</Installation>");
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(installLog(), "\r\n\r\nNUMVARS\t0\r\n");
}

TEST_F(ProductInstallerTest, logsVariablesThatAreNotExcluded) {
    describeProduct();
    variables_.setVariable("FIRST", "1");
    variables_.setVariable("HIDDEN", "2");
    variables_.setVariable("NOT_IN_CONFIG", "3");
    variables_.setVariable("EMPTY", "");
    exclusions_.add("HIDDEN", kExcludeFromLog);
    exclusions_.add("NOT_IN_CONFIG", kExcludeFromConfig);
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t3\r\n"
              "VAR\tFIRST\t1\r\nVAR\tNOT_IN_CONFIG\t3\r\nVAR\tEMPTY\t\r\n");
}

TEST_F(ProductInstallerTest, failsTrulyWhenTheLogCannotBeWritten) {
    describeProduct();
    files_.failFrom(Operation::kWrite, "/tmp/orinstall1", 3);
    EXPECT_EQ(install(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: The install log could not be written completely"));
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    EXPECT_EQ(ui_.countOf("setStatusText(\"The installation was successful.\")"), 0);
}

TEST_F(ProductInstallerTest, failsTrulyWhenTheArchiveCannotBeClosed) {
    describeProduct();
    files_.failAt(Operation::kClose, "/tmp/orinstall2", 1, 112);
    EXPECT_EQ(install(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: The backup file could not be written completely"));
}

TEST_F(ProductInstallerTest, failsTrulyWhenNothingCanBePublished) {
    describeProduct("",
                    "<Installation><Uninstall><InstallLogFile>/none/log</InstallLogFile>"
                    "<InstallBackupFile>/none/backup</InstallBackupFile></Uninstall></Installation>");
    EXPECT_EQ(install(), -1);
    EXPECT_TRUE(
        log_.hasLine("ERROR: The install log could not be written to /none/log; it stays at "
                     "/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall2"));
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to write the install log or the backup file"});
}

TEST_F(ProductInstallerTest, makesItsTemporaryFilesForThisUserAlone) {
    describeProduct();
    bool isPrivate = false;
    phases_ = {{"Look", [&](InstallerUI*) {
                    isPrivate = files_.isPrivate("/tmp/orinstall1") && files_.isPrivate("/tmp/orinstall2");
                    return 0;
                }}};
    EXPECT_EQ(install(), 0);
    EXPECT_TRUE(isPrivate);
}

}  // namespace
