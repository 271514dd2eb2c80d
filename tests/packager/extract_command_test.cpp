#include "packager/commands.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

using Lines = std::vector<std::string>;
using ExtractCommandTest = CommandsTest;

TEST_F(ExtractCommandTest, ExtractsFilesWithTheirNames) {
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"extract", "/out/setup", "--to", "/new/dir", "Banner", "aread.me"}), 0);
    EXPECT_EQ(output_.lines, (Lines{"2 files extracted to /new/dir"}));
    EXPECT_EQ(files_.content("/new/dir/banner.png"), "image");
    EXPECT_EQ(files_.content("/new/dir/read.me"), "first");
    EXPECT_FALSE(files_.hasFile("/new/dir/install.xml"));
}

TEST_F(ExtractCommandTest, ExtractsAllFilesAndKeepsThoseOfOneNameApart) {
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"extract", "/out/setup", "--to", "/new"}), 0);
    EXPECT_EQ(files_.content("/new/read.me"), "first");
    EXPECT_EQ(files_.content("/new/bread.me"), "second");
    EXPECT_EQ(files_.content("/new/installer.exe"), files_.content("/image"));
    EXPECT_EQ(files_.content("/new/install.xml"), files_.content("/in/install.xml"));
}

TEST_F(ExtractCommandTest, RefusesNamesThatLeadOutOfTheTarget) {
    for (const char* name : {"../x", "a/b", "a\\b", "C:x", "..", ".", ""}) {
        const std::string content = "x";
        const Md5Digest digest = md5Of("x", 1);
        files_.addFile(
            "/out/bad",
            package(entryHeader(name, "alias", 1, 1,
                                std::string_view(reinterpret_cast<const char*>(digest.data()), 16)) +
                    content + endRecord()));
        EXPECT_EQ(run({"extract", "/out/bad", "--to", "/new/deep"}), 1) << name;
        EXPECT_EQ(output_.errors,
                  (Lines{"packager: the name \"" + std::string(name) +
                         "\" in the package could lead out of the target: nothing more is extracted"}));
    }
    EXPECT_FALSE(files_.hasFile("/new/x"));
}

TEST_F(ExtractCommandTest, LeavesTheOldFileWhereTheNewOneFails) {
    ASSERT_EQ(build(), 0);
    files_.addFile("/new/banner.png", "old");
    files_.setFreeSpace(2);
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "Banner"}), 1);
    files_.clearFaults();
    EXPECT_EQ(files_.content("/new/banner.png"), "old");
    files_.addDevice("/new/read.me");
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "aread.me"}), 1);
    EXPECT_EQ(files_.kindOf("/new/read.me"), platform::PathKind::kOther);
}

TEST_F(ExtractCommandTest, ReplacesLinksAndFollowsNone) {
    ASSERT_EQ(build(), 0);
    files_.addFile("/victim", "precious");
    files_.addLink("/new/banner.png", "/victim");
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "Banner"}), 0);
    EXPECT_EQ(files_.content("/new/banner.png"), "image");
    EXPECT_EQ(files_.content("/victim"), "precious");
}

TEST_F(ExtractCommandTest, RefusesToExtractWhatIsNotThereOrDamaged) {
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "None"}), 1);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: the package holds no file with the alias \"None\": packager list shows "
                     "them all"}));
    files_.addFile("/out/bad", package(entryHeader("n", "n", 1, 1) + "x" + endRecord()));
    EXPECT_EQ(run({"extract", "/out/bad", "--to", "/new"}), 1);
    EXPECT_EQ(output_.errors, (Lines{"packager: the file \"n\" is damaged in the package"}));
    EXPECT_FALSE(files_.hasFile("/new/n"));
}

constexpr const char* kInstalled =
    "<R><ProductDesc/><FileSet Name=\"S\"><FN Dest=\"[DIR]/doc\">a/read.me</FN>"
    "<FN Dest=\"[DIR]\\doc\" Condition=\"[OTHER]\">b/read.me</FN><FN Alias=\"Banner\">banner.png</FN>"
    "<FN Dest=\"[DIR]\" Executable=\"1\">installer.exe</FN></FileSet></R>";

TEST_F(ExtractCommandTest, RebuildsTheTreeOfTheInstalledProduct) {
    files_.addFile("/in/install.xml", kInstalled);
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"extract", "/out/setup", "--to", "/new/tree", "--tree"}), 0);
    EXPECT_EQ(output_.lines, (Lines{"5 files extracted to /new/tree"}));
    EXPECT_EQ(output_.errors,
              (Lines{"packager: warning: DIR/doc/read.me: another file goes there, too; the one "
                     "with the alias \"bread.me\" is extracted as DIR/doc/read.me (bread.me)"}));
    EXPECT_EQ(files_.content("/new/tree/DIR/doc/read.me"), "first");
    EXPECT_EQ(files_.content("/new/tree/DIR/doc/read.me (bread.me)"), "second");
    EXPECT_EQ(files_.content("/new/tree/(packed only)/banner.png"), "image");
    EXPECT_EQ(files_.content("/new/tree/(packed only)/install.xml"), kInstalled);
    EXPECT_EQ(files_.content("/new/tree/DIR/installer.exe"), files_.content("/image"));
    EXPECT_TRUE(files_.isExecutable("/new/tree/DIR/installer.exe"));
    EXPECT_FALSE(files_.isExecutable("/new/tree/DIR/doc/read.me"));
}

TEST_F(ExtractCommandTest, RebuildsAPartOfTheTree) {
    files_.addFile("/in/install.xml", kInstalled);
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"extract", "/out/setup", "--to", "/new", "bread.me", "--tree"}), 0);
    EXPECT_EQ(output_.errors, Lines{});
    EXPECT_EQ(files_.content("/new/DIR/doc/read.me"), "second");
    EXPECT_FALSE(files_.hasDirectory("/new/(packed only)"));
}

TEST_F(ExtractCommandTest, ATreeFollowsNoLinksBelowTheTarget) {
    files_.addFile("/in/install.xml", kInstalled);
    ASSERT_EQ(build(), 0);
    files_.addDirectory("/elsewhere");
    files_.addLink("/new/DIR", "/elsewhere");
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "aread.me", "--tree"}), 1);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: /new/DIR: the directory can't be made, or there is something else: "
                     "extract to an empty one"}));
    EXPECT_FALSE(files_.exists("/elsewhere/doc"));
    files_.addFile("/victim", "precious");
    files_.addLink("/next/DIR/doc/read.me", "/victim");
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/next", "aread.me", "--tree"}), 0);
    EXPECT_EQ(files_.content("/victim"), "precious");
    EXPECT_EQ(files_.content("/next/DIR/doc/read.me"), "first");
}

TEST_F(ExtractCommandTest, ATreeStaysBelowTheTarget) {
    files_.addFile(
        "/in/install.xml",
        "<R><ProductDesc/><FileSet Name=\"S\"><FN Dest=\"../../etc\">a/read.me</FN></FileSet></R>");
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(run({"extract", "/out/setup", "--to", "/new/deep", "aread.me", "--tree"}), 0);
    EXPECT_EQ(files_.content("/new/deep/__/__/etc/read.me"), "first");
}

TEST_F(ExtractCommandTest, LeavesNoHalfFileWhenTheDiskIsFull) {
    ASSERT_EQ(build(), 0);
    files_.setFreeSpace(3);
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new", "aread.me"}), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /new/read.me can't be written: " +
                                    platform::errorText(MemoryFileSystem::kDiskFull)});
    EXPECT_FALSE(files_.hasFile("/new/read.me"));
}

}  // namespace
