#include "engine/changes/program_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "engine/report.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/error_text.h"
#include "platform/memory/memory_processes.h"
#include "platform/memory/memory_shell_objects.h"
#include "platform/written_path.h"

namespace {

using RunProgramThread = AsynchronousRunProgram::RunProgramThread;

constexpr std::uint32_t kLook = 1;

// A program that runs until a test lets it end.
class HeldProgram : public MemoryProcesses {
public:
    std::thread::id waitingThread;

    void letEnd() {
        const std::lock_guard lock(mutex_);
        mayEnd_ = true;
        changed_.notify_all();
    }
    std::unique_ptr<platform::ChildProcess> start(std::string_view commandLine,
                                                  std::string_view workDirectory, int& outError) override {
        auto child = MemoryProcesses::start(commandLine, workDirectory, outError);
        return std::make_unique<Child>(*this, std::move(child));
    }

private:
    class Child : public platform::ChildProcess {
    public:
        Child(HeldProgram& owner, std::unique_ptr<platform::ChildProcess> child)
            : owner_(owner), child_(std::move(child)) {}
        bool wait(std::uint32_t milliseconds) override {
            std::unique_lock lock(owner_.mutex_);
            owner_.waitingThread = std::this_thread::get_id();
            owner_.changed_.wait(lock, [this] { return owner_.mayEnd_; });
            return child_->wait(milliseconds);
        }
        int exitCode() override { return child_->exitCode(); }

    private:
        HeldProgram& owner_;
        std::unique_ptr<platform::ChildProcess> child_;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    bool mayEnd_ = false;
};

class ProgramRunTest : public testing::Test {
protected:
    bool run(std::uint32_t flags, const char* arguments = "", InstallerUI* ui = nullptr,
             std::uint32_t pause = 0) {
        Report report(ui, nullptr);
        return programs_.run({"/opt/my app/tool", arguments, "/work", flags}, report, pause);
    }
    const MemoryProcesses::Started& onlyStart() {
        EXPECT_EQ(processes_.started.size(), 1U);
        return processes_.started.at(0);
    }

