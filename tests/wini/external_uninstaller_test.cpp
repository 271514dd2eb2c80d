#include "wini/external_uninstaller.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <utility>

#include "contracts/system_operations.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/error_text.h"
#include "platform/memory/memory_platform.h"
#include "wini/uninstaller_events.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kCommand[] = "\"C:\\Old App\\un.exe\" -uninstall=\"C:\\Old App\\install.log\"";

class ExternalUninstallerTest : public testing::Test {
protected:
    ExternalUninstallerTest() {
        add("Old", kCommand);
        ui_.onCall = [this](const std::string& call) {
            if (call == "pumpEvents()" && actions_.contains(++looks_)) {
                actions_[looks_]();
            }
        };
    }

    void add(const char* name, const char* command, RegistryView view = RegistryView::kNative) {
        machine_.registry.addText(RegistryRoot::kLocalMachine, UninstallList::keyOf(name), "UninstallString",
                                  command, view);
    }
    bool uninstall(std::string_view name, std::string_view arguments, std::uint32_t flags, InstallerUI* ui) {
        return uninstaller_.uninstallApplication(name, arguments, flags, ui, [this] { return isToEnd_; });
    }
    void removeEntry(const char* name, RegistryView view = RegistryView::kNative) {
        machine_.registry.deleteKey(RegistryRoot::kLocalMachine, UninstallList::keyOf(name), view);
    }
    // Has something happen at a look, by its number.
    void atLook(int number, std::function<void()> action) { actions_[number] = std::move(action); }
    void signalBoth() {
        machine_.events.signal(kUninstallerStartEvent);
        machine_.events.signal(kUninstallerEndEvent);
    }
    std::vector<std::string> started() const {
        std::vector<std::string> lines;
        for (const MemoryProcesses::Started& program : machine_.processes.started) {
            lines.push_back(program.commandLine);
        }
        return lines;
    }

    MemoryPlatform machine_;
    FakeConsole log_;
    RecordingUI ui_;
    std::uint64_t time_ = 0;  // each look lasts 100 ms
    int looks_ = 0;           // at the uninstaller, until now
    std::map<int, std::function<void()>> actions_;
    bool isToEnd_ = false;
    ExternalUninstaller uninstaller_{
        {machine_.registry, machine_.processes, machine_.events}, log_, {}, [this] { return time_ += 100; }};
};

using Lines = std::vector<std::string>;
using Waits = std::vector<std::pair<std::string, std::uint32_t>>;

constexpr int kNever = 1000000;

TEST_F(ExternalUninstallerTest, WaitsForTheEndOfAProgramThatTakesItselfOffTheList) {
    machine_.processes.waitsBeforeEnd = 20;
    atLook(10, [this] { removeEntry("Old"); });
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(started(), Lines{kCommand});
    EXPECT_EQ(looks_, 21);
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
    EXPECT_EQ(ui_.countOf("messageBox"), 0);
    EXPECT_TRUE(log_.lines().empty());
    EXPECT_EQ(machine_.events.openEvents, 0);
}

// The first program ends at once, as those of our own uninstallers do.
TEST_F(ExternalUninstallerTest, WaitsForTheSignalsOfTheProgramThatGoesOn) {
    atLook(30, [this] { machine_.events.signal(kUninstallerStartEvent); });
    atLook(60, [this] { removeEntry("Old"); });
    atLook(90, [this] { machine_.events.signal(kUninstallerEndEvent); });
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 90);
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
}

TEST_F(ExternalUninstallerTest, MakesTheEventsBeforeItStartsTheUninstaller) {
    machine_.processes.onStart = [this](const std::string&) {
        EXPECT_EQ(machine_.events.openEvents, 2);
        signalBoth();
    };
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 1);
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, SeesThatAProgramGoesOnWithoutSignalsUntilItIsOffTheList) {
    add("Old", kCommand, RegistryView::k32Bit);
    atLook(100, [this] { removeEntry("Old", RegistryView::k32Bit); });
    EXPECT_TRUE(uninstall("Old", "", kEntryIn32BitView | kEntryWait, &ui_));
    EXPECT_EQ(looks_, 100);
}

TEST_F(ExternalUninstallerTest, ShowsTheCodeOfAnUninstallerThatFails) {
    machine_.processes.exitCodes = {2};
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 1);
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"The uninstaller of \"Old\" ended with the code 2\")"});
    EXPECT_EQ(log_.lines(), Lines{"ERROR: " + std::string(kCommand) + " ended with the code 2"});
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, ShowsWhyAnUninstallerDoesNotStart) {
    machine_.processes.startError = 2;
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(ui_.calls, Lines{"addMessage(\"The uninstaller of \"Old\" does not start: " +
                               std::string(kCommand) + ": " + platform::errorText(2) + "\")"});
    EXPECT_EQ(log_.lines(), Lines{"ERROR: " + std::string(kCommand) + " does not start (2)"});
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, ShowsThatAnEntryNamesNoUninstaller) {
    EXPECT_FALSE(uninstall("None", "", kEntryWait, &ui_));
    EXPECT_EQ(ui_.calls,
              Lines{"addMessage(\"The uninstaller of \"None\" is not known: its entry names none\")"});
}

