#include "packager/packed_description.h"

#include <gtest/gtest.h>

#include "package/package_writer.h"
#include "platform/memory/memory_file_system.h"

namespace {

class PackedDescriptionTest : public testing::Test {
protected:
    PackedDescription read(const std::string& content) {
        files_.addFile("/install.xml", content);
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write({{"/install.xml", "install.xml", "install.xml"}}, options, "/package");
        Cabinet cabinet(files_, DebugLog());
        EXPECT_EQ(cabinet.load("/package", 0), Cabinet::LoadResult::kLoaded);
        return PackedDescription(cabinet);
    }

    MemoryFileSystem files_;
};

TEST_F(PackedDescriptionTest, KnowsTheDirectoryOfAFile) {
    const PackedDescription description = read(
        "<R><FileSet Name='S'><FN Dest='[DIR]/bin' Executable='1'>a/tool</FN>"
        "<FN Dest='[DIR]' Alias='Note'>note.txt</FN></FileSet></R>");
    ASSERT_EQ(description.placesOf("atool").size(), 1U);
    const InstalledPlace& tool = description.placesOf("atool")[0];
    EXPECT_EQ(tool.directory, "[DIR]/bin");
    EXPECT_EQ(tool.name, "tool");
    EXPECT_EQ(tool.condition, "");
    EXPECT_TRUE(tool.isExecutable);
    ASSERT_EQ(description.placesOf("Note").size(), 1U);
    EXPECT_EQ(description.placesOf("Note")[0].name, "note.txt");
    EXPECT_FALSE(description.placesOf("Note")[0].isExecutable);
}

TEST_F(PackedDescriptionTest, JoinsTheConditionsOfASetAndItsFile) {
    const PackedDescription description = read(
        "<R><FileSet Name='S' Condition='[A];[B]'><FN Dest='x'>a</FN><FN Dest='x' Condition='[C]'>b</FN>"
        "</FileSet><FileSet Name='T'><FN Dest='x' Condition='[C]'>c</FN></FileSet></R>");
    EXPECT_EQ(description.placesOf("a").at(0).condition, "[A];[B]");
    EXPECT_EQ(description.placesOf("b").at(0).condition, "([A];[B]),([C])");
    EXPECT_EQ(description.placesOf("c").at(0).condition, "[C]");
}

TEST_F(PackedDescriptionTest, KeepsTheOrderOfTheDescription) {
    const PackedDescription description = read(
        "<R><FileSet Name='S'><FN Dest='1'>a</FN><FN Dest='2'>a</FN></FileSet>"
        "<FileSet Name='T'><FN Dest='3'>a</FN><FN>a</FN><FN Dest='4'>a</FN></FileSet></R>");
    std::string order;
    for (const InstalledPlace& place : description.placesOf("a")) {
        order += place.directory;
    }
    EXPECT_EQ(order, "1234");
}

TEST_F(PackedDescriptionTest, HasNoPlaceForWhatOnlyLiesInThePackage) {
    const PackedDescription description = read(
        "<R><FileSet Name='S'><FN>a</FN><FN Dest=''>b</FN></FileSet><FileSet><FN "
        "Dest='x'>c</FN></FileSet></R>");
    for (const char* const alias : {"a", "b", "c", "install.xml", "unknown", ""}) {
        EXPECT_TRUE(description.placesOf(alias).empty()) << alias;
    }
}

TEST_F(PackedDescriptionTest, APackageWithoutAReadableDescriptionInstallsNothing) {
    EXPECT_TRUE(read("no description").placesOf("install.xml").empty());
    EXPECT_TRUE(PackedDescription(Cabinet(files_, DebugLog())).placesOf("a").empty());
}

}  // namespace