    MemoryProcesses processes_;
    MemoryShellObjects shell_;
    FakeConsole log_;
    RecordingUI ui_;
    Report silent_{nullptr, nullptr};
    ProgramRun programs_{processes_, shell_, log_};
};

TEST_F(ProgramRunTest, HandsADocumentToTheShellAndLooksAtNothingElse) {
    EXPECT_TRUE(run(kRunOpenWithShell | kRunWait | kRunAsynchronous, "-x", &ui_));
    EXPECT_EQ(shell_.opened, std::vector<std::string>{"/opt/my app/tool"});
    EXPECT_TRUE(processes_.started.empty());
    EXPECT_TRUE(ui_.calls.empty());
    shell_.opens = false;
    EXPECT_FALSE(run(kRunOpenWithShell));
}

TEST_F(ProgramRunTest, StartsAProgramAndGoesOn) {
    processes_.exitCodes = {5};
    EXPECT_TRUE(run(0, "-x"));
    EXPECT_EQ(onlyStart().commandLine, "\"/opt/my app/tool\" -x");
    EXPECT_EQ(onlyStart().workDirectory, "/work");
}

TEST_F(ProgramRunTest, StartsAProgramWithoutArgumentsOrDirectory) {
    EXPECT_TRUE(programs_.run({"tool", "", "", 0}, silent_, 0));
    EXPECT_EQ(onlyStart().commandLine, "\"tool\"");
    EXPECT_EQ(onlyStart().workDirectory, "");
}

TEST_F(ProgramRunTest, WaitsForTheEndOnRequest) {
    processes_.waitsBeforeEnd = 2;
    processes_.exitCodes = {0, 3};
    EXPECT_TRUE(run(kRunWait));
    EXPECT_FALSE(run(kRunWait));
}

TEST_F(ProgramRunTest, RunsAWholeCommandLine) {
    EXPECT_TRUE(programs_.run({"\"a b\" -c", "", "", kRunWholeCommandLine}, silent_, 0));
    EXPECT_EQ(onlyStart().commandLine, "\"a b\" -c");
}

TEST_F(ProgramRunTest, IgnoresTheFlagsWithoutAMeaningHere) {
    EXPECT_TRUE(run(kRunAsRoot | kRunNoErrorOutput));
    EXPECT_EQ(onlyStart().commandLine, "\"/opt/my app/tool\"");
}

TEST_F(ProgramRunTest, LogsAndShowsWhyAProgramDoesNotStart) {
    processes_.startError = 2;
    const std::string shown =
        "addMessage(\"" + platform::writtenPath("/opt/my app/tool") + ": " + platform::errorText(2) + "\")";
    for (const std::uint32_t flags :
         {std::uint32_t{0}, std::uint32_t{kRunWait}, std::uint32_t{kRunAsynchronous}}) {
        log_.clear();
        ui_.calls.clear();
        EXPECT_FALSE(run(flags, "", &ui_));
        EXPECT_EQ(log_.lines()[0], "ERROR: \"/opt/my app/tool\" does not start (2)");
        EXPECT_EQ(ui_.callsOf("addMessage"), std::vector{shown});
    }
}

TEST_F(ProgramRunTest, SucceedsWithTheExitCodeOfAnAsynchronousProgram) {
    processes_.exitCodes = {0, 1, -1};
    EXPECT_TRUE(run(kRunAsynchronous));
    EXPECT_FALSE(run(kRunAsynchronous));
    EXPECT_FALSE(run(kRunAsynchronous | kRunWait, "", &ui_, 5));
}

TEST_F(ProgramRunTest, TellsAProgramThatEndedFromOneThatDidNotStart) {
    for (const std::uint32_t flags : {kRunWait, kRunAsynchronous}) {
        processes_.exitCodes = {0, 7, -1};
        for (const int code : {0, 7, -1}) {
            const ProgramOutcome outcome = programs_.execute({"tool", "-x", "", flags}, silent_, 0);
            EXPECT_TRUE(outcome.started);
            EXPECT_EQ(outcome.exitCode, code);
            EXPECT_EQ(outcome.succeeded(), code == 0);
        }
        processes_.startError = 2;
        const ProgramOutcome outcome = programs_.execute({"tool", "", "", flags}, silent_, 0);
        EXPECT_FALSE(outcome.started);
        EXPECT_EQ(outcome.exitCode, std::nullopt);
        EXPECT_FALSE(outcome.succeeded());
        processes_.startError = 0;
    }
    EXPECT_TRUE(log_.hasLine("ERROR: \"tool\" -x ended with the code 7"));
    EXPECT_TRUE(log_.hasLine("ERROR: \"tool\" -x ended with the code -1"));
    EXPECT_FALSE(log_.hasLine("ERROR: \"tool\" -x ended with the code 0"));
    EXPECT_EQ(programs_.execute({"tool", "", "", 0}, silent_, 0).exitCode, std::nullopt);
}

class AsynchronousRunTest : public ProgramRunTest {
protected:
    // Lets the program end when the front end has been served so often.
    void endAfter(int rounds) {
        ui_.onCall = [this, rounds](const std::string& call) {
            if (call == "pumpEvents()" && ++rounds_ == rounds) {
                held_.letEnd();
            }
        };
    }
    bool runHeld(std::uint32_t flags, InstallerUI* ui, std::uint32_t pause) {
        Report report(ui, nullptr);
        return heldPrograms_.run({"tool", "", "", flags}, report, pause);
    }

