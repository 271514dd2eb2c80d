#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "checking/right_description.h"
#include "packager/commands.h"
#include "packager/commands_fixture.h"
#include "platform/error_text.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

class CheckCommandTest : public CommandsTest {
protected:
    CheckCommandTest() {
        files_.addFile("/good.xml", kRightDescription);
        std::string odd(kRightDescription);
        odd.insert(odd.find("<Text x=\"20\"") + 6, "Name=\"a\tb\" ");
        files_.addFile("/odd.xml", odd);
        files_.addFile("/bad.xml", "<TandrelGroupInstallation>\n<Dialog/>\n</TandrelGroupInstallation>");
        files_.addFile("/unclosed.xml", "<A>");
    }
};

TEST_F(CheckCommandTest, IsContentWithARightDescription) {
    EXPECT_EQ(run({"check", "/good.xml"}), 0);
    EXPECT_THAT(output_.lines, ElementsAre("/good.xml: 0 errors, 0 warnings"));
    EXPECT_EQ(run({"check", "/good.xml", "--strict"}), 0);
    EXPECT_THAT(output_.errors, IsEmpty());
}

TEST_F(CheckCommandTest, FailsWhenThereIsAnError) {
    EXPECT_EQ(run({"check", "/bad.xml"}), 1);
    EXPECT_THAT(output_.lines, Contains("/bad.xml:2:1: error: there is no element Dialog in "
                                        "TandrelGroupInstallation [element-unknown]"));
    EXPECT_THAT(output_.errors, IsEmpty()) << "findings are results";
}

TEST_F(CheckCommandTest, FailsForAWarningOnlyWhenItIsStrict) {
    EXPECT_EQ(run({"check", "/odd.xml"}), 0);
    EXPECT_THAT(output_.lines, Contains("/odd.xml: 0 errors, 1 warning"));
    EXPECT_EQ(run({"check", "/odd.xml", "--strict"}), 1);
    EXPECT_THAT(output_.lines, Contains("/odd.xml: 0 errors, 1 warning"));
}

TEST_F(CheckCommandTest, PrintsTheFormThatIsAskedFor) {
    EXPECT_EQ(run({"check", "/unclosed.xml", "--format", "text"}), 1);
    EXPECT_THAT(output_.lines,
                ElementsAre("/unclosed.xml:1:1: error: the element A is never closed [form-unclosed]",
                            "    Close it.", "/unclosed.xml: 1 error, 0 warnings"));
    EXPECT_EQ(run({"check", "/unclosed.xml", "--format", "json"}), 1);
    EXPECT_EQ(output_.lines.front(), "[");
    EXPECT_EQ(run({"check", "/unclosed.xml", "--format", "sarif"}), 1);
    EXPECT_THAT(output_.lines, Contains(R"(  "version": "2.1.0",)"));
}

TEST_F(CheckCommandTest, ReportsWhatItCantRead) {
    EXPECT_EQ(run({"check", "/missing.xml"}), 1);
    EXPECT_THAT(output_.errors, ElementsAre("packager: /missing.xml: the description can't be read: " +
                                            platform::errorText(ENOENT)));
    EXPECT_EQ(run({"check", "/good.xml", "--root", "/nowhere"}), 1);
    EXPECT_THAT(output_.errors, ElementsAre("packager: /nowhere: no such directory"));
    EXPECT_THAT(output_.lines, IsEmpty());
}

TEST_F(CheckCommandTest, LooksAtFilesBelowTheRoot) {
    files_.addFile("/files/greet.sh", "#!/bin/sh\n");
    EXPECT_EQ(run({"check", "/good.xml", "--root", "/files"}), 0);
    EXPECT_THAT(output_.lines, ElementsAre("/good.xml: 0 errors, 0 warnings"));
}

}  // namespace
