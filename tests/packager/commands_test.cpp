#include "packager/commands.h"

#include <gtest/gtest.h>

#include "base/revision.h"
#include "packager/commands_fixture.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

using Lines = std::vector<std::string>;
using PackagerTest = CommandsTest;

TEST_F(PackagerTest, SurvivesAPackageCutAtEveryLength) {
    ASSERT_EQ(build({"--bin"}), 0);
    const std::string package = files_.content("/out/setup");
    for (std::size_t size = 0; size < package.size(); size += size < 200 ? 1 : 13) {
        files_.addFile("/out/cut", package.substr(0, size));
        for (const Lines& command : {Lines{"list", "/out/cut"}, Lines{"verify", "/out/cut"},
                                     Lines{"extract", "/out/cut", "--to", "/new"}}) {
            EXPECT_EQ(run(command), 1) << size;
            EXPECT_EQ(output_.errors.size(), 1U);
        }
    }
    EXPECT_FALSE(files_.hasDirectory("/new"));
}

TEST_F(PackagerTest, ReportsWrongUseWithTheHelp) {
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(output_.errors.front(), "packager: a command is missing");
    EXPECT_EQ(run({"list"}), 2);
    EXPECT_TRUE(output_.errors.back().starts_with("packager list PACKAGE"));
    EXPECT_TRUE(output_.lines.empty());
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_TRUE(output_.errors.empty());
    EXPECT_EQ(run({"build", "--help"}), 0);
}

TEST_F(PackagerTest, SaysItsVersion) {
    EXPECT_EQ(run({"--version"}), 0);
    ASSERT_EQ(output_.lines.size(), 1U);
    EXPECT_EQ(output_.lines[0],
              std::string("Tandrel packager ") + kProgramVersion + ", revision " + kBuildRevision);
    EXPECT_EQ(output_.errors, Lines{});
}

TEST_F(PackagerTest, FailsWhenItsOutputIsLost) {
    output_.works = false;
    EXPECT_EQ(build(), 1);
    EXPECT_EQ(output_.errors, (Lines{"packager: the output can't be written"}));
}

}  // namespace
