#include "engine/action_log_reader.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "fakes/fake_console.h"
#include "platform/memory/memory_file_system.h"
#include "support/p_file_stream.h"
#include "support/p_mem_stream.h"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

class ActionLogReaderTest : public testing::Test {
protected:
    void fill(const std::string& text) {
        stream_ = std::make_unique<PMemStream>(text.data(), static_cast<std::int64_t>(text.size()));
    }
    // False when there was a line of another form.
    bool read() {
        variables_.clear();
        return ActionLogReader(stream_.get(), console_)
            .readVariables([this](const std::string& name, const std::string& value) {
                variables_.emplace_back(name, value);
            });
    }
    std::string errorOf() {
        try {
            read();
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "no error";
    }

    std::unique_ptr<PMemStream> stream_;
    FakeConsole console_;
    Pairs variables_;
};

TEST_F(ActionLogReaderTest, ReadsTheVariableBlockAndNothingAfterIt) {
    fill("x.xml\r\nb.bin\r\nNUMVARS\t2\r\nVAR\tA\t1\r\nVAR\tB\ttwo words\r\nVAR\tC\t3\r\n");
    EXPECT_TRUE(read());
    EXPECT_EQ(variables_, (Pairs{{"A", "1"}, {"B", "two words"}}));
    EXPECT_TRUE(console_.lines().empty());
}

TEST_F(ActionLogReaderTest, RefusesAnEmptyValueAndReadsTheRest) {
    fill("\r\n\r\nNUMVARS\t3\r\nVAR\tA\t\r\nnonsense\r\nVAR\tC\t3\r\n");
    EXPECT_FALSE(read());
    EXPECT_EQ(variables_, (Pairs{{"C", "3"}}));
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{
                  "ERROR: Format error in variable format in log file (Read buff: VAR\tA)",
                  "ERROR: Format error in variable format in log file (Read buff: nonsense)"}));
}

TEST_F(ActionLogReaderTest, CutsAValueAtItsFirstTab) {
    fill("NUMVARS\t1\nVAR\tA\tleft\tright\n");
    EXPECT_TRUE(read());
    EXPECT_EQ(variables_, (Pairs{{"A", "left"}}));
}

TEST_F(ActionLogReaderTest, KeepsLeadingBlanksAndDropsTrailingOnes) {
    fill("NUMVARS\t1\nVAR\tA\t  v \t \r\n");
    EXPECT_TRUE(read());
    EXPECT_EQ(variables_, (Pairs{{"A", "  v"}}));
}

TEST_F(ActionLogReaderTest, TakesALineThatHoldsTheCountAnywhere) {
    fill("NUMVARS5\nVAR\tA\t1\n");
    EXPECT_EQ(errorOf(), "ERROR: Encountered EOF before expected number of variables (5)!");
    fill("xNUMVARS\t1\nVAR\tA\t1\n");
    EXPECT_EQ(errorOf(), "ERROR: Error parsing the number of variables in log file!");
}

TEST_F(ActionLogReaderTest, ThrowsForEachFaultOfTheBlock) {
    EXPECT_EQ(errorOf(), "ERROR: Invalid file handle for reading values from log!");
    fill("");
    EXPECT_EQ(errorOf(), "ERROR: No variable number found in the provided log file!");
    fill("a\r\nb\r\nFILE\tCREATE\tx\r\n");
    EXPECT_EQ(errorOf(), "ERROR: No variable number found in the provided log file!");
    fill("NUMVARS\tmany\r\n");
    EXPECT_EQ(errorOf(), "ERROR: Error parsing the number of variables in log file!");
    fill("NUMVARS\r\n");
    EXPECT_EQ(errorOf(), "ERROR: Error parsing the number of variables in log file!");
    fill("NUMVARS\t2\r\nVAR\tA\t1\r\n");
    EXPECT_EQ(errorOf(), "ERROR: Encountered EOF before expected number of variables (2)!");
    EXPECT_EQ(variables_, (Pairs{{"A", "1"}}));
}

