#include "packager/commands.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

using Lines = std::vector<std::string>;
using ListCommandTest = CommandsTest;

TEST_F(ListCommandTest, ListsEachEntry) {
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"list", "/out/setup"}), 0);
    ASSERT_EQ(output_.lines.size(), 6U);
    EXPECT_EQ(output_.lines[0], "size\tstored\tMD5\tname\talias\tdestination\tcondition");
    EXPECT_TRUE(output_.lines[1].ends_with("\tinstall.xml\tinstall.xml\t\t"));
    EXPECT_EQ(output_.lines[2], "5\t5\t8b04d5e3775d298e78455efc5ca404d5\tread.me\taread.me\tx\t");
    EXPECT_TRUE(output_.lines[5].ends_with("\tinstaller.exe\tinstaller.exe\t\t"));
}

TEST_F(ListCommandTest, ShowsEachPlaceOfAFileAndItsCondition) {
    files_.addFile(
        "/in/install.xml",
        "<R><ProductDesc/><FileSet Name=\"S\" Condition=\"[A]==1\"><FN Dest=\"[DIR]\">a/read.me</FN>"
        "<FN Dest=\"[DIR]\\doc\nx\" Condition=\"[B];[C]\">a/read.me</FN></FileSet></R>");
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"list", "/out/setup"}), 0);
    EXPECT_TRUE(output_.lines.back().ends_with("\taread.me\t[DIR]\t[A]==1\t[DIR]\\doc?x\t([A]==1),([B];[C])"))
        << output_.lines.back();
}

TEST_F(ListCommandTest, KeepsControlCharactersOfAPackageFromTheTerminal) {
    files_.addFile("/out/p", package(entryHeader("n\x1B[2J", "a\nb", 0, 0) + endRecord()));
    EXPECT_EQ(run({"list", "/out/p"}), 0);
    EXPECT_TRUE(output_.lines.back().ends_with("\tn?[2J\ta?b\t\t"));
}

}  // namespace
