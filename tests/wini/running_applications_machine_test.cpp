#include <gtest/gtest.h>

#include "base/path_functions.h"
#include "engine/changes/program_run.h"
#include "fakes/fake_console.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "wini/machine_fixture.h"
#include "wini/running_applications.h"

namespace {

// A program under a name and in a directory of its own, so that no other process can be hit.
constexpr char kName[] = "tandrel-wini-child.exe";

class RunningApplicationsMachineTest : public MachineTest {
protected:
    void SetUp() override { copyOwnImage(program_); }

    FakeConsole log_;
    ProgramRun programs_{machine_.processes, machine_.shell, log_};
    RunningApplications applications_{machine_.files, machine_.processes, programs_, log_};
    TemporaryDirectory directory_;
    const std::string program_ = directory_.file(kName);
    const std::string from_ = directory_.path();
};

TEST_F(RunningApplicationsMachineTest, FindsAndStopsAllProcessesOfAName) {
    auto first = startChild("Sleeps", program_);
    auto second = startChild("Sleeps", program_);
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_TRUE(applications_.isApplicationRunning(kName, ""));
    EXPECT_TRUE(applications_.isApplicationRunning("TANDREL-wini-child.EXE", from_));
    EXPECT_TRUE(applications_.closeApplication(kName, false, from_));
    EXPECT_TRUE(first->wait(kLongEnough));
    EXPECT_TRUE(second->wait(kLongEnough));
    first.reset();
    second.reset();
    EXPECT_FALSE(applications_.isApplicationRunning(kName, from_));
    EXPECT_FALSE(applications_.closeApplication(kName, false, from_));
}

TEST_F(RunningApplicationsMachineTest, LeavesAProcessFromElsewhereAlone) {
    const TemporaryDirectory other;
    const auto child = startChild("Sleeps", program_);
    ASSERT_NE(child, nullptr);
    EXPECT_FALSE(applications_.isApplicationRunning(kName, other.path()));
    ASSERT_EQ(log_.lines().size(), 1U);
    EXPECT_TRUE(
        log_.lines()[0].starts_with("App \"" + std::string(kName) + "\" running in separate dir: \""));
    EXPECT_FALSE(applications_.closeApplication(kName, false, other.path()));
    EXPECT_FALSE(child->wait(0));
    EXPECT_TRUE(applications_.closeApplication(kName, false, from_));
    EXPECT_TRUE(child->wait(kLongEnough));
}

TEST_F(RunningApplicationsMachineTest, AsksAServiceToStop) {
    const auto child = startChild("Sleeps", program_);
    ASSERT_NE(child, nullptr);
    if (!machine_.processes.isAdministrators(machine_.processes.currentId()) ||
        !machine_.files.isProtected(program_, platform::Protection::kAdministrators)) {
        applications_.closeApplication(kName, false, from_);
        GTEST_SKIP() << "only an administrator's service is asked, from a place of administrators";
    }
    const StoppingService service(directory_.file("stopped"));
    EXPECT_TRUE(applications_.closeApplication(kName, true, from_));
    EXPECT_TRUE(testFileExists(directory_.file("stopped")));
    EXPECT_TRUE(child->wait(kLongEnough));
}

TEST_F(RunningApplicationsMachineTest, OnlyEndsAServiceOutsideOfTheNamedDirectory) {
    const auto child = startChild("Sleeps", program_);
    ASSERT_NE(child, nullptr);
    const StoppingService service(directory_.file("stopped"));
    // Part of the path, and so a match, but no directory that the program lies in.
    EXPECT_TRUE(applications_.closeApplication(kName, true, from_.substr(0, from_.size() - 1)));
    EXPECT_FALSE(testFileExists(directory_.file("stopped")));
    EXPECT_TRUE(child->wait(kLongEnough));
}

TEST_F(RunningApplicationsMachineTest, StopsTheProgramOfAFileAlone) {
    const TemporaryDirectory other;
    copyOwnImage(other.file(kName));
    const auto mine = startChild("Sleeps", program_);
    const auto others = startChild("Sleeps", other.file(kName));
    ASSERT_TRUE(mine != nullptr && others != nullptr);
    EXPECT_TRUE(applications_.closeProgram(program_));
    EXPECT_TRUE(mine->wait(kLongEnough));
    EXPECT_FALSE(others->wait(0));
    EXPECT_TRUE(applications_.isProgramRunning(other.file(kName)));
    EXPECT_TRUE(applications_.closeProgram(other.file(kName)));
    EXPECT_TRUE(others->wait(kLongEnough));
}

// A process that is to close the processes of its own name, started by one of that name.
TEST(WiniChild, DISABLED_ClosesItsName) {
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    ASSERT_EQ(OUtils::lastPathComponent(image), kName);
    const std::string directory = image.substr(0, image.size() - sizeof kName);
    platform::Platform machine = platform::systemPlatform();
    FakeConsole log;
    ProgramRun programs(machine.processes, machine.shell, log);
    RunningApplications applications(machine.files, machine.processes, programs, log);
    EXPECT_TRUE(applications.isApplicationRunning(kName, directory));
    EXPECT_FALSE(applications.closeApplication(kName, false, directory));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(WiniChild, DISABLED_StartsOneThatClosesItsName) {
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    int error = 0;
    const auto child =
        platform::systemProcesses().start(MachineTest::commandOf("ClosesItsName", image).c_str(), "", error);
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(MachineTest::kLongEnough));
    EXPECT_EQ(child->exitCode(), 0);
}

TEST_F(RunningApplicationsMachineTest, NeverStopsTheProcessThatStartedIt) {
    const auto child = startChild("StartsOneThatClosesItsName", program_);
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), 0);
}

}  // namespace
