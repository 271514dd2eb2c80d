#include "base/shared_buffer.h"
#include "session_fixture.h"

namespace {

// One session behind the interface that front ends see.
class InstallerForwardingTest : public SessionTest {
protected:
    InstallerForwardingTest() {
        load(document(
                 "<ProductDesc><Fullname>Demo</Fullname><Title>The demo</Title><MajorVersion>1</MajorVersion>"
                 "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion><Website>web</Website>"
                 "<Supportemail>mail</Supportemail><InstallHelpURL>help</InstallHelpURL><Banner>line</"
                 "Banner></ProductDesc>"
                 "<Words><Word Name='AnswerYes'>ja</Word></Words>"
                 "<Dialogs><Hello w='300' h='200' BkgColour='010203'><Text x='1' y='1' w='1' "
                 "h='1'>t</Text></Hello><Next/>"
                 "<End Special='Finish'/></Dialogs>"
                 "<DefValues><Value Name='A' DataType='value'>first</Value></DefValues>"
                 "<Installation><Uninstall><InstallLogFile>l[A]</InstallLogFile>"
                 "<InstallBackupFile>b[A]</InstallBackupFile><UninstallCmd>c[A]</UninstallCmd>"
                 "<UninstallXmlFile>x[A]</UninstallXmlFile></Uninstall></Installation>"
                 "<FileSet Name='S'><FN Dest='/app' Alias='readme'>doc/read.me</FN></FileSet>"),
             {{"readme", "text"}});
        EXPECT_EQ(run(), 0);
    }

    using Getter = int (InstallExchangeInfo::*)(char* buffer, int size);
    std::string textOf(Getter getter) {
        char buffer[256] = "";
        EXPECT_EQ((view_.*getter)(buffer, sizeof buffer), 0);
        return buffer;
    }

    InstallExchangeInfo& view_ = session_;
};

TEST_F(InstallerForwardingTest, GivesTheProductsTexts) {
    EXPECT_EQ(textOf(&InstallExchangeInfo::getFullName), "Demo");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getTitle), "The demo");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getMajorVersion), "1");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getVersion), "1.2.3");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getWebsite), "web");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getSupportEmail), "mail");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getInstallHelpUrl), "help");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getBanner), "line");
    EXPECT_EQ(view_.getWords().text("AnswerYes"), "ja");
    EXPECT_EQ(view_.getWords().text("AnswerNo"), "no");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getInstallLogFile), "lfirst");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getInstallBackupFile), "bfirst");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getUninstallCmd), "cfirst");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getUninstallXmlFile), "xfirst");
    EXPECT_EQ(textOf(&InstallExchangeInfo::getTemporaryFileName), "/tmp/orinstall1");
}

TEST_F(InstallerForwardingTest, ReadsFilesOfTheCabinet) {
    SharedBuffer buffer;
    std::array<std::uint8_t, 16> digest{};
    EXPECT_EQ(view_.readAlias(buffer, "readme", &digest), 0);
    EXPECT_STREQ(buffer.text(), "text");
    EXPECT_EQ(digest, md5Of("text", 4));
    EXPECT_EQ(view_.readAlias(buffer, "none", nullptr), -1);
    char path[64] = "";
    EXPECT_EQ(view_.getFilePathByAlias("readme", path, sizeof path), -1);
    EXPECT_STREQ(path, "\\app\\read.me");
}

TEST_F(InstallerForwardingTest, GivesTheDialogs) {
    EXPECT_EQ(view_.getDialogCount(), 3);
    EXPECT_STREQ(view_.getDialog(1, -1)->name.c_str(), "Next");
    EXPECT_EQ(view_.getDialog(3, -1), nullptr);
    EXPECT_EQ(view_.getDialogWidth(0), view_.getDialog(0, -1)->width);
    EXPECT_EQ(view_.getDialogHeight(0), view_.getDialog(0, -1)->height);
    EXPECT_EQ(view_.getSubDialogCount(0), 0);
    EXPECT_EQ(view_.getElementCount(0, -1), static_cast<int>(view_.getDialog(0, -1)->elements.size()));
    EXPECT_EQ(view_.getElement(0, 0, -1)->text, "t");
    EXPECT_EQ(view_.getFieldCount(0, -1), 0);
    EXPECT_EQ(view_.getField(0, 0, -1), nullptr);
    EXPECT_EQ(view_.getTaskCount(0), 0);
    EXPECT_EQ(view_.getTask(0, 0), nullptr);
    EXPECT_EQ(view_.getDialogItemCount(0, -1), static_cast<int>(view_.getDialog(0, -1)->buttons.size()));
    EXPECT_EQ(view_.getDialogItem(0, 99, -1), nullptr);
    EXPECT_EQ(view_.getRefreshFlags("A", 0, -1), 0U);
    std::int32_t background = 0;
    std::int32_t foreground = 0;
    view_.getDialogColours(0, -1, background, foreground);
    EXPECT_EQ(background, 0x030201);
    EXPECT_EQ(foreground, -1);
    EXPECT_EQ(view_.getThemeColour(0), -1);
    EXPECT_FALSE(view_.isThemed());
    ColourTheme theme;
    theme.setThemed(true);
    view_.setColourTheme(theme);
    EXPECT_TRUE(view_.isThemed());
    EXPECT_TRUE(view_.getColourTheme().isThemed());
}

