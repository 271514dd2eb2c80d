#include "packager/tree_expansion.h"

#include <gtest/gtest.h>

#include <random>

#include "base/errors.h"
#include "description/pxml.h"
#include "package/image_bytes.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Lines = std::vector<std::string>;

class TreeExpansionTest : public testing::Test {
protected:
    TreeExpansionTest() {
        files_.addFile("/root/app/a.txt", "a");
        files_.addFile("/root/app/sub/b.txt", "bb");
        files_.addFile("/elf", ImageBytes::elfImage(ImageBytes::installerData()));
        files_.addFile("/pe", ImageBytes::peImage(ImageBytes::installerData()));
    }
    std::string expand(const std::string& text) {
        files_.addFile("/d/install.xml", text);
        TreeExpansion trees({"/d/install.xml", "/root", image_}, files_);
        const std::string result = trees.expand(text).value_or("<none>");
        warnings_ = trees.warnings();
        EXPECT_EQ(files_.openFileCount(), 0);
        return result;
    }
    // The elements in the place of one tree.
    std::string tree(const std::string& attributes = "", const std::string& others = "") {
        const std::string front = "<R><FileSet Name='S'>" + others;
        const std::string whole =
            expand(front + "<Tree From='app' Dest='D' " + attributes + "/></FileSet></R>");
        EXPECT_TRUE(whole.starts_with(front)) << whole;
        const std::string rest = whole.substr(front.size());
        EXPECT_TRUE(rest.ends_with("</FileSet></R>")) << whole;
        return rest.substr(0, rest.size() - std::string("</FileSet></R>").size());
    }
    std::string failure(const std::string& attributes = "") {
        try {
            tree(attributes);
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "<none>";
    }

    MemoryFileSystem files_;
    std::string image_;
    Lines warnings_;
};

TEST_F(TreeExpansionTest, PutsElementsInThePlaceOfATreeAndKeepsAllElse) {
    EXPECT_EQ(
        expand("<?xml version=\"1.0\"?>\r\n<R  a = '1'>\r\n <FileSet name=\"S\"><!-- <Tree/> -->\r\n"
               "\t<tree FROM=\"app\" dest='[D]' odd=\"&#65;\"></x>\r\n  </FileSet>\r\n</R>\r\nafter <Tree/>"),
        "<?xml version=\"1.0\"?>\r\n<R  a = '1'>\r\n <FileSet name=\"S\"><!-- <Tree/> -->\r\n"
        "\t<FN Dest=\"[D]\">app/a.txt</FN>\r\n\t<FN Dest=\"[D]/sub\">app/sub/b.txt</FN>\r\n  "
        "</FileSet>\r\n</R>\r\nafter <Tree/>");
}

TEST_F(TreeExpansionTest, LeavesADescriptionWithoutATreeAlone) {
    for (const std::string text :
         {"", "<R><FileSet Name='S'><FN>../x</FN></FileSet></R>", "<R><Dialogs><Tree/></Dialogs></R>",
          "<R/><FileSet Name='S'><Tree From='none' Dest='D'/></FileSet>",
          "<FileSet Name='S'><Tree From='a'"}) {
        EXPECT_EQ(expand(text), "<none>") << text;
        EXPECT_EQ(warnings_, Lines{}) << text;
    }
}

TEST_F(TreeExpansionTest, TakesSeveralTreesInAnyDepth) {
    EXPECT_EQ(expand("<R><FileSet Name='S'><FileSet Name='T'><Tree From='app/sub' Dest='X'/></FileSet>"
                     "<Tree From='app' Include='a*' Dest='Y'/></FileSet></R>"),
              "<R><FileSet Name='S'><FileSet Name='T'><FN Dest=\"X\">app/sub/b.txt</FN></FileSet>"
              "<FN Dest=\"Y\">app/a.txt</FN></FileSet></R>");
}

TEST_F(TreeExpansionTest, GivesEqualFilesOneAliasAndDifferentOnesTheirOwn) {
    files_.addFile("/root/app/c.txt", "bb");
    files_.addFile("/root/app/su/bb.txt", "x");
    files_.addFile("/root/apps/ub.txt", "y");
    EXPECT_EQ(tree("Exclude='a.txt'", "<FN>apps/ub.txt</FN>"),
              "<FN Dest=\"D\">app/c.txt</FN>\n<FN Dest=\"D/su\">app/su/bb.txt</FN>\n"
              "<FN Dest=\"D/sub\" Alias=\"appc.txt\">app/sub/b.txt</FN>");
}

TEST_F(TreeExpansionTest, SharesTheContentOfAnElementThatChoseNoAlias) {
    files_.addFile("/root/other", "a");
    EXPECT_EQ(tree("Include='a*'", "<FN>other</FN>"), "<FN Dest=\"D\" Alias=\"other\">app/a.txt</FN>");
    EXPECT_EQ(tree("Include='a*'", "<FN Alias='X'>other</FN>"), "<FN Dest=\"D\">app/a.txt</FN>");
}

TEST_F(TreeExpansionTest, MakesLinksOfLinks) {
    image_ = "/elf";
    files_.addLink("/root/app/sub/l", "../a.txt");
    EXPECT_EQ(
        tree("Include='l'"),
        "<Shortcuts>\n  <Add Type=\"Symlink\" Dest=\"D/sub\" Target=\"../a.txt\">l</Add>\n</Shortcuts>");
    image_ = "";
    EXPECT_NE(tree("Include='l'"), "");
}

TEST_F(TreeExpansionTest, RefusesLinksThatLeaveTheTreeOrMustNotBe) {
    files_.addLink("/root/app/sub/l", "../../beside");
    EXPECT_EQ(
        failure(),
        "/root/app/sub/l: the link to \"../../beside\" leads out of the tree, or may do so: leave it out "
        "with Exclude");
    EXPECT_EQ(failure("Exclude='l'"), "<none>");
    files_.addLink("/root/app/sub/l", "b.txt");
    image_ = "/pe";
    EXPECT_EQ(
        failure(),
        "/root/app/sub/l: this is a link, which a setup for Windows can't make: leave it out with Exclude");
}

TEST_F(TreeExpansionTest, RefusesNamesThatCannotBeWrittenAndNamesThem) {
    files_.addFile("/root/app/[DIR]/x", "");
    EXPECT_EQ(
        failure(),
        "/root/app/[DIR]/x: the name \"[DIR]\" has a [, which begins a reference to a variable: rename it, "
        "or leave it out with Exclude");
    EXPECT_EQ(failure("Exclude='x'"), "<none>");
    files_.addFile("/root/app/x ", "");
    EXPECT_NE(failure("Include='x*' Exclude='[DIR]'").find("white space at its start or end"),
              std::string::npos);
}

TEST_F(TreeExpansionTest, RefusesForWindowsWhatItTakesForTheSameOrCannotHave) {
    files_.addFile("/root/app/Con", "");
    EXPECT_EQ(failure(), "<none>");
    image_ = "/pe";
    EXPECT_NE(failure().find("/root/app/Con: the name \"Con\" has the meaning of a device"),
              std::string::npos);
}

TEST_F(TreeExpansionTest, RefusesAMissingDirectoryUnlessItMayBeMissing) {
    const std::string front = "<R><FileSet Name='S'><Tree From='none' Dest='D'";
    EXPECT_EQ(expand(front + " OkIfMissing=''/></FileSet></R>"), "<R><FileSet Name='S'></FileSet></R>");
    EXPECT_THROW(expand(front + "/></FileSet></R>"), InstallerError);
}

TEST_F(TreeExpansionTest, RefusesATreeWithoutAnEnd) {
    EXPECT_THROW(expand("<R><FileSet Name='S'><Tree From='app' Dest='D'>"), InstallerError);
}

TEST_F(TreeExpansionTest, RefusesADirectoryThatNoDestCanHold) {
    const std::string dest(1554, 'd');
    const std::string front = "<R><FileSet Name='S'><Tree From='app' Dest='" + dest;
    EXPECT_NE(expand(front + "'/></FileSet></R>").find(dest + "/sub"), std::string::npos);
    EXPECT_THROW(expand(front + "d'/></FileSet></R>"), InstallerError);
}

TEST_F(TreeExpansionTest, TakesTheDescriptionForItselfAndNothingElseForIt) {
    const std::string text = "<R><FileSet Name='S'><Tree From='.' Dest='D' Include='*.xml'/></FileSet></R>";
    files_.addFile("/root/install.xml", text);
    TreeExpansion inside({"/root/install.xml", "/root", ""}, files_);
    EXPECT_EQ(inside.expand(text), "<R><FileSet Name='S'><FN Dest=\"D\">install.xml</FN></FileSet></R>");
    files_.addFile("/d/install.xml", "");
    TreeExpansion outside({"/d/install.xml", "/root", ""}, files_);
    EXPECT_THROW(outside.expand(text), InstallerError);
}

TEST_F(TreeExpansionTest, WarnsOfWhatStandsForNothing) {
    EXPECT_EQ(tree("Include='a.txt;*.doc'"), "<FN Dest=\"D\">app/a.txt</FN>");
    EXPECT_EQ(warnings_,
              (Lines{"/d/install.xml: the Tree of \"app\": nothing matches \"*.doc\" of its Include"}));
    EXPECT_EQ(tree("Exclude='*'"), "");
    EXPECT_EQ(warnings_, (Lines{"/d/install.xml: the Tree of \"app\" stands for no file"}));
    EXPECT_EQ(expand("<R><Tree From='app' Dest='D'/></R>"), "<none>");
    EXPECT_EQ(warnings_, (Lines{"/d/install.xml: a Tree outside of a FileSet stands for nothing"}));
}

// A name of characters that mean something to somebody.
std::string oddName(std::mt19937& random) {
    static const std::string kOdd = "ab&<>\"';[]*?#- .:\n\x7F\xC3\xBC";
    std::string name;
    for (std::size_t i = random() % 6 + 1; i > 0; --i) {
        name += kOdd[random() % kOdd.size()];
    }
    return name == "." || name == ".." ? "a" : name;
}

TEST_F(TreeExpansionTest, EveryFileComesBackAsItIsOrIsRefused) {
    std::mt19937 random(20231);
    int packed = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string directory = oddName(random);
        const std::string name = oddName(random);
        MemoryFileSystem files;
        files.addFile("/root/t/" + directory + "/" + name, "x");
        files.addDirectory("/d");
        TreeExpansion trees({"/d/install.xml", "/root", ""}, files);
        std::string text = "<R><FileSet Name='S'><Tree From='t' Dest='D'/></FileSet></R>";
        try {
            text = trees.expand(text).value();
        } catch (const InstallerError&) {
            continue;
        }
        PXML document;
        document.parseText(text);
        ASSERT_EQ(document.getNodeCount(), 3) << text;
        EXPECT_EQ(document.getName(2), "FN");
        EXPECT_EQ(document.getAttribute(2, "Dest"), "D/" + directory) << text;
        EXPECT_EQ(document.getText(2), "t/" + directory + "/" + name) << text;
        ++packed;
    }
    EXPECT_GT(packed, 300);
    EXPECT_LT(packed, 2700);
}

}  // namespace
