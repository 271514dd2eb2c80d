#include "wini/external_uninstaller.h"

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "engine/changes/program_run.h"
#include "fakes/fake_console.h"
#include "fakes/fake_platform.h"
#include "fakes/recording_ui.h"
#include "wini/uninstaller_events.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kCommand[] = "\"C:\\Old App\\un.exe\" -uninstall=\"C:\\Old App\\install.log\"";

class ExternalUninstallerTest : public testing::Test {
protected:
    ExternalUninstallerTest() { add("Old", kCommand); }

    void add(const char* name, const char* command, RegistryView view = RegistryView::kNative) {
        machine_.registry.addText(RegistryRoot::kLocalMachine, UninstallList::keyOf(name), "UninstallString",
                                  command, view);
    }
    bool uninstall(std::string_view name, std::string_view arguments, std::uint32_t flags, InstallerUI* ui) {
        return uninstaller_.uninstallApplication(name, arguments, flags, ui);
    }
    std::vector<std::string> started() const {
        std::vector<std::string> lines;
        for (const FakeProcesses::Started& program : machine_.processes.started) {
            lines.push_back(program.commandLine);
        }
        return lines;
    }

    FakePlatform machine_;
    FakeConsole log_;
    RecordingUI ui_;
    ProgramRun programs_{machine_.processes, machine_.shell, log_};
    ExternalUninstaller uninstaller_{{machine_.registry, machine_.processes, machine_.events, programs_},
                                     log_};
};

using Lines = std::vector<std::string>;
using Waits = std::vector<std::pair<std::string, std::uint32_t>>;

TEST_F(ExternalUninstallerTest, WaitsForTheEndOfTheRegisteredCommand) {
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(started(), Lines{kCommand});
    EXPECT_TRUE(machine_.events.existing.empty());
    machine_.processes.exitCodes = {2};
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
}

TEST_F(ExternalUninstallerTest, PutsTheArgumentsAfterTheCommand) {
    uninstall("Old", "-silent -x", kEntryWait, &ui_);
    uninstall("Old", "", kEntryWait, &ui_);
    EXPECT_EQ(started(), (Lines{std::string(kCommand) + " -silent -x", kCommand}));
}

TEST_F(ExternalUninstallerTest, AsksForNoInterfaceWhenItDoesNotWaitAndHasNone) {
    ui_.graphical = 0;
    uninstall("Old", "-x", 0, &ui_);
    uninstall("Old", "", 0, nullptr);
    uninstall("Old", "", kEntryWait, &ui_);
    ui_.graphical = 1;
    uninstall("Old", "", 0, &ui_);
    EXPECT_EQ(started(), (Lines{std::string(kCommand) + " -x -gui=0", std::string(kCommand) + " -gui=0",
                                kCommand, kCommand}));
}

TEST_F(ExternalUninstallerTest, ReadsTheViewThatIsAskedFor) {
    add("Old", "small.exe", RegistryView::k32Bit);
    uninstall("Old", "", kEntryIn32BitView | kEntryWait, &ui_);
    EXPECT_EQ(started(), Lines{"small.exe"});
}

TEST_F(ExternalUninstallerTest, WaitsForBothEventsOfTheUninstaller) {
    machine_.processes.onStart = [this](const std::string&) {
        EXPECT_EQ(machine_.events.existing,
                  (std::set<std::string>{kUninstallerStartEvent, kUninstallerEndEvent}));
        EXPECT_EQ(machine_.events.openEvents, 2);
        machine_.events.signal(kUninstallerStartEvent);
        machine_.events.signal(kUninstallerEndEvent);
    };
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    EXPECT_EQ(machine_.events.waits,
              (Waits{{"OrmelUninstallerStart", 60000}, {"OrmelUninstallerEnd", 300000}}));
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, DoesNotWaitForTheEndOfAnUninstallerThatNeverSignalled) {
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    EXPECT_EQ(machine_.events.waits, (Waits{{"OrmelUninstallerStart", 60000}}));
}

TEST_F(ExternalUninstallerTest, SucceedsAlsoWhenTheEndDoesNotCome) {
    machine_.processes.onStart = [this](const std::string&) {
        machine_.events.signal(kUninstallerStartEvent);
    };
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    EXPECT_EQ(machine_.events.waits.size(), 2U);
}

TEST_F(ExternalUninstallerTest, WaitsForNothingWhenTheUninstallerDoesNotStart) {
    machine_.processes.startError = 2;
    EXPECT_FALSE(uninstall("Old", "", 0, &ui_));
    EXPECT_TRUE(machine_.events.waits.empty());
    EXPECT_EQ(machine_.events.openEvents, 0);
    EXPECT_EQ(log_.lines().size(), 1U);
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
}

TEST_F(ExternalUninstallerTest, StartsTheUninstallerAlsoWithoutEvents) {
    machine_.events.createFails = true;
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    EXPECT_EQ(started().size(), 1U);
    EXPECT_EQ(log_.lines(), Lines{"WARNING: The end of the uninstaller is not waited for: no named events"});
}

TEST_F(ExternalUninstallerTest, LogsThatThereIsNoCommand) {
    EXPECT_FALSE(uninstall("None", "", 0, &ui_));
    EXPECT_FALSE(uninstall("", "", 0, &ui_));
    EXPECT_FALSE(uninstall("Old", "", kEntryIn32BitView, &ui_));
    EXPECT_EQ(log_.lines(),
              (Lines{"ERROR: Could not obtain uninstall string for uninstalling application: \"None\"",
                     "ERROR: Could not obtain uninstall string for uninstalling application: \"\"",
                     "ERROR: Could not obtain uninstall string for uninstalling application: \"Old\""}));
    EXPECT_TRUE(started().empty());
}

}  // namespace
