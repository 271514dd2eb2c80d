#include "session/nested_uninstallation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "base/errors.h"
#include "fakes/fake_console.h"
#include "fakes/installing_system.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_platform.h"

namespace {

using testing::ElementsAre;

class NestedUninstallationTest : public testing::Test {
protected:
    NestedUninstallationTest() {
        files_.addDirectory("/tmp");
        files_.addFile("/app/tool", "x");
        describe("<DefValues><Value Name='LATE' DataType='value'>$DIR/late</Value></DefValues>");
        files_.addFile("/tmp/log",
                       "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\n"
                       "FILE\tCREATE\t/app/tool\r\n");
    }

    void describe(const std::string& more) {
        files_.addFile(
            "/app/product.xml",
            "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc>"
            "<InstallerControlVariables><UninstallError>ERR</UninstallError></InstallerControlVariables>" +
                more + "<Installation><Uninstall><InstallLogFile>[DIR]/install.log</InstallLogFile>" +
                "</Uninstall></Installation></TandrelGroupInstallation>");
    }
    std::unique_ptr<NestedUninstallation> session(const std::string& log = "/tmp/log") {
        auto made =
            std::make_unique<NestedUninstallation>(machine_.bundle(), system_, &ui_, errors_, DebugLog(log_));
        made->load(log);
        return made;
    }
    std::string failure() {
        try {
            session();
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "(none)";
    }

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    InstallingSystem system_{files_};
    FakeConsole log_;
    RecordingUI ui_;
    ErrorList errors_;
};

TEST_F(NestedUninstallationTest, TakesTheProductOfALogAway) {
    const auto made = session();
    EXPECT_EQ(made->productName(), "Demo");
    EXPECT_TRUE(made->uninstall({}));
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(files_.hasFile("/tmp/log"));
    EXPECT_EQ(ui_.callsOf("setStatusText").back(), "setStatusText(\"The uninstall was successful.\")");
}

TEST_F(NestedUninstallationTest, LogsItsStepsInOrder) {
    session();
    EXPECT_THAT(log_.lines(),
                ElementsAre("Uninstall: Reading installation file name from action log",
                            "Uninstall: Reading installation file", "Uninstall: Parsing installation file",
                            "Uninstall: Getting product description", "Uninstall: Getting file sets",
                            testing::HasSubstr("WARNING: Missing control variable specifier"), testing::_,
                            testing::_, testing::_, testing::_, testing::_, testing::_, testing::_,
                            "Uninstall: Initializing values from previous log",
                            "Uninstall: Initializing default values"));
}

TEST_F(NestedUninstallationTest, ReadsDefaultValuesAfterTheVariablesOfTheLog) {
    describe(
        "<DefValues><Value Name='LATE' DataType='value'>$DIR/late</Value></DefValues><Installation>"
        "<PreUninstall><RemoveFile>[LATE]</RemoveFile></PreUninstall></Installation>");
    files_.addFile("/app/late", "x");
    EXPECT_TRUE(session()->uninstall({}));
    EXPECT_FALSE(files_.hasFile("/app/late"));
}

TEST_F(NestedUninstallationTest, TakesVariablesFromItsOwner) {
    describe(
        "<DefValues/><Installation><PreUninstall><RemoveFile>[EXTRA]</RemoveFile></PreUninstall>"
        "</Installation>");
    files_.addFile("/app/extra", "x");
    const auto made = session();
    made->setVariable("EXTRA", "/app/extra");
    EXPECT_TRUE(made->uninstall({}));
    EXPECT_FALSE(files_.hasFile("/app/extra"));
}

TEST_F(NestedUninstallationTest, KnowsTheRecordsOfTheProduct) {
    const ProductRecords records = session()->records();
    EXPECT_EQ(records.log, "/app/install.log");
    EXPECT_EQ(records.archive, "/app/backup.bin");
    EXPECT_EQ(records.description, "/app/product.xml");
}

TEST_F(NestedUninstallationTest, AddsItsErrorsToTheSharedList) {
    errors_ = {"of the session"};
    files_.addFile("/tmp/log",
                   "/app/product.xml\r\n\r\nNUMVARS\t0\r\nDIR\t1\t/app/\r\nFILE\tCREATE\t/app/tool\r\n");
    EXPECT_FALSE(session()->uninstall({}));
    ASSERT_EQ(errors_.size(), 2U);
    EXPECT_EQ(errors_[0], "of the session");
}

TEST_F(NestedUninstallationTest, UninstallsByALogWhoseVariablesAreDamaged) {
    files_.addFile("/tmp/log", "/app/product.xml\r\n\r\nNUMXXX\t0\r\nFILE\tCREATE\t/app/tool\r\n");
    EXPECT_TRUE(session()->uninstall({}));
    EXPECT_FALSE(files_.hasFile("/app/tool"));
}

TEST_F(NestedUninstallationTest, SaysWhichStepFailed) {
    const std::string whole = files_.content("/app/product.xml");
    describe("");
    EXPECT_EQ(failure(), "ERROR: Unable to initialize default values");
    files_.addFile("/app/product.xml", "<TandrelGroupInstallation><X/></TandrelGroupInstallation>");
    EXPECT_EQ(failure(), "ERROR: Unable to get product description");
    files_.addFile("/app/product.xml", "no document");
    EXPECT_EQ(failure(), "ERROR: Error parsing installation file");
    files_.removeFile("/app/product.xml");
    EXPECT_EQ(failure(), "ERROR: Unable to read installation file (/app/product.xml)");
    files_.addFile("/tmp/log", "");
    EXPECT_EQ(failure(), "ERROR: Unable to obtain installation file from action log");
    EXPECT_TRUE(log_.hasLine("Could not obtain installation file from action log"));
    files_.removeFile("/tmp/log");
    EXPECT_EQ(failure(), "ERROR: Unable to initialize uninstaller object");
    EXPECT_TRUE(files_.hasFile("/app/tool"));
}

TEST_F(NestedUninstallationTest, SaysHowFarItIs) {
    std::vector<int> shares;
    EXPECT_TRUE(session()->uninstall([&shares](int percent) { shares.push_back(percent); }));
    ASSERT_FALSE(shares.empty());
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_LE(shares.back(), 100);
}

}  // namespace