TEST_F(InstallerForwardingTest, ReadsAndChangesVariables) {
    char buffer[64] = "";
    EXPECT_EQ(view_.setVariable("A", "second"), 0);
    EXPECT_GE(view_.getVariable("a", buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "second");
    view_.getDefaultValue("A", buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "first");
    EXPECT_GT(view_.expandVariables("<[A]>", buffer, sizeof buffer, false), 0);
    EXPECT_STREQ(buffer, "<second>");
    EXPECT_EQ(view_.evaluateCondition("'[A]'=='second'"), 1);
    EXPECT_EQ(session_.resetVariable("A", 2), 0);
    EXPECT_EQ(valueOf("A"), "first");
    EXPECT_EQ(session_.applyAssignment("[A]='third'"), 0);
    EXPECT_EQ(valueOf("A"), "third");
    view_.performAction(&ui_, "[A]='fourth'");
    EXPECT_EQ(valueOf("A"), "fourth");
}

TEST_F(InstallerForwardingTest, ShowsValuesInTheTextsThatAskForThem) {
    DialogElementDesc element;
    element.text = "[A], [NONE]";
    EXPECT_EQ(view_.getShownText(element), "[A], [NONE]");
    element.expandsVariables = true;
    EXPECT_EQ(view_.getShownText(element), "first, [NONE]");
    element.text = std::string(2000, 'x') + "[A]";
    EXPECT_EQ(view_.getShownText(element), std::string(2000, 'x') + "first");
}

TEST_F(InstallerForwardingTest, WalksTheDialogs) {
    EXPECT_EQ(view_.getCurrentDialog(), 0);
    EXPECT_EQ(view_.getCurrentSubDialog(), -1);
    EXPECT_EQ(view_.shift(&ui_, 1), 0);
    EXPECT_EQ(view_.getCurrentDialog(), 1);
    EXPECT_EQ(view_.dialogNext(&ui_, 1), 0);
    EXPECT_EQ(view_.dialogBack(&ui_, 1), 0);
    EXPECT_EQ(view_.getCurrentDialog(), 1);
    EXPECT_EQ(view_.goToDialog(2, &ui_), 0);
    EXPECT_EQ(view_.goToSubdialog(2, 5, &ui_), -1);
    EXPECT_EQ(view_.checkDialogCondition(&ui_), 2);
    view_.runTriggers(&ui_, 1, 0, -1);
    view_.refreshTaskStates(&ui_);
    view_.updateTaskState(&ui_, 0, 0, 1);
    EXPECT_FALSE(view_.isFinished());
    EXPECT_EQ(view_.dialogNext(&ui_, 1), 0);
    EXPECT_TRUE(view_.isFinished());
    EXPECT_TRUE(view_.hasErrors());  // nothing was installed
    EXPECT_FALSE(view_.isUninstalling());
    EXPECT_EQ(view_.getPreviousInstallationKind(), 0);
}

TEST_F(InstallerForwardingTest, KeepsTheStateOfTheFrontEndAndItsHelp) {
    view_.setUiState(5);
    EXPECT_EQ(view_.getUiState(), 5);
    view_.showHelp(&ui_);
    EXPECT_EQ(ui_.countOf("showHelp"), 1);
}

TEST_F(InstallerForwardingTest, ExtractsFiles) {
    files_.addDirectory("/dest");
    EXPECT_EQ(session_.extractAlias("readme", "/dest", false, false, 0444), "/dest\\readme");
    EXPECT_EQ(files_.content("/dest/readme"), "text");
    EXPECT_THROW(session_.extractAlias("none", "/dest", false, false, 0), InstallerError);
}

TEST_F(InstallerForwardingTest, TheUserChangesNothingWhileAPageIsBusy) {
    session_.getDialog(1, -1)->special |= kDialogBusy;
    std::vector<int> results;
    ui_.onCall = [&](const std::string& call) {
        if (call == "showPage(1, -1, 1)") {
            results.push_back(view_.getUiState());
            results.push_back(view_.setVariable("A", "pressed"));
            view_.setUiState(kUiFieldInvalid);
            results.push_back(view_.getUiState());
        }
    };
    EXPECT_EQ(view_.shift(&ui_, 1), 0);
    EXPECT_EQ(results, (std::vector<int>{kUiBusy, -1, kUiBusy}));
    EXPECT_EQ(valueOf("A"), "first");
    EXPECT_EQ(view_.getUiState(), kUiReady);
    EXPECT_EQ(view_.setVariable("A", "later"), 0);
}

}  // namespace
