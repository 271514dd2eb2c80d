#include "checking/packed_files.h"

#include "checking/check_bench.h"

namespace {

using Kind = FileSource::Kind;

class PackedFilesTest : public testing::Test {
protected:
    // Hands the files of a description to `look`.
    void read(const std::string& sections, const std::function<void(const PackedFiles& files)>& look) {
        CheckBench bench([&](const CheckedParts& parts) { look(parts.files); });
        bench.root = root_;
        bench.files.addFile("/root/a/b.txt", "four");
        bench.files.addFile("/root/installer", "an image");
        bench.findings(sections);
    }

    std::optional<std::string> root_;
};

TEST_F(PackedFilesTest, GivesAFileTheAliasesThatThePackagerGivesIt) {
    read("<FileSet Name='S'><FN>a/b.txt</FN><FN Alias='x'>c\\d.txt</FN><FN/></FileSet>",
         [](const PackedFiles& files) {
             ASSERT_EQ(files.all().size(), 2U);
             EXPECT_EQ(files.all()[0].alias, "ab.txt");
             EXPECT_EQ(files.all()[0].name, "b.txt");
             EXPECT_EQ(files.all()[1].alias, "x");
             EXPECT_EQ(files.all()[1].name, "d.txt");
             EXPECT_EQ(files.findAlias("x"), &files.all()[1]);
             EXPECT_EQ(files.findAlias("X"), nullptr);
             EXPECT_TRUE(files.hasAlias("install.xml"));
             EXPECT_TRUE(files.areAllKnown());
         });
}

TEST_F(PackedFilesTest, KnowsThatASetMayHoldMoreThanItUnderstands) {
    read("<FileSet Name='S'><FN>a</FN><Other/></FileSet>",
         [](const PackedFiles& files) { EXPECT_FALSE(files.areAllKnown()); });
}

TEST_F(PackedFilesTest, LooksNothingUpWithoutARoot) {
    read("<FileSet Name='S'><FN>a/b.txt</FN><FN>../x</FN><FN>c:/x</FN></FileSet>",
         [](const PackedFiles& files) {
             EXPECT_EQ(files.all()[0].source.kind, Kind::kUnknown);
             EXPECT_EQ(files.all()[0].source.path, "a/b.txt");
             EXPECT_EQ(files.all()[1].source.kind, Kind::kOutside);
             EXPECT_EQ(files.all()[2].source.kind, Kind::kOutside);
         });
}

TEST_F(PackedFilesTest, LooksFilesUpBelowTheRoot) {
    root_ = "/root/";
    read("<FileSet Name='S'><FN>./a//b.txt</FN><FN>a/c.txt</FN><FN>a</FN><FN>a/b.txt/</FN></FileSet>",
         [](const PackedFiles& files) {
             const FileSource& there = files.all()[0].source;
             EXPECT_EQ(there.kind, Kind::kRoot);
             EXPECT_EQ(there.size, 4);
             EXPECT_EQ(files.pathOf(there), "/root/a/b.txt");
             EXPECT_EQ(files.all()[1].source.kind, Kind::kMissing);
             EXPECT_EQ(files.all()[2].source.kind, Kind::kMissing);
             EXPECT_EQ(files.all()[3].source.kind, Kind::kMissing);
         });
}

TEST_F(PackedFilesTest, KnowsTheDescriptionAndTheImageByTheirNames) {
    root_ = "/root";
    read(
        "<Installation><Uninstall><UninstallXmlFile>[D]/product.xml</UninstallXmlFile></Uninstall>"
        "<FileSet Name='S'><FN>install.xml</FN><FN>sub/product.xml</FN><FN>bin/INSTALLER.exe</FN>"
        "<FN>installer</FN></FileSet></Installation>",
        [](const PackedFiles& files) {
            EXPECT_EQ(files.all()[0].source.kind, Kind::kDescription);
            EXPECT_EQ(files.all()[1].source.kind, Kind::kDescription);
            EXPECT_EQ(files.all()[2].source.kind, Kind::kImage);
            EXPECT_EQ(files.all()[3].source.kind, Kind::kRoot);
        });
}

}  // namespace
