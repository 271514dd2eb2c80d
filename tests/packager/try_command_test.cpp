#include "packager/commands.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"
#include "rehearsal/small_product.h"

namespace {

using Lines = std::vector<std::string>;

class TryCommandTest : public CommandsTest {
protected:
    TryCommandTest() {
        files_.addFile("/t/package", SmallProduct::product(SmallProduct::description()).package);
        files_.addFile("/t/machine", "[machine]\nsystem = linux\n[copies]\n/etc/x = beside.txt\n");
        files_.addFile("/t/beside.txt", "beside");
    }
    int runTry(const Lines& more = {}) {
        Lines arguments = {"try", "/t/package", "--machine", "/t/machine"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
};

TEST_F(TryCommandTest, ShowsTheOutcome) {
    EXPECT_EQ(runTry(), 0);
    ASSERT_GE(output_.lines.size(), 2U);
    EXPECT_EQ(output_.lines[0], "[install result]");
    EXPECT_EQ(output_.lines[1], "success");
    EXPECT_EQ(output_.errors, Lines());
    EXPECT_FALSE(files_.exists("/opt/small"));
}

TEST_F(TryCommandTest, FailsWithAStepWhereNothingIsExpected) {
    files_.addFile("/t/machine", "[machine]\nsystem = linux\n[read-only]\n/opt\n");
    EXPECT_EQ(runTry(), 1);
    ASSERT_EQ(output_.errors.size(), 1U);
    EXPECT_TRUE(output_.errors[0].starts_with("packager: install: ")) << output_.errors[0];
}

TEST_F(TryCommandTest, ComparesWithWhatIsExpected) {
    files_.addFile("/t/expected", "[install result]\nsuccess\n");
    EXPECT_EQ(runTry({"--expect", "/t/expected"}), 0);
    EXPECT_EQ(output_.lines, Lines{"as expected"});
    files_.addFile("/t/expected", "[install result]\nfailure\n");
    EXPECT_EQ(runTry({"--expect", "/t/expected"}), 1);
    EXPECT_EQ(output_.lines, (Lines{"--- expected: /t/expected", "+++ found", "@@ [install result] @@",
                                    "-failure", "+success"}));
}

TEST_F(TryCommandTest, WritesANewExpectationAndUpdatesAnOldOne) {
    EXPECT_EQ(runTry({"--expect", "/t/expected", "--update"}), 0);
    EXPECT_EQ(output_.lines, Lines{"/t/expected was written"});
    EXPECT_EQ(runTry({"--expect", "/t/expected"}), 0);
    files_.addFile("/t/expected", "# why\n[install result]\nfailure\n");
    EXPECT_EQ(runTry({"--expect", "/t/expected", "--update"}), 0);
    EXPECT_EQ(files_.content("/t/expected"), "# why\n\n[install result]\nsuccess\n");
}

TEST_F(TryCommandTest, TakesAnswers) {
    files_.addFile("/t/answers",
                   "<R><DefValues><Value Name=\"NAME\" DataType=\"value\">Ada</Value></DefValues></R>");
    files_.addFile("/t/expected", "[install variables]\nDIR = *\nINSTALL_ERROR = *\nNAME = Ada\n");
    EXPECT_EQ(runTry({"--answers", "/t/answers", "--expect", "/t/expected"}), 0)
        << testing::PrintToString(output_.lines);
}

TEST_F(TryCommandTest, NamesTheFileThatIsWrong) {
    files_.addFile("/t/expected", "[x");
    EXPECT_EQ(runTry({"--expect", "/t/expected"}), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /t/expected: line 1: the name of a section ends with ]"});
    files_.removeFile("/t/beside.txt");
    EXPECT_EQ(runTry(), 1);
    EXPECT_TRUE(
        output_.errors[0].starts_with("packager: /t/beside.txt: the file of the machine can't be read"));
    files_.addFile("/t/machine", "[machine]\nsystem = plan9\n");
    EXPECT_EQ(runTry(), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /t/machine: line 2: the system is linux or windows"});
    EXPECT_EQ(runTry({"--expect", "/t/missing"}), 1);
    files_.addFile("/t/package", "none");
    files_.addFile("/t/machine", "[machine]\nsystem = linux\n");
    EXPECT_EQ(runTry(), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /t/package: this is not a package"});
}

TEST_F(TryCommandTest, SaysWhatItsUseIs) {
    EXPECT_EQ(run({"try", "/t/package"}), 2);
    EXPECT_EQ(run({"try", "--machine", "/t/machine"}), 2);
    EXPECT_EQ(runTry({"--update"}), 2);
    EXPECT_EQ(run({"try", "--help"}), 0);
    EXPECT_EQ(output_.lines[0].substr(0, 8), "packager");
}

}  // namespace
