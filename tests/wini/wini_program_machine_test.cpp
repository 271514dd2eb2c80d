#include <gtest/gtest.h>

#include "engine/changes/program_run.h"
#include "engine/report.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "fakes/temporary_directory.h"
#include "wini/machine_fixture.h"

namespace {

// Programs on this machine.
class WiniProgramMachineTest : public MachineTest {
protected:
    bool run(const std::string& childTest, std::uint32_t flags) {
        return programs_.run({ownImage(), argumentsOf(childTest), "", flags}, report_, 1);
    }

    FakeConsole log_;
    RecordingUI ui_;
    Report report_{&ui_, nullptr};
    ProgramRun programs_{machine_.processes, machine_.shell, log_};
};

TEST_F(WiniProgramMachineTest, RunsAProgramToItsEnd) {
    for (const std::uint32_t flags : {kRunWait + 0U, kRunAsynchronous + 0U, kRunAsynchronous | kRunWait}) {
        EXPECT_TRUE(run("Passes", flags));
        EXPECT_FALSE(run("Fails", flags));
    }
}

TEST_F(WiniProgramMachineTest, RunsAWholeCommandLineInADirectory) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(programs_.run({commandOf("LeavesAFileInItsDirectory"), "", directory.path(),
                               kRunAsynchronous | kRunWholeCommandLine},
                              report_, 1));
    EXPECT_TRUE(testFileExists(directory.file("left behind")));
}

TEST_F(WiniProgramMachineTest, SaysThatAProgramIsMissing) {
    const TemporaryDirectory directory;
    for (const std::uint32_t flags : {0U, kRunWait + 0U, kRunAsynchronous + 0U}) {
        EXPECT_FALSE(programs_.run({directory.file("none.exe"), "", "", flags}, report_, 1));
    }
}

}  // namespace
