#include "packager/extraction_tree.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "package/package_writer.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Lines = std::vector<std::string>;

std::string pathIn(std::string_view directory, std::string_view name = "tool") {
    return treePathOf({std::string(directory), std::string(name), "", false});
}

TEST(ExtractionTree, AReferenceBecomesADirectory) {
    EXPECT_EQ(pathIn("[INSTALL_DIR]"), "INSTALL_DIR/tool");
    EXPECT_EQ(pathIn("[INSTALL_DIR]/bin"), "INSTALL_DIR/bin/tool");
    EXPECT_EQ(pathIn("[$HOME]\\.config\\[NAME]"), "$HOME/.config/NAME/tool");
    EXPECT_EQ(pathIn("[A]x/lib[B]/[C"), "[A]x/lib[B]/[C/tool");
}

TEST(ExtractionTree, RootsAndEmptyComponentsAreDropped) {
    EXPECT_EQ(pathIn("/opt//app/./"), "opt/app/tool");
    EXPECT_EQ(pathIn("C:\\Programs"), "C_/Programs/tool");
    EXPECT_EQ(pathIn("\\\\server\\share"), "server/share/tool");
    EXPECT_EQ(pathIn("/"), "tool");
}

TEST(ExtractionTree, NoComponentLeadsUpwardsOrElsewhere) {
    EXPECT_EQ(pathIn("../a/..\\../b"), "__/a/__/__/b/tool");
    EXPECT_EQ(pathIn("[..]/[A]/.. /...", ".."), "__/A/___/___/__");
    EXPECT_EQ(pathIn("a. /b.", "c:stream"), "a__/b_/c_stream");
    EXPECT_EQ(pathIn("a\nb", std::string_view("x\0y*?", 5)), "a_b/x_y__");
    EXPECT_EQ(pathIn("", ""), "_");
    EXPECT_EQ(packedOnlyPathOf("../x"), "(packed only)/.._x");
    EXPECT_EQ(packedOnlyPathOf(".."), "(packed only)/__");
}

class ExtractionTreeOfPackage : public testing::Test {
protected:
    ExtractionTreeOfPackage() : cabinet_(files_, DebugLog()) {}

    // Each file is its alias and its content; they are in the package in this order, behind the description.
    Lines pathsOf(const std::string& fileSet,
                  const std::vector<std::pair<std::string, std::string>>& contents) {
        files_.addFile("/install.xml", "<R><FileSet Name='S'>" + fileSet + "</FileSet></R>");
        std::vector<PackageFile> entries = {{"/install.xml", "install.xml", "install.xml"}};
        for (const auto& [alias, content] : contents) {
            files_.addFile("/" + alias, content);
            entries.push_back({"/" + alias, "name", alias});
        }
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write(entries, options, "/package");
        EXPECT_EQ(cabinet_.load("/package", 0), Cabinet::LoadResult::kLoaded);
        const PackedDescription description(cabinet_);
        ExtractionTree tree(cabinet_, description);
        for (std::int32_t i = 1; i < cabinet_.getCount(); ++i) {
            tree.add(i);
        }
        remarks_ = tree.remarks();
        Lines paths;
        for (const ExtractedFile& file : tree.files()) {
            paths.push_back(file.path + (file.isExecutable ? "*" : ""));
        }
        return paths;
    }

    MemoryFileSystem files_;
    Cabinet cabinet_;
    Lines remarks_;
};

TEST_F(ExtractionTreeOfPackage, AFileIsInEachOfItsPlaces) {
    EXPECT_EQ(pathsOf("<FN Dest='[D]'>a</FN><FN Dest='[E]' Executable='1'>a</FN>", {{"a", "1"}, {"b", "2"}}),
              (Lines{"D/a", "E/a*", "(packed only)/name"}));
    EXPECT_EQ(remarks_, Lines{});
}

TEST_F(ExtractionTreeOfPackage, DifferentFilesForOnePlaceAreKeptApart) {
    EXPECT_EQ(pathsOf("<FN Dest='[D]' Alias='a'>x/tool</FN><FN Dest='[D]' Alias='b'>y/TOOL</FN>",
                      {{"a", "1"}, {"b", "2"}}),
              (Lines{"D/tool", "D/TOOL (b)"}));
    EXPECT_EQ(remarks_,
              Lines{"D/TOOL: another file goes there, too; the one with the alias \"b\" is extracted as "
                    "D/TOOL (b)"});
}

TEST_F(ExtractionTreeOfPackage, TheSameContentIsThereOnce) {
    EXPECT_EQ(
        pathsOf("<FN Dest='[D]' Alias='a'>x/tool</FN><FN Dest='[D]' Alias='b' Executable='1'>y/tool</FN>",
                {{"a", "1"}, {"b", "1"}}),
        (Lines{"D/tool*"}));
    EXPECT_EQ(remarks_, Lines{});
}

TEST_F(ExtractionTreeOfPackage, RefusesAFileThatFindsNoName) {
    EXPECT_THROW(pathsOf("<FN Dest='[D]' Alias='a'>t</FN><FN Dest='[D]' Alias='c'>t (b)</FN>"
                         "<FN Dest='[D]' Alias='b'>t</FN>",
                         {{"a", "1"}, {"c", "2"}, {"b", "3"}}),
                 InstallerError);
}

}  // namespace
