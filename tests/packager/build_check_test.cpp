#include "packager/build_check.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class BuildCheckTest : public CommandsTest {
protected:
    int buildStrictly(const Lines& more = {}) {
        Lines arguments = {"build",   "--description", "/in/install.xml", "--root",    "/in",
                           "--image", "/image",        "--output",        "/out/setup"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    void describe(const std::string& dialogs) {
        files_.addFile(
            "/in/install.xml",
            "<TandrelGroupInstallation>\n<ProductDesc><Fullname>P</Fullname></ProductDesc>\n<DefValues/>\n" +
                dialogs + "\n</TandrelGroupInstallation>");
    }
};

constexpr const char* kRight = "<Dialogs><CopyProgress/><Finish Special=\"Finish\"/></Dialogs>";
constexpr const char* kWithoutFinish = "<Dialogs><CopyProgress/></Dialogs>";
constexpr const char* kWithUnusedVariable =
    "<Dialogs><CopyProgress/><Finish Special=\"Finish\"/></Dialogs>\n<DefValues/>";

TEST_F(BuildCheckTest, ARightDescriptionIsPackedWithoutAWord) {
    describe(kRight);
    EXPECT_EQ(buildStrictly(), 0);
    EXPECT_EQ(output_.errors, Lines{});
}

TEST_F(BuildCheckTest, AnErrorStopsTheBuildAndLeavesNoPackage) {
    describe(kWithoutFinish);
    EXPECT_EQ(buildStrictly(), 1);
    EXPECT_EQ(
        output_.errors,
        (Lines{
            "/in/install.xml:4:1: error: Dialogs has no last page, so each run counts as failed "
            "[page-no-finish]",
            "    Add a page with Special=\"Finish\" at the end.",
            "packager: /in/install.xml: no package was made because of 1 error: correct the description, or "
            "allow them with --allow CODE"}));
    EXPECT_FALSE(files_.hasFile("/out/setup"));
}

TEST_F(BuildCheckTest, AnErrorThatIsAllowedIsReportedAsSuch) {
    describe(kWithoutFinish);
    EXPECT_EQ(buildStrictly({"--allow", "page-no-copy"}), 1);
    EXPECT_EQ(buildStrictly({"--allow", "page-no-finish"}), 0);
    EXPECT_EQ(output_.errors,
              Lines{"/in/install.xml:4:1: allowed: Dialogs has no last page, so each run counts as failed "
                    "[page-no-finish]"});
    EXPECT_TRUE(files_.hasFile("/out/setup"));
}

TEST_F(BuildCheckTest, AWarningDoesNotStopTheBuild) {
    describe(kWithUnusedVariable);
    EXPECT_EQ(buildStrictly(), 0);
    EXPECT_EQ(
        output_.errors,
        (Lines{"/in/install.xml:5:1: warning: only the first element DefValues counts [element-repeated]",
               "    Put everything into the first one."}));
}

TEST_F(BuildCheckTest, ACodeThatDoesNotExistIsWrongUse) {
    describe(kRight);
    EXPECT_EQ(buildStrictly({"--allow", "page-no-end"}), 2);
    EXPECT_EQ(output_.errors.front(), "packager: --allow: there is no finding with the code \"page-no-end\"");
}

}  // namespace
