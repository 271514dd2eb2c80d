#include "installer/run_options.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "session/command_line_parameters.h"

namespace {

class RunOptionsTest : public testing::Test {
protected:
    RunOptions read(const std::vector<std::string>& tokens) {
        parameters_ = std::make_unique<CommandLineParameters>();
        EXPECT_EQ(parameters_->parse(tokens), 0);
        return readRunOptions(*parameters_);
    }

private:
    std::unique_ptr<CommandLineParameters> parameters_;
};

TEST_F(RunOptionsTest, WithoutOptionsTheWizardRunsWithBackups) {
    const RunOptions options = read({});
    EXPECT_EQ(options.debug, 0);
    EXPECT_EQ(options.gui, 1);
    EXPECT_EQ(options.ignoreErrors, 0);
    EXPECT_FALSE(options.autoMode);
    EXPECT_EQ(options.quiet, 0);
    EXPECT_EQ(options.sessionFlags, kSessionBackup);
    EXPECT_EQ(options.configFile, std::nullopt);
    EXPECT_EQ(options.binFile, std::nullopt);
    EXPECT_EQ(options.uninstallLog, std::nullopt);
    EXPECT_EQ(options.uninstallApp, "");
    EXPECT_EQ(options.uninstallFile, std::nullopt);
    EXPECT_EQ(options.verifyLog, std::nullopt);
    EXPECT_EQ(options.receipt, std::nullopt);
    EXPECT_EQ(options.receiptLog, "");
}

TEST_F(RunOptionsTest, AutoCountsByItsPresenceAlone) {
    const RunOptions options = read({"-auto=0"});
    EXPECT_TRUE(options.autoMode);
    EXPECT_EQ(options.gui, 0);
}

TEST_F(RunOptionsTest, AutoWinsOverAWantedWizard) {
    EXPECT_EQ(read({"-gui=1", "-auto"}).gui, 0);
}

TEST_F(RunOptionsTest, AnAnswersFileIsQuietOnTheConsole) {
    const RunOptions options = read({"-configFile=x", "-gui=1"});
    EXPECT_EQ(options.configFile, "x");
    EXPECT_EQ(options.gui, 0);
    EXPECT_EQ(options.quiet, 1);
}

TEST_F(RunOptionsTest, QuietBesideAnAnswersFileWins) {
    EXPECT_EQ(read({"-configFile=x", "-quiet=0"}).quiet, 0);
    EXPECT_EQ(read({"-quiet=0", "-configFile=x"}).quiet, 0);
}

TEST_F(RunOptionsTest, AnIntegerOptionWithoutValueIsZero) {
    EXPECT_EQ(read({"-gui"}).gui, 0);
    EXPECT_EQ(read({"-debug"}).debug, 0);
}

TEST_F(RunOptionsTest, BackupsCanBeTurnedOff) {
    EXPECT_EQ(read({"-backup=0"}).sessionFlags, 0U);
    EXPECT_EQ(read({"-backup"}).sessionFlags, 0U);
    EXPECT_EQ(read({"-backup=2"}).sessionFlags, kSessionBackup);
}

TEST_F(RunOptionsTest, TheSecondStageOfUninstallingStartsFromALog) {
    const RunOptions options = read({"-uninstallFile=log", "-uninstallApp=Product"});
    EXPECT_EQ(options.sessionFlags, kSessionBackup | kSessionActionLog);
    EXPECT_EQ(options.uninstallFile, "log");
    EXPECT_EQ(options.uninstallApp, "Product");
}

TEST_F(RunOptionsTest, AVerificationAndAReceiptHaveTheirPaths) {
    const RunOptions options = read({"-verify=log", "-receipt=file", "-receiptLog=registered"});
    EXPECT_EQ(options.verifyLog, "log");
    EXPECT_EQ(options.receipt, "file");
    EXPECT_EQ(options.receiptLog, "registered");
    EXPECT_EQ(read({"-verify"}).verifyLog, "");
}

TEST_F(RunOptionsTest, BothDashesAreAccepted) {
    EXPECT_EQ(read({"--quiet=1"}).quiet, 1);
    EXPECT_EQ(read({"-quiet=1"}).quiet, 1);
}

TEST_F(RunOptionsTest, OptionNamesKeepTheirCase) {
    EXPECT_EQ(read({"-Quiet=1"}).quiet, 0);
}

TEST_F(RunOptionsTest, ExitCodesAreAsked) {
    EXPECT_FALSE(read({}).exitCodes);
    EXPECT_FALSE(read({"-exitCodes=0"}).exitCodes);
    EXPECT_FALSE(read({"-exitCodes"}).exitCodes) << "as every number without a value";
    EXPECT_TRUE(read({"-exitCodes=1"}).exitCodes);
}

TEST_F(RunOptionsTest, HelpHasSeveralNamesAndNoValue) {
    const auto asks = [](const std::vector<std::string>& tokens) {
        CommandLineParameters parameters;
        EXPECT_EQ(parameters.parse(tokens), 0);
        return asksForHelp(parameters);
    };
    for (const char* const word : {"-help", "--help", "-h", "-?", "-help="}) {
        EXPECT_TRUE(asks({"-auto", word})) << word;
    }
    EXPECT_FALSE(asks({}));
    EXPECT_FALSE(asks({"-help=me"}));
    EXPECT_FALSE(asks({"-Help"}));
}

TEST_F(RunOptionsTest, QuestionsAreNoSettingsOfARun) {
    const std::vector<std::string_view> names = runOptionNames();
    EXPECT_NE(std::find(names.begin(), names.end(), "uninstallFile"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "help"), names.end());
}

TEST_F(RunOptionsTest, TheFirstOfTwoEqualOptionsCounts) {
    EXPECT_EQ(read({"-debug=2", "-debug=3"}).debug, 2);
}

}  // namespace
