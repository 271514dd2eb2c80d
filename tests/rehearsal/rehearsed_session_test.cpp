#include "rehearsal/rehearsed_session.h"

#include <gtest/gtest.h>

#include "rehearsal/small_product.h"
#include "support/p_console.h"
#include "ui/console/console_ui.h"

namespace {

class RehearsedSessionTest : public testing::Test {
protected:
    int run(RehearsedSession& session, bool isUninstallation) {
        ConsoleUI ui(isUninstallation, false, true, machine_.console, session.answers(), log_);
        bool isAutomated = false;
        ui.createInputProvider(isUninstallation ? "autoUninstall" : "autoInstall", isAutomated);
        return session.run(ui, nowhere_);
    }

    PConsole nowhere_;
    DebugLog log_{nowhere_};
    MachineDescription description_ = plainMachine(MemoryManner::System::kLinux);
    RehearsedMachine machine_{description_, [](const auto&) { return ""; }};
};

TEST_F(RehearsedSessionTest, RunsAProductWithAnyFrontEnd) {
    machine_.files.addProgram("/setup/setup",
                              "image" + SmallProduct::product(SmallProduct::description()).package);
    RehearsedSession session(machine_, log_, WiniArguments());
    EXPECT_EQ(session.load({"/setup/setup", 5, false, true, ""}), "");
    const int status = run(session, false);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(session.hasSucceeded(status));
    EXPECT_EQ(session.page(), "Finish");
    EXPECT_EQ(session.engine().productLog(), "/opt/small/u/install.log");
    EXPECT_TRUE(session.errors().empty());
    session.engine().releaseSession();
}

TEST_F(RehearsedSessionTest, SaysWhatCantBeLoaded) {
    machine_.files.addProgram("/setup/setup", "no package");
    RehearsedSession session(machine_, log_, WiniArguments());
    EXPECT_NE(session.load({"/setup/setup", 0, false, true, ""}), "");
    EXPECT_EQ(session.page(), "");
}

TEST_F(RehearsedSessionTest, HasNotSucceededWhenAnErrorWasFound) {
    const std::string text =
        SmallProduct::description("<FileSet Name=\"Missing\"><FN Dest=\"/opt\">none.txt</FN></FileSet>");
    machine_.files.addProgram("/setup/setup", SmallProduct::product(text).package);
    RehearsedSession session(machine_, log_, WiniArguments());
    EXPECT_EQ(session.load({"/setup/setup", 0, false, true, ""}), "");
    EXPECT_FALSE(session.hasSucceeded(run(session, false)));
    EXPECT_FALSE(session.errors().empty());
    session.engine().releaseSession();
}

}  // namespace
