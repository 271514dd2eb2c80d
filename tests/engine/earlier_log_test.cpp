#include "engine/earlier_log.h"

#include <gmock/gmock.h>

#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using State = EarlierLog::State;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kHead[] = "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\t1\r\n";

class EarlierLogTest : public testing::Test {
protected:
    EarlierLog read(const std::string& content) {
        files_.addFile("/app/install.log", content);
        return EarlierLog::read(files_, "/app/install.log");
    }

    MemoryFileSystem files_;
};

TEST_F(EarlierLogTest, HoldsTheRecordsAndTheArchive) {
    const EarlierLog log =
        read(std::string(kHead) + "RECORDS\r\nFILE\tCREATE\t/app/VAR\r\nDIR\t1\t/app/\r\n");
    EXPECT_EQ(log.state, State::kWhole);
    EXPECT_EQ(log.archivePath, "/app/backup.bin");
    EXPECT_THAT(log.records, ElementsAre("FILE\tCREATE\t/app/VAR", "DIR\t1\t/app/"));
}

TEST_F(EarlierLogTest, IsNoneWithoutAFile) {
    EXPECT_EQ(EarlierLog::read(files_, "").state, State::kNone);
    EXPECT_EQ(EarlierLog::read(files_, "/app/install.log").state, State::kNone);
}

TEST_F(EarlierLogTest, IsUnreadableWhereNoFileCanBeOpened) {
    files_.addDirectory("/app/install.log");
    EXPECT_EQ(EarlierLog::read(files_, "/app/install.log").state, State::kUnreadable);
    files_.addFile("/app/other.log", kHead);
    files_.failFrom(Operation::kOpen, "/app/other.log", 1, 13);
    const EarlierLog log = EarlierLog::read(files_, "/app/other.log");
    EXPECT_EQ(log.state, State::kUnreadable);
    EXPECT_EQ(log.status, 13);
}

TEST_F(EarlierLogTest, LeavesOutALastLineThatIsCut) {
    const EarlierLog log = read(std::string(kHead) + "FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/precious");
    EXPECT_EQ(log.state, State::kDamaged);
    EXPECT_THAT(log.records, ElementsAre("FILE\tCREATE\t/app/a"));
}

TEST_F(EarlierLogTest, LeavesOutLinesThatNoWriterLeaves) {
    const EarlierLog log = read(std::string(kHead) + "FILE\tCREATE\t/app/" + std::string(5000, 'x') +
                                "\r\nFILE\tCREATE\t/b\x01\r\nFILE\tCREATE\t/app/a\r\n");
    EXPECT_EQ(log.state, State::kDamaged);
    EXPECT_THAT(log.records, ElementsAre("FILE\tCREATE\t/app/a"));
}

TEST_F(EarlierLogTest, ReadsTheRecordsOfALogWithoutItsCount) {
    const EarlierLog log =
        read("/app/product.xml\r\n/app/backup.bin\r\nVAR\tA\t1\r\nFILE\tCREATE\t/app/a\r\n");
    EXPECT_EQ(log.state, State::kDamaged);
    EXPECT_EQ(log.archivePath, "/app/backup.bin");
    EXPECT_THAT(log.records, ElementsAre("FILE\tCREATE\t/app/a"));
}

TEST_F(EarlierLogTest, HoldsNothingOfAnEmptyFile) {
    const EarlierLog log = read("");
    EXPECT_EQ(log.state, State::kDamaged);
    EXPECT_THAT(log.records, IsEmpty());
    EXPECT_EQ(log.archivePath, "");
}

TEST_F(EarlierLogTest, KeepsWhatItReadBeforeAFailure) {
    std::string content = kHead;
    for (int i = 0; i < 10'000; ++i) {
        content += "FILE\tCREATE\t/app/" + std::to_string(i) + "\r\n";
    }
    files_.failFrom(Operation::kRead, "/app/install.log", 4);  // the head twice, then one block of records
    const EarlierLog log = read(content);
    EXPECT_EQ(log.state, State::kDamaged);
    EXPECT_GT(log.records.size(), 100U);
    EXPECT_LT(log.records.size(), 10'000U);
}

}  // namespace
