#include "engine/run_records.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/run_records_format.h"
#include "platform/memory/memory_platform.h"

namespace {

namespace Format = RunRecordsFormat;
using Operation = MemoryFileSystem::Operation;

class RunRecordsTest : public testing::Test {
protected:
    RunRecordsTest() {
        machine_.environment.stateDirectory(directory_);
        machine_.files.addDirectory(directory_);
        path_ = directory_ + "/runs.txt";
    }
    bool add(const RunRecord& record) { return RunRecords(machine_.bundle()).add(record); }
    static RunRecord recordOf(int minute, std::string product = "Demo", std::string why = "") {
        return {{2026, 11, 3, 4, minute, 6}, false, RunEnd::kDone, std::move(product), std::move(why)};
    }
    std::string content() const { return machine_.files.content(path_); }
    long runs() const {
        const std::string text = content();
        return std::count(text.begin(), text.end(), Format::kLineEnd) - 1;
    }

    MemoryPlatform machine_;
    std::string directory_;
    std::string path_;
};

TEST_F(RunRecordsTest, SayWhenWhatAndHowItEnded) {
    EXPECT_TRUE(add(recordOf(5)));
    RunRecord second = recordOf(7, "Other", "Ask");
    second.isUninstallation = true;
    second.end = RunEnd::kCancelled;
    EXPECT_TRUE(add(second));
    EXPECT_EQ(content(),
              "TANDREL RUNS 1\n2026-11-03 04:05:06\tinstall\tdone\t0\tDemo\t\n"
              "2026-11-03 04:07:06\tuninstall\tcancelled\t6\tOther\tAsk\n");
    EXPECT_TRUE(machine_.files.isPrivate(path_));
}

TEST_F(RunRecordsTest, AreThoseOfTheLastTenRuns) {
    for (int minute = 0; minute < 25; ++minute) {
        EXPECT_TRUE(add(recordOf(minute)));
    }
    EXPECT_EQ(runs(), 10);
    EXPECT_EQ(content().find(" 04:14:"), std::string::npos);
    EXPECT_NE(content().find(" 04:15:"), std::string::npos);
    EXPECT_NE(content().find(" 04:24:"), std::string::npos);
}

TEST_F(RunRecordsTest, HoldHostileTextsInOneLine) {
    EXPECT_TRUE(add(recordOf(1, "a\nb\tc\x1b[2J" + std::string(5000, 'x'), "\xc2\x9bwhy\r\n")));
    EXPECT_EQ(runs(), 1);
    EXPECT_NE(content().find("\ta b c?[2Jxx"), std::string::npos);
    EXPECT_LT(content().size(), 2 * Format::kLongestLine);
    EXPECT_TRUE(add(recordOf(2)));
    EXPECT_EQ(runs(), 2);
}

TEST_F(RunRecordsTest, AreNotMadeWithoutAStateDirectory) {
    machine_.files.removeDirectory(directory_);
    EXPECT_FALSE(add(recordOf(1)));
    EXPECT_FALSE(machine_.files.exists(directory_));
}

TEST_F(RunRecordsTest, ALinkInTheirPlaceIsReplacedAndNotFollowed) {
    machine_.files.addFile("/precious", "TANDREL RUNS 1\n1\tsecret\n");
    machine_.files.addLink(path_, "/precious");
    EXPECT_TRUE(add(recordOf(1)));
    EXPECT_EQ(machine_.files.content("/precious"), "TANDREL RUNS 1\n1\tsecret\n");
    EXPECT_EQ(machine_.files.kindOf(path_), platform::PathKind::kFile);
    EXPECT_EQ(runs(), 1);
}

TEST_F(RunRecordsTest, AFailureLeavesWhatWasThere) {
    EXPECT_TRUE(add(recordOf(1)));
    const std::string before = content();
    machine_.files.setReadOnly(directory_);
    EXPECT_FALSE(add(recordOf(2)));
    EXPECT_EQ(content(), before);
    EXPECT_EQ(machine_.files.allFiles().size(), 1U);
}

TEST_F(RunRecordsTest, KeepNothingOfAnotherForm) {
    for (const std::string& text :
         {std::string(), std::string("something else\n1\tx\n"), std::string("TANDREL RUNS 1\nno number\tx\n"),
          std::string("TANDREL RUNS 1\n1 no separator\n"),
          "TANDREL RUNS 1\n1\t" + std::string(1001, 'x') + "\n", std::string("TANDREL RUNS 1\n1\t\x1b[2J\n"),
          "TANDREL RUNS 1\n1\tx\n" + std::string(70000, '\n')}) {
        machine_.files.addFile(path_, text);
        EXPECT_TRUE(add(recordOf(1))) << text.substr(0, 40);
        EXPECT_EQ(runs(), 1) << text.substr(0, 40);
    }
}

TEST_F(RunRecordsTest, AFileCutAnywhereCostsOnlyWhatIsMissing) {
    EXPECT_TRUE(add(recordOf(1)));
    EXPECT_TRUE(add(recordOf(2)));
    const std::string whole = content();
    const std::size_t banner = whole.find(Format::kLineEnd) + 1;
    const std::size_t first = whole.find(Format::kLineEnd, banner) + 1;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        machine_.files.addFile(path_, whole.substr(0, size));
        EXPECT_TRUE(add(recordOf(3)));
        EXPECT_EQ(runs(), size < first ? 1 : size < whole.size() ? 2 : 3) << size;
    }
}

TEST_F(RunRecordsTest, MakeRoomForTheEndOfTheDirectoryOnlyWhenAlone) {
    EXPECT_TRUE(add(recordOf(1)));
    machine_.files.addFile(directory_ + "/other", "");
    RunRecords::removeIfAlone(machine_.files, directory_);
    EXPECT_TRUE(machine_.files.hasFile(path_));
    machine_.files.removeFile(directory_ + "/other");
    RunRecords::removeIfAlone(machine_.files, directory_);
    EXPECT_FALSE(machine_.files.hasFile(path_));
    RunRecords::removeIfAlone(machine_.files, "/missing");
}

}  // namespace