TEST_F(ExternalUninstallerTest, LeavesAnUninstallerThatNeverEndsWhenThatIsAgreedTo) {
    machine_.processes.waitsBeforeEnd = kNever;
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 3001);
    EXPECT_EQ(
        ui_.callsOf("messageBox"),
        Lines{"messageBox(\"The uninstaller of \"Old\" has not ended after 5 minutes. Stop waiting?\", 2)"});
    EXPECT_EQ(
        ui_.callsOf("addMessage"),
        Lines{
            "addMessage(\"The uninstaller of \"Old\" has not ended after 5 minutes and is left running\")"});
    EXPECT_EQ(log_.lines(), Lines{"WARNING: The uninstaller of \"Old\" has not ended after 5 minutes"});
    EXPECT_TRUE(machine_.processes.terminated.empty());
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, GoesOnWaitingWhenThatIsWished) {
    machine_.processes.waitsBeforeEnd = 7000;
    ui_.messageBoxResult = 0;
    atLook(6500, [this] { removeEntry("Old"); });
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(
        ui_.callsOf("messageBox"),
        (Lines{
            "messageBox(\"The uninstaller of \"Old\" has not ended after 5 minutes. Stop waiting?\", 2)",
            "messageBox(\"The uninstaller of \"Old\" has not ended after 10 minutes. Stop waiting?\", 2)"}));
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
}

TEST_F(ExternalUninstallerTest, LeavesASecondProgramThatNeverSignalsItsEnd) {
    machine_.events.signal(kUninstallerStartEvent);
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(
        ui_.callsOf("addMessage"),
        Lines{
            "addMessage(\"The uninstaller of \"Old\" has not ended after 5 minutes and is left running\")"});
}

TEST_F(ExternalUninstallerTest, AsksSoonWhenTheProgramEndedAndTheProductStays) {
    constexpr char kText[] =
        "The uninstaller of \"Old\" ended 1 minute ago, but the product is still registered";
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 602);
    EXPECT_EQ(ui_.callsOf("messageBox"),
              Lines{"messageBox(\"" + std::string(kText) + ". Stop waiting?\", 2)"});
    EXPECT_EQ(ui_.callsOf("addMessage"), Lines{"addMessage(\"" + std::string(kText) + "\")"});
    EXPECT_EQ(log_.lines(), Lines{"WARNING: " + std::string(kText)});
}

TEST_F(ExternalUninstallerTest, LeavesAtTheLimitWithoutAFrontEnd) {
    machine_.processes.waitsBeforeEnd = kNever;
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, nullptr));
}

TEST_F(ExternalUninstallerTest, StopsWaitingWhenTheSessionIsCancelled) {
    machine_.processes.waitsBeforeEnd = kNever;
    atLook(5, [this] { isToEnd_ = true; });
    EXPECT_FALSE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 5);
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"The uninstaller of \"Old\" is not waited for any longer\")"});
    EXPECT_EQ(ui_.countOf("messageBox"), 0);
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, WaitsForTheProgramAloneWithoutEvents) {
    machine_.events.createFails = true;
    machine_.processes.waitsBeforeEnd = 3;
    EXPECT_TRUE(uninstall("Old", "", kEntryWait, &ui_));
    EXPECT_EQ(looks_, 4);
    EXPECT_EQ(log_.lines(), Lines{"WARNING: Only the end of the uninstaller's own program is waited for: no "
                                  "named events"});
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
    EXPECT_TRUE(uninstall("Old", "", 0, nullptr));
    EXPECT_EQ(machine_.events.waits,
              (Waits{{"OrmelUninstallerStart", 60000}, {"OrmelUninstallerEnd", 300000}}));
    EXPECT_EQ(machine_.events.openEvents, 0);
}

TEST_F(ExternalUninstallerTest, DoesNotWaitForTheEndOfAnUninstallerThatNeverSignalled) {
    EXPECT_TRUE(uninstall("Old", "", 0, nullptr));
    EXPECT_EQ(machine_.events.waits, (Waits{{"OrmelUninstallerStart", 60000}}));
}

TEST_F(ExternalUninstallerTest, SucceedsAlsoWhenTheEndDoesNotCome) {
    machine_.processes.onStart = [this](const std::string&) {
        machine_.events.signal(kUninstallerStartEvent);
    };
    EXPECT_TRUE(uninstall("Old", "", 0, nullptr));
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

TEST_F(ExternalUninstallerTest, HandlesEventsWhileItWaitsForTheEvents) {
    int pumps = 0;
    ui_.onCall = [&](const std::string& call) {
        pumps += call == "pumpEvents()" ? 1 : 0;
        if (pumps == 10) {
            machine_.events.signal(kUninstallerStartEvent);
        } else if (pumps == 30) {
            machine_.events.signal(kUninstallerEndEvent);
        }
    };
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    EXPECT_EQ(pumps, 30);
    for (const auto& [name, milliseconds] : machine_.events.waits) {
        EXPECT_LE(milliseconds, 150U);
    }
}

TEST_F(ExternalUninstallerTest, GivesUpAtTheSameLimitWhileItHandlesEvents) {
    EXPECT_TRUE(uninstall("Old", "", 0, &ui_));
    std::uint32_t waited = 0;
    for (const auto& [name, milliseconds] : machine_.events.waits) {
        EXPECT_EQ(name, kUninstallerStartEvent);
        waited += milliseconds;
    }
    EXPECT_EQ(waited, 60000U);
}

}  // namespace