    int rounds_ = 0;
    HeldProgram held_;
    ProgramRun heldPrograms_{held_, shell_, log_};
};

TEST_F(AsynchronousRunTest, ServesTheFrontEndUntilTheProgramHasEnded) {
    endAfter(3);
    EXPECT_TRUE(runHeld(kRunAsynchronous, &ui_, 1));
    EXPECT_GE(ui_.countOf("pumpEvents()"), 3);
    EXPECT_EQ(ui_.countOf("setCurrentProgress("), 0);
    EXPECT_NE(held_.waitingThread, std::this_thread::get_id());
}

TEST_F(AsynchronousRunTest, AdvancesTheProgressToAHundredAndStaysThere) {
    endAfter(104);
    EXPECT_TRUE(runHeld(kRunAsynchronous | kRunAdvanceProgress, &ui_, 0));
    const std::vector<std::string> shown = ui_.callsOf("setCurrentProgress(");
    ASSERT_GE(shown.size(), 103U);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(shown[i], "setCurrentProgress(" + std::to_string(std::min<std::size_t>(i, 100)) + ")");
    }
}

TEST_F(AsynchronousRunTest, DoesWithoutAFrontEnd) {
    held_.letEnd();
    EXPECT_TRUE(runHeld(kRunAsynchronous | kRunAdvanceProgress, nullptr, 0));
}

TEST_F(AsynchronousRunTest, LeavesNoThreadWhenTheFrontEndFails) {
    ui_.onCall = [this](const std::string&) {
        held_.letEnd();
        throw std::runtime_error("broken");
    };
    EXPECT_THROW(runHeld(kRunAsynchronous, &ui_, 1), std::runtime_error);
    ui_.onCall = nullptr;
    EXPECT_TRUE(runHeld(kRunAsynchronous, &ui_, 1));
}

TEST(AsynchronousRunProgramTest, PutsTheProgramInQuotes) {
    EXPECT_EQ((AsynchronousRunProgram{"C:\\my app\\t.exe", "", "", 0}).commandLine(),
              "\"C:\\my app\\t.exe\"");
    EXPECT_EQ((AsynchronousRunProgram{"C:\\my app\\t.exe", "-a \"b c\"", "", kRunWait}).commandLine(),
              "\"C:\\my app\\t.exe\" -a \"b c\"");
}

TEST(AsynchronousRunProgramTest, LeavesAWholeCommandLineAsItIs) {
    EXPECT_EQ((AsynchronousRunProgram{"\"t.exe\" -a", "", "", kRunWholeCommandLine}).commandLine(),
              "\"t.exe\" -a");
    EXPECT_EQ((AsynchronousRunProgram{"t.exe -a", "-b", "", kRunWholeCommandLine}).commandLine(),
              "t.exe -a -b");
}

class RunProgramThreadTest : public testing::Test {
protected:
    MemoryProcesses processes_;
    RunProgramThread thread_{processes_};
};

TEST_F(RunProgramThreadTest, HasAName) {
    EXPECT_STREQ(thread_.getName(), "InstallerRunProgramThread");
}

TEST_F(RunProgramThreadTest, RunsTheProgramToItsEnd) {
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

TEST_F(RunProgramThreadTest, EndsWithThePresetCodeWhenTheProgramDoesNotStart) {
    processes_.startError = 2;
    AsynchronousRunProgram program{"none", "", "", 0};
    thread_.run(&program);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
}

TEST_F(RunProgramThreadTest, RunsNothingForNull) {
    thread_.run(nullptr);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
    EXPECT_TRUE(processes_.started.empty());
}

TEST_F(RunProgramThreadTest, EndsAlsoWhenItFails) {
    processes_.onStart = [](const std::string&) { throw std::runtime_error("broken"); };
    AsynchronousRunProgram program{"tool", "", "", 0};
    EXPECT_THROW(thread_.run(&program), std::runtime_error);
    EXPECT_TRUE(thread_.isFinished());
    EXPECT_EQ(thread_.waitFor(kLook), -1);
}

TEST_F(RunProgramThreadTest, WakesTheOneThatWaits) {
    AsynchronousRunProgram program{"tool", "", "", 0};
    std::thread runner([&] { thread_.run(&program); });
    EXPECT_EQ(thread_.waitFor(60000), 0);
    runner.join();
}

TEST_F(ProgramRunTest, HandlesEventsWhileItWaits) {
    processes_.waitsBeforeEnd = 3;
    EXPECT_TRUE(run(kRunWait, "", &ui_));
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 4);
    run(0, "", &ui_);
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 4) << "nothing is waited for";
}

}  // namespace
