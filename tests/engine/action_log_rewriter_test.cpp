#include "engine/action_log_rewriter.h"

#include <gtest/gtest.h>

#include <map>

#include "base/errors.h"
#include "engine/action_log_reader.h"
#include "platform/memory/memory_file_system.h"
#include "support/debug_log.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kOld[] =
    "x.xml\r\nb.bin\r\nNUMVARS\t2\r\nVAR\tA\t1\r\nVAR\tB\t2\r\nDIR\t1\t/app\\\r\nFILE\tCREATE\t/v\r\n";

class ActionLogRewriterTest : public testing::Test {
protected:
    void rewrite() {
        ActionLogRewriter(files_).rewriteActionLog("/app/install.log", {{"A", "new"}, {"C", ""}});
    }
    std::string errorOf() {
        try {
            rewrite();
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "no error";
    }
    std::string rewritten(const std::string& old) {
        files_.addFile("/app/install.log", old);
        rewrite();
        return files_.content("/app/install.log");
    }

    MemoryFileSystem files_;
};

TEST_F(ActionLogRewriterTest, ReplacesTheVariableBlockAlone) {
    EXPECT_EQ(
        rewritten(kOld),
        "x.xml\r\nb.bin\r\nNUMVARS\t2\r\nVAR\tA\tnew\r\nVAR\tC\t\r\nDIR\t1\t/app\\\r\nFILE\tCREATE\t/v\r\n");
    EXPECT_EQ(files_.allFiles(), std::vector<std::string>{"/app/install.log"});
}

TEST_F(ActionLogRewriterTest, LosesALineAfterTheBlockThatHoldsTheLettersOfTheTag) {
    EXPECT_EQ(
        rewritten(
            "a\r\nb\r\nNUMVARS\t0\r\nFILE\tCREATE\t/VAR/x\r\nFILE\tCREATE\t/y\r\nFILE\tCREATE\t/VAR/z\r\n"),
        "a\r\nb\r\nNUMVARS\t2\r\nVAR\tA\tnew\r\nVAR\tC\t\r\nFILE\tCREATE\t/y\r\nFILE\tCREATE\t/VAR/z\r\n");
}

TEST_F(ActionLogRewriterTest, CopiesLongLinesWhole) {
    const std::string line = "FILE\tCREATE\t" + std::string(5000, 'p') + "\r\n";
    EXPECT_EQ(rewritten("NUMVARS\t0\r\nDIR\t1\ta\r\n" + line),
              "NUMVARS\t2\r\nVAR\tA\tnew\r\nVAR\tC\t\r\nDIR\t1\ta\r\n" + line);
}

TEST_F(ActionLogRewriterTest, CutsAVariableLineWhereItsReadersWould) {
    files_.addFile("/app/install.log", kOld);
    const std::string value(2040, 'v');
    ActionLogRewriter(files_).rewriteActionLog("/app/install.log", {{"A", value}, {"BC", value}});
    EXPECT_EQ(files_.content("/app/install.log"),
              "x.xml\r\nb.bin\r\nNUMVARS\t2\r\nVAR\tA\t" + std::string(2039, 'v') + "\r\nVAR\tBC\t" +
                  std::string(2038, 'v') + "\r\nDIR\t1\t/app\\\r\nFILE\tCREATE\t/v\r\n");
}

TEST_F(ActionLogRewriterTest, GivesItsReaderTheLongestValueWhole) {
    files_.addFile("/app/install.log", kOld);
    const std::string value(1559, 'v');
    ActionLogRewriter(files_).rewriteActionLog("/app/install.log", {{"A", value}, {"B", "2"}});
    PFileStream log(files_);
    ASSERT_EQ(log.openFile("/app/install.log", PFileStream::kGenericRead, PFileStream::kShareRead,
                           PFileStream::kOpenExisting),
              0);
    DebugLog none;
    std::map<std::string, std::string> read;
    EXPECT_TRUE(
        ActionLogReader(&log, none).readVariables([&](const std::string& name, const std::string& text) {
            read[name] = text;
        }));
    EXPECT_EQ(read, (std::map<std::string, std::string>{{"A", value}, {"B", "2"}}));
}

TEST_F(ActionLogRewriterTest, GivesTheNewLogTheRightsOfTheOldOne) {
    files_.addDirectory("/app");
    ASSERT_EQ(OUtils::writeWholeFile("/app/install.log", kOld, files_, platform::FileRights::kPrivate), 0);
    rewrite();
    EXPECT_TRUE(files_.isPrivate("/app/install.log"));
    files_.addFile("/other/install.log", kOld);
    ActionLogRewriter(files_).rewriteActionLog("/other/install.log", {});
    EXPECT_FALSE(files_.isPrivate("/other/install.log"));
}

TEST_F(ActionLogRewriterTest, TakesNoNameThatSomebodyElseHas) {
    files_.addFile("/app/install.log", kOld);
    files_.addFile("/mine", "mine");
    files_.addLink("/app/templog.log", "/mine");
    files_.addFile("/app/templog1.log", "the user's");
    rewrite();
    EXPECT_EQ(files_.content("/mine"), "mine");
    EXPECT_EQ(files_.kindOf("/app/templog.log"), platform::PathKind::kLink);
    EXPECT_EQ(files_.content("/app/templog1.log"), "the user's");
    EXPECT_EQ(files_.allFiles().size(), 4U);
    EXPECT_NE(files_.content("/app/install.log"), kOld);
}

TEST_F(ActionLogRewriterTest, RemovesWhatAKilledRunLeftOfANewLog) {
    files_.addFile("/app/install.log", kOld);
    for (std::size_t size = 0; size < sizeof kOld; ++size) {
        files_.addFile("/app/templog.log", std::string(kOld, size));
        ActionLogRewriter(files_).removeAbandoned("/app/install.log");
        EXPECT_FALSE(files_.hasFile("/app/templog.log")) << size;
    }
    files_.addFile("/app/templog.log", "the user's");
    files_.addLink("/app/templog1.log", "/app/install.log");
    ActionLogRewriter(files_).removeAbandoned("/app/install.log");
    EXPECT_EQ(files_.content("/app/templog.log"), "the user's");
    EXPECT_EQ(files_.kindOf("/app/templog1.log"), platform::PathKind::kLink);
    EXPECT_EQ(files_.content("/app/install.log"), kOld);
}

TEST_F(ActionLogRewriterTest, LeavesALinkInThePlaceOfTheLog) {
    files_.addFile("/mine", kOld);
    files_.addLink("/app/install.log", "/mine");
    EXPECT_EQ(errorOf(), "ERROR: Opening action file (/app/install.log)");
    EXPECT_EQ(files_.content("/mine"), kOld);
}

TEST_F(ActionLogRewriterTest, RefusesALogThatEndsWithItsVariables) {
    for (const char* old : {"", "a\r\nb\r\n", "NUMVARS\t0\r\n", "NUMVARS\t1\r\nVAR\tA\t1\r\n"}) {
        files_.addFile("/app/install.log", old);
        EXPECT_EQ(errorOf(), "ERROR: No variables in action file");
        EXPECT_EQ(files_.content("/app/install.log"), old);
        EXPECT_FALSE(files_.hasFile("/app/templog.log"));
    }
}

TEST_F(ActionLogRewriterTest, NamesTheFileThatItCannotOpen) {
    files_.addDirectory("/app");
    EXPECT_EQ(errorOf(), "ERROR: Opening action file (/app/install.log)");
    files_.addFile("/app/install.log", kOld);
    files_.failAt(Operation::kOpen, "/app/templog.log", 1);
    EXPECT_EQ(errorOf(), "ERROR: Creating temp file for new log (/app/templog.log)");
    EXPECT_EQ(files_.content("/app/install.log"), kOld);
}

TEST_F(ActionLogRewriterTest, KeepsTheOldLogWhenTheDiskIsFull) {
    files_.addFile("/app/install.log", kOld);
    files_.setFreeSpace(10);
    EXPECT_EQ(errorOf(), "ERROR: Writing temp file for new log (/app/templog.log)");
    EXPECT_EQ(files_.content("/app/install.log"), kOld);
    EXPECT_FALSE(files_.hasFile("/app/templog.log"));
}

TEST_F(ActionLogRewriterTest, KeepsTheOldLogWhenItCannotBeReadOrReplaced) {
    files_.addFile("/app/install.log", kOld);
    files_.failAt(Operation::kReplaceFile, "/app/templog.log", 1);
    EXPECT_NE(errorOf(), "no error");
    EXPECT_EQ(files_.content("/app/install.log"), kOld);
    files_.failAt(Operation::kRead, "/app/install.log", 1);
    EXPECT_NE(errorOf(), "no error");
    EXPECT_EQ(files_.content("/app/install.log"), kOld);
    EXPECT_FALSE(files_.hasFile("/app/templog.log"));
}

}  // namespace