TEST_F(ActionLogReaderTest, ThrowsWhenTheFileCannotBeRewound) {
    MemoryFileSystem files;
    files.addFile("/log", "NUMVARS\t0\n");
    PFileStream file(files);
    ASSERT_EQ(
        file.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead, PFileStream::kOpenExisting),
        0);
    files.failFrom(MemoryFileSystem::Operation::kSeek, "/log", 1);
    try {
        ActionLogReader(&file, console_).readVariables([](const std::string&, const std::string&) {});
        FAIL() << "nothing thrown";
    } catch (const InstallerError& error) {
        EXPECT_STREQ(error.what(), "ERROR: The file handle for reading values from log could not be reset!");
    }
}

TEST_F(ActionLogReaderTest, RefusesHostileCounts) {
    fill("NUMVARS\t-5\nVAR\tA\t1\n");
    EXPECT_TRUE(read());
    EXPECT_TRUE(variables_.empty());
    fill("NUMVARS\t99999999999999\nVAR\tA\t1\n");
    EXPECT_EQ(errorOf(), "ERROR: Encountered EOF before expected number of variables (2147483647)!");
}

TEST_F(ActionLogReaderTest, TakesALineLongerThanItsBufferForSeveral) {
    fill("NUMVARS\t2\nVAR\tA\t" + std::string(3000, 'v') + "\n");
    EXPECT_FALSE(read());
    EXPECT_EQ(variables_, (Pairs{{"A", std::string(2047 - 6, 'v')}}));
}

TEST_F(ActionLogReaderTest, SurvivesTheLogCutAtEachLength) {
    const std::string whole = "d.xml\r\nb.bin\r\nNUMVARS\t2\r\nVAR\tA\t1\r\nVAR\tB\t2\r\n";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        fill(whole.substr(0, length));
        const std::string error = errorOf();
        EXPECT_LE(variables_.size(), 2U);
        if (length < whole.size() - 9) {
            EXPECT_NE(error, "no error") << length;
        }
    }
}

TEST_F(ActionLogReaderTest, ReadsTheDescriptionsPathFromTheFirstLine) {
    const auto path = [this] { return ActionLogReader(stream_.get(), console_).readDescriptionPath(); };
    EXPECT_EQ(path(), std::nullopt);
    fill("C:/a b/d.xml \r\nsecond\r\n");
    EXPECT_EQ(path(), "C:/a b/d.xml");
    fill("\r\nsecond\r\n");
    EXPECT_EQ(path(), "");
    fill("");
    EXPECT_EQ(path(), std::nullopt);
    fill(std::string(2000, 'p'));
    EXPECT_EQ(path(), std::string(1559, 'p'));
}

TEST_F(ActionLogReaderTest, ReadsTheArchivesPathFromTheSecondLine) {
    const auto path = [this] { return ActionLogReader(stream_.get(), console_).readArchivePath(); };
    EXPECT_EQ(path(), std::nullopt);
    fill("first\r\nC:/a b/backup.bin \r\nthird\r\n");
    EXPECT_EQ(path(), "C:/a b/backup.bin");
    fill("first\r\n\r\nthird\r\n");
    EXPECT_EQ(path(), "");
    fill("first\r\n");
    EXPECT_EQ(path(), std::nullopt);
}

TEST_F(ActionLogReaderTest, FindsOneVariableInAnyCaseTheLastOneWinning) {
    fill("NUMVARS\t3\nVAR\tName\t1\nVAR\tOther\t2\nVAR\tNAME\t3\n");
    ActionLogReader reader(stream_.get(), console_);
    EXPECT_EQ(reader.findVariable("name"), "3");
    EXPECT_EQ(reader.findVariable("other"), "2");
    EXPECT_EQ(reader.findVariable("none"), std::nullopt);
    EXPECT_EQ(ActionLogReader(nullptr, console_).findVariable("name"), std::nullopt);
    EXPECT_TRUE(console_.lines().empty());
}

}  // namespace
