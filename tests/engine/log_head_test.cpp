#include "engine/log_head.h"

#include <gmock/gmock.h>

#include "engine_fixture.h"
#include "support/p_file_stream.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class LogHeadTest : public EngineTest {
protected:
    LogHead read(const std::string& content) {
        content_ = content;
        files_.addFile("/log", content);
        PFileStream log(files_);
        EXPECT_EQ(log.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting),
                  0);
        return readLogHead(log);
    }
    std::string recordsOf(const LogHead& head) const {
        return content_.substr(static_cast<std::size_t>(head.recordsStart));
    }

    std::string content_;
};

TEST_F(LogHeadTest, EndsAfterAsManyVariablesAsAreCounted) {
    const LogHead head =
        read("x\r\ny\r\nNUMVARS\t2\r\nVAR\tDir\t/a b\r\nVAR\tFILE\tCREATE\r\nother\r\nDIR\t1\t/a/\r\n");
    EXPECT_TRUE(head.isSound);
    EXPECT_EQ(recordsOf(head), "other\r\nDIR\t1\t/a/\r\n");
    EXPECT_THAT(head.variables, ElementsAre(Pair("dir", "/a b"), Pair("file", "CREATE")));
}

TEST_F(LogHeadTest, TakesEmptyAndRepeatedValuesAsTheyAre) {
    const LogHead head = read("NUMVARS\t4\nVAR\tA\t1\nVAR\tB\t\nVAR\ta\t2\nVAR\t\nDIR\t1\t/\n");
    EXPECT_TRUE(head.isSound);
    EXPECT_EQ(recordsOf(head), "DIR\t1\t/\n");
    EXPECT_THAT(head.variables, ElementsAre(Pair("a", "2"), Pair("b", "")));
}

TEST_F(LogHeadTest, PassesOverValuesOfSeveralLines) {
    const LogHead head = read("NUMVARS\t2\r\nVAR\tA\tone\r\ntwo\r\nVAR\tB\tb\r\nDIR\t1\t/\r\n");
    EXPECT_TRUE(head.isSound);
    EXPECT_EQ(recordsOf(head), "DIR\t1\t/\r\n");
}

TEST_F(LogHeadTest, EndsAtTheFirstRecordWhenTheCountIsWrong) {
    const std::string records = "FILE\tCREATE\t/a\r\nVAR\tB\tb\r\nDIR\t1\t/\r\n";
    for (const char* const count :
         {"", "NUMVARS\r\n", "NUMVARS\t\r\n", "NUMVARS\tx\r\n", "NUMVARS\t-1\r\n", "NUMVARS\t2\r\n",
          "NUMVARS\t0\r\n", "NUMVARS\t999999999\r\n", "NUMVARS\t99999999999999999999999999\r\n",
          "NUMVARS 1\r\n", "NUMVARS\t1x\r\n"}) {
        const LogHead head = read(std::string("x\r\ny\r\n") + count + "VAR\tA\ta\r\n" + records);
        EXPECT_FALSE(head.isSound) << count;
        EXPECT_EQ(recordsOf(head), records) << count;
        EXPECT_THAT(head.variables, ElementsAre(Pair("a", "a"))) << count;
    }
}

TEST_F(LogHeadTest, BelievesNoLineThatIsCut) {
    const std::string whole = "x\r\ny\r\nNUMVARS\t1\r\nVAR\tDIR\t/app/product\r\n";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const LogHead head = read(whole.substr(0, size));
        EXPECT_FALSE(head.isSound) << size;
        EXPECT_THAT(head.variables, IsEmpty()) << size;
        EXPECT_EQ(recordsOf(head), "") << size;
    }
    EXPECT_TRUE(read(whole).isSound);
}

TEST_F(LogHeadTest, IsEmptyForALogThatCannotBeRead) {
    files_.failFrom(MemoryFileSystem::Operation::kRead, "/log", 1);
    const LogHead head = read("NUMVARS\t0\r\n");
    EXPECT_FALSE(head.isSound);
    EXPECT_EQ(head.recordsStart, 0);
}

TEST_F(LogHeadTest, GivesTheValuesOfTheLogWhateverTheSessionHolds) {
    variables_.set("DIR", "/default");
    variables_.set("ONLY_HERE", "/here");
    machine_.environment.variables["HOME"] = "/root";
    const LogHead head = read("NUMVARS\t2\r\nVAR\tDIR\t/chosen\r\nVAR\tGONE\told\r\n");
    LoggedValues values(head, variables_);
    EXPECT_EQ(values.get("dir"), "/chosen");
    EXPECT_EQ(values.get("GONE"), "old");
    EXPECT_EQ(values.get("ONLY_HERE"), std::nullopt);
    EXPECT_EQ(values.get("$HOME"), variables_.get("$HOME"));
    EXPECT_EQ(values.get("TEMP_DIR"), variables_.get("TEMP_DIR"));
    EXPECT_EQ(values.read("DIR", 3)->value, "/ch");
}

}  // namespace
