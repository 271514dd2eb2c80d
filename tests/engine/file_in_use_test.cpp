#include "engine/file_in_use.h"

#include <gtest/gtest.h>

#include "engine/report.h"
#include "fakes/installing_system.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kProgram[] = "C:\\app\\tool.exe";

class FileInUseTest : public testing::Test {
protected:
    FileInUseTest() { files_.addFile(kProgram, "old"); }
    bool free(const char* path = kProgram, std::uint32_t wait = 2000) {
        return FileInUse(files_, system_, report_).deleteFileInUse(path, wait);
    }
    std::vector<std::string> closings() const {
        std::vector<std::string> found;
        for (const std::string& call : system_.calls) {
            if (call.starts_with("close")) {
                found.push_back(call);
            }
        }
        return found;
    }

    MemoryFileSystem files_;
    InstallingSystem system_{files_};
    RecordingUI ui_;
    Report report_{&ui_, nullptr};
};

TEST_F(FileInUseTest, StopsTheProgramAndDeletesItsFile) {
    system_.runningFrom = {kProgram};
    EXPECT_TRUE(free());
    EXPECT_FALSE(files_.hasFile(kProgram));
    EXPECT_EQ(closings(), std::vector<std::string>{"closeProgram(C:\\app\\tool.exe)"});
    EXPECT_EQ(system_.slept, 0U);
}

TEST_F(FileInUseTest, LeavesAProgramOfTheSameNameFromElsewhereAlone) {
    system_.running = {"tool.exe"};
    system_.runningFrom = {"D:\\mine\\tool.exe"};
    EXPECT_TRUE(free());
    EXPECT_TRUE(closings().empty());
    EXPECT_TRUE(system_.running.contains("tool.exe"));
    EXPECT_EQ(system_.runningFrom.size(), 1U);
}

TEST_F(FileInUseTest, WaitsForTheEndInStepsAndKeepsTheFrontEndAlive) {
    system_.runningFrom = {kProgram};
    system_.looksBeforeEnd = 3;
    EXPECT_TRUE(free());
    EXPECT_EQ(system_.slept, 150U);
    EXPECT_EQ(ui_.calls, std::vector<std::string>(3, "pumpEvents()"));
}

TEST_F(FileInUseTest, GivesUpWaitingAtTheLimit) {
    system_.runningFrom = {kProgram};
    system_.looksBeforeEnd = 1000000;
    EXPECT_TRUE(free(kProgram, 200));  // the deletion decides
    EXPECT_EQ(system_.slept, 210U);
}

TEST_F(FileInUseTest, EndsAlsoWithAWaitOfNothing) {
    system_.runningFrom = {kProgram};
    system_.looksBeforeEnd = 1000000;
    EXPECT_TRUE(free(kProgram, 0));
    EXPECT_EQ(system_.slept, 1U);
}

TEST_F(FileInUseTest, LeavesAnythingButProgramsAlone) {
    files_.addFile("C:\\app\\tool.dll", "old");
    files_.addFile("C:\\app\\TOOL.EXE", "old");
    system_.runningFrom = {"C:\\app\\tool.dll", "C:\\app\\TOOL.EXE"};
    EXPECT_FALSE(free("C:\\app\\tool.dll"));
    EXPECT_FALSE(free("C:\\app\\TOOL.EXE"));
    EXPECT_TRUE(files_.hasFile("C:\\app\\tool.dll"));
    EXPECT_TRUE(closings().empty());
}

TEST_F(FileInUseTest, DeletesAProgramThatDoesNotRun) {
    EXPECT_TRUE(free());
    EXPECT_TRUE(closings().empty());
}

TEST_F(FileInUseTest, FailsWhenTheFileStays) {
    files_.failAt(Operation::kRemoveFile, kProgram, 1);
    EXPECT_FALSE(free());
    EXPECT_TRUE(files_.hasFile(kProgram));
}

TEST_F(FileInUseTest, DoesWithoutAFrontEnd) {
    system_.runningFrom = {kProgram};
    system_.looksBeforeEnd = 1;
    Report silent(nullptr, nullptr);
    EXPECT_TRUE(FileInUse(files_, system_, silent).deleteFileInUse(kProgram, 2000));
}

}  // namespace
