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
    EXPECT_EQ(output_.lines[0], "size\tstored\tMD5\tname\talias");
    EXPECT_TRUE(output_.lines[1].ends_with("\tinstall.xml\tinstall.xml"));
    EXPECT_EQ(output_.lines[2], "5\t5\t8b04d5e3775d298e78455efc5ca404d5\tread.me\taread.me");
    EXPECT_TRUE(output_.lines[5].ends_with("\tinstaller.exe\tinstaller.exe"));
}

TEST_F(ListCommandTest, KeepsControlCharactersOfAPackageFromTheTerminal) {
    files_.addFile("/out/p", package(entryHeader("n\x1B[2J", "a\nb", 0, 0) + endRecord()));
    EXPECT_EQ(run({"list", "/out/p"}), 0);
    EXPECT_TRUE(output_.lines.back().ends_with("\tn?[2J\ta?b"));
}

}  // namespace
