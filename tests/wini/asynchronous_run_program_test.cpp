#include "wini/asynchronous_run_program.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "contracts/system_modifications.h"
#include "fakes/fake_processes.h"

namespace {

using RunProgramThread = AsynchronousRunProgram::RunProgramThread;

constexpr std::uint32_t kLook = 1;

TEST(AsynchronousRunProgramTest, putsTheProgramInQuotes) {
    EXPECT_EQ((AsynchronousRunProgram{"C:\\my app\\t.exe", "", "", 0}).commandLine(),
              "\"C:\\my app\\t.exe\"");
    EXPECT_EQ((AsynchronousRunProgram{"C:\\my app\\t.exe", "-a \"b c\"", "", kRunWait}).commandLine(),
              "\"C:\\my app\\t.exe\" -a \"b c\"");
}

TEST(AsynchronousRunProgramTest, leavesAWholeCommandLineAsItIs) {
    EXPECT_EQ((AsynchronousRunProgram{"\"t.exe\" -a", "", "", kRunWholeCommandLine}).commandLine(),
              "\"t.exe\" -a");
    EXPECT_EQ((AsynchronousRunProgram{"t.exe -a", "-b", "", kRunWholeCommandLine}).commandLine(),
              "t.exe -a -b");
}

class RunProgramThreadTest : public testing::Test {
protected:
    FakeProcesses processes_;
    RunProgramThread thread_{processes_};
};

TEST_F(RunProgramThreadTest, hasAName) {
    EXPECT_STREQ(thread_.getName(), "InstallerRunProgramThread");
}

TEST_F(RunProgramThreadTest, runsTheProgramToItsEnd) {
    processes_.exitCodes = {7};
    processes_.waitsBeforeEnd = 3;
    AsynchronousRunProgram program{"tool", "-x", "/work", 0};
    EXPECT_FALSE(thread_.isFinished());
    EXPECT_FALSE(thread_.waitAtMost(0));
    thread_.run(&program);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), 7);
    ASSERT_EQ(processes_.started.size(), 1U);
    EXPECT_EQ(processes_.started[0].commandLine, "\"tool\" -x");
    EXPECT_EQ(processes_.started[0].workDirectory, "/work");
}

TEST_F(RunProgramThreadTest, endsWithThePresetCodeWhenTheProgramDoesNotStart) {
    processes_.startError = 2;
    AsynchronousRunProgram program{"none", "", "", 0};
    thread_.run(&program);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
}

TEST_F(RunProgramThreadTest, runsNothingWithoutAProgram) {
    thread_.run(nullptr);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
    EXPECT_TRUE(processes_.started.empty());
}

TEST_F(RunProgramThreadTest, endsAlsoWhenItFails) {
    processes_.onStart = [](const std::string&) { throw std::runtime_error("broken"); };
    AsynchronousRunProgram program{"tool", "", "", 0};
    EXPECT_THROW(thread_.run(&program), std::runtime_error);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
}

TEST_F(RunProgramThreadTest, wakesTheOneThatWaits) {
    AsynchronousRunProgram program{"tool", "", "", 0};
    std::thread runner([&] { thread_.run(&program); });
    EXPECT_EQ(thread_.waitFor(60000), 0);
    runner.join();
}

}  // namespace
