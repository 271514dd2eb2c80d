#include "session/collaborators.h"

#include "session/session_state.h"
#include "session_fixture.h"

namespace {

class CollaboratorsTest : public SessionTest {
protected:
    SessionState state_{files_};
    FakeSystemModifications modifications_;
    Collaborators parts_{state_, {files_, environment_, system_, modifications_, session_}, {}};
};

TEST_F(CollaboratorsTest, WorkOnOneState) {
    state_.description.parseText(
        "<TandrelGroupInstallation><ProductDesc><Fullname>[NAME]</Fullname></ProductDesc>"
        "<Installation><Uninstall><InstallLogFile>[NAME].log</InstallLogFile></Uninstall>"
        "</Installation></TandrelGroupInstallation>");
    parts_.variables.setVariable("NAME", "demo");
    char buffer[32] = "";
    EXPECT_EQ(parts_.product.getInstallLogFile(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "demo.log");
    EXPECT_EQ(parts_.loggedVariables.collect().size(), 1U);
    state_.uiIsGraphical = 1;
    EXPECT_EQ(parts_.expressions.evaluateCondition("[GUI_INSTALL]==1"), 1);
}

TEST_F(CollaboratorsTest, LogToTheConsoleThatTheSessionHasAtTheTime) {
    parts_.work.revertInstallation(&ui_);
    EXPECT_TRUE(log_.lines().empty());
    state_.debugLog.setTarget(&log_, 0);
    parts_.work.revertInstallation(&ui_);
    EXPECT_EQ(log_.lines().size(), 1U);
    state_.console.setTarget(nullptr, 0);
    parts_.work.revertInstallation(&ui_);
    EXPECT_EQ(log_.lines().size(), 1U);
}

}  // namespace
