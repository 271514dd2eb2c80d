#include "session/session_model.h"

#include <gtest/gtest.h>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/fake_system_operations.h"
#include "package/cabinet.h"
#include "platform/memory/memory_platform.h"

namespace {

class SessionModelTest : public testing::Test {
protected:
    bool read(const std::string& content, bool isUninstallation = false, bool isGraphical = false) {
        model_.parse("<TandrelGroupInstallation>" + content + "</TandrelGroupInstallation>");
        model_.setGraphical(isGraphical);
        return model_.read(cabinet_, isUninstallation);
    }

    static constexpr char kProduct[] = "<ProductDesc><Fullname>[NAME]</Fullname></ProductDesc>";
    static constexpr char kDialogs[] =
        "<Dialogs><Hello/><Bye/></Dialogs><UninstallDialogs><Gone/></UninstallDialogs>";

    MemoryPlatform machine_;
    FakeSystemOperations system_;
    AnswersFile answers_{machine_.files};
    FakeConsole log_;
    Cabinet cabinet_{machine_.files, log_};
    SessionModel model_{machine_.bundle(), system_, answers_, log_};
};

TEST_F(SessionModelTest, ReadsEverythingFromOneDescription) {
    EXPECT_TRUE(read(
        std::string(kProduct) + kDialogs +
        "<InstallerControlVariables><InstallError>FAILED</InstallError></InstallerControlVariables>"
        "<FileSet Name='S'><FN Dest='/app'>a.txt</FN></FileSet>"
        "<Installation><Uninstall><InstallLogFile>[NAME].log</InstallLogFile></Uninstall></Installation>"));
    model_.variables.store().set("NAME", "demo");
    EXPECT_EQ(model_.product.installLogFile(), "demo.log");
    EXPECT_EQ(model_.dialogs.getDialogCount(), 2);
    const ProductModel view = model_.view();
    EXPECT_EQ(view.fileSets.getFiles().size(), 1U);
    EXPECT_EQ(std::string_view(view.controls.nameOf(ControlVariable::kInstallError)), "FAILED");
    EXPECT_EQ(view.variables.get("NAME"), "demo");
}

TEST_F(SessionModelTest, ReadsTheDialogsOfTheUninstallation) {
    EXPECT_TRUE(read(std::string(kProduct) + kDialogs, true));
    EXPECT_EQ(model_.dialogs.getDialogCount(), 1);
}

TEST_F(SessionModelTest, NeedsAProduct) {
    EXPECT_FALSE(read(kDialogs));
    EXPECT_EQ(log_.lines().back(), "Getting product description");
}

TEST_F(SessionModelTest, NeedsDialogs) {
    EXPECT_FALSE(read(kProduct));
    EXPECT_EQ(log_.lines().back(), "ERROR: Getting dialogs info. Aborting!");
}

TEST_F(SessionModelTest, ReadsTheThemeForAGraphicalFrontEndAlone) {
    const std::string themed = std::string(kProduct) + kDialogs +
                               "<ColourTheme><DialogBackground>1</DialogBackground></ColourTheme>";
    EXPECT_TRUE(read(themed, false, true));
    EXPECT_TRUE(model_.theme.isThemed());
    SessionModel plain(machine_.bundle(), system_, answers_, log_);
    plain.parse("<TandrelGroupInstallation>" + themed + "</TandrelGroupInstallation>");
    EXPECT_TRUE(plain.read(cabinet_, false));
    EXPECT_FALSE(plain.theme.isThemed());
}

}  // namespace
