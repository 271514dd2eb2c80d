#include "engine/previous_installations.h"

#include "engine/earlier_installations.h"
#include "engine_fixture.h"

namespace {

class PreviousInstallationsTest : public EngineTest {
protected:
    PreviousInstallationsTest() {
        describe(
            "<InstallerControlVariables><ShouldUninstall>SHOULD</ShouldUninstall>"
            "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables>");
    }

    EarlierInstallations found_;
    PreviousInstallations previous_{found_, variables_, controls_, console_};
};

TEST_F(PreviousInstallationsTest, removesNothingUnlessAskedTo) {
    found_.previousInstallationKind = 1;
    EXPECT_EQ(previous_.uninstallPrevious(), 0);
    variables_.setVariable("SHOULD", "0");
    EXPECT_EQ(previous_.uninstallPrevious(), 0);
    EXPECT_EQ(found_.previousUninstallDone, 1);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(PreviousInstallationsTest, hasNothingToDoWithoutEarlierInstallations) {
    variables_.setVariable("SHOULD", "1");
    EXPECT_EQ(previous_.uninstallPrevious(), 0);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(PreviousInstallationsTest, saysThatItCannotRemoveWhatThereIs) {
    variables_.setVariable("SHOULD", "1");
    variables_.setVariable("UNINSTALL_ERROR", "old");
    found_.previousInstallationKind = 1;
    EXPECT_EQ(previous_.uninstallPrevious(), 1);
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{
                  "ERROR: Earlier installations are not removed: this version can not do that"});
    found_ = {};
    found_.legacyInstallationCount = 1;
    EXPECT_EQ(previous_.uninstallPrevious(), 1);
    found_ = {};
    found_.legacyLogFiles = {{"A", "/a"}};
    EXPECT_EQ(previous_.uninstallPrevious(), 1);
}

}  // namespace
