#include <gtest/gtest.h>

#include "commands_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class ExpandCommandTest : public CommandsTest {
protected:
    int expand(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"expand", "--description", "/in/install.xml", "--root", "/in"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
};

TEST_F(ExpandCommandTest, PrintsWhatIsPacked) {
    files_.addFile("/in/install.xml",
                   "<R><FileSet Name='S'>\r\n <Tree From='a' Dest='D'/>\r\n</FileSet></R>\r\n");
    EXPECT_EQ(expand(), 0);
    EXPECT_EQ(output_.lines,
              (Lines{"<R><FileSet Name='S'>", " <FN Dest=\"D\">a/read.me</FN>", "</FileSet></R>"}));
    EXPECT_EQ(output_.errors, Lines{});
}

TEST_F(ExpandCommandTest, PrintsADescriptionWithoutTreesAsItIs) {
    files_.addFile("/in/install.xml", "<R>\n\n</R>");
    EXPECT_EQ(expand(), 0);
    EXPECT_EQ(output_.lines, (Lines{"<R>", "", "</R>"}));
}

TEST_F(ExpandCommandTest, WarnsAndFailsInOneLine) {
    files_.addFile("/in/install.xml",
                   "<R><FileSet Name='S'><Tree From='a' Dest='D' Include='x'/></FileSet></R>");
    EXPECT_EQ(expand(), 0);
    EXPECT_EQ(output_.errors.size(), 2U);
    files_.addFile("/in/install.xml", "<R><FileSet Name='S'><Tree From='no' Dest='D'/></FileSet></R>");
    EXPECT_EQ(expand(), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /in/no: no such directory"});
    EXPECT_EQ(run({"expand", "--description", "/none", "--root", "/in"}), 1);
    EXPECT_EQ(output_.errors,
              Lines{"packager: /none: the description can't be read: " + platform::errorText(2)});
}

TEST_F(ExpandCommandTest, KnowsTheSystemFromTheImage) {
    files_.addFile("/pe", ImageBytes::peImage(ImageBytes::installerData()));
    files_.addFile("/in/install.xml", "<R><FileSet Name='S'><Tree From='a' Dest='D'/></FileSet></R>");
    files_.addLink("/in/a/link", "read.me");
    EXPECT_EQ(expand(), 0);
    EXPECT_EQ(expand({"--image", "/image"}), 0);
    EXPECT_EQ(expand({"--image", "/pe"}), 1);
}

TEST_F(ExpandCommandTest, NeedsDescriptionAndRoot) {
    EXPECT_EQ(run({"expand", "--root", "/in"}), 2);
    EXPECT_EQ(run({"expand", "--description", "/in/install.xml"}), 2);
    EXPECT_EQ(expand({"operand"}), 2);
}

}  // namespace
