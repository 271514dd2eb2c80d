#include "packager/tree_walk.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "platform/error_text.h"
#include "platform/memory/memory_file_system.h"

namespace {

using testing::ElementsAre;

class TreeWalkTest : public testing::Test {
protected:
    TreeWalkTest() {
        files_.addFile("/root/app/b/two", "22");
        files_.addFile("/root/app/b-c", "1");
        files_.addProgram("/root/app/a/deep/run", "333");
        files_.addFile("/root/app/Z", "");
        files_.addDirectory("/root/app/empty");
        files_.addFile("/root/beside", "x");
    }
    // "path size", with "program" or "-> link"; "<none>" without a tree.
    std::vector<std::string> walk(const std::string& include = "", const std::string& exclude = "",
                                  const std::string& from = "app") {
        TreeWalk::Filter filter{PathPatterns(include), PathPatterns(exclude)};
        const auto items = TreeWalk(files_, root_, from, filter).run();
        EXPECT_EQ(files_.openFileCount(), 0);
        if (!items) {
            return {"<none>"};
        }
        std::vector<std::string> found;
        for (const TreeItem& item : *items) {
            found.push_back(item.path + " " + std::to_string(item.size) + (item.isProgram ? " program" : "") +
                            (item.link ? " -> " + *item.link : ""));
        }
        return found;
    }
    std::string failure(const std::string& include = "", const std::string& exclude = "",
                        const std::string& from = "app") {
        try {
            walk(include, exclude, from);
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "<none>";
    }

    MemoryFileSystem files_;
    std::string root_ = "/root";
};

TEST_F(TreeWalkTest, FindsAllFilesInTheOrderOfTheirBytes) {
    EXPECT_THAT(walk(), ElementsAre("Z 0", "a/deep/run 3 program", "b-c 1", "b/two 2"));
    EXPECT_THAT(walk("", "", ""),
                ElementsAre("app/Z 0", "app/a/deep/run 3 program", "app/b-c 1", "app/b/two 2", "beside 1"));
    EXPECT_THAT(walk("", "", "app/a/deep"), ElementsAre("run 3 program"));
    EXPECT_THAT(walk("", "", "app/empty"), ElementsAre());
}

TEST_F(TreeWalkTest, TakesWhatIsIncludedAndNotExcluded) {
    EXPECT_THAT(walk("b*"), ElementsAre("b-c 1", "b/two 2"));
    EXPECT_THAT(walk("a/**/run;two"), ElementsAre("a/deep/run 3 program", "b/two 2"));
    EXPECT_THAT(walk("deep"), ElementsAre("a/deep/run 3 program"));
    EXPECT_THAT(walk("", "a;b/two"), ElementsAre("Z 0", "b-c 1"));
    EXPECT_THAT(walk("b", "two"), ElementsAre());
    EXPECT_THAT(walk("run", "a"), ElementsAre());
}

TEST_F(TreeWalkTest, LooksNotEvenIntoWhatIsExcluded) {
    files_.failFrom(MemoryFileSystem::Operation::kOpen, "/root/app/a", 1);
    EXPECT_EQ(failure(), "/root/app/a: the directory can't be read: " + platform::errorText(5));
    EXPECT_EQ(walk("", "a").size(), 3U);
}

TEST_F(TreeWalkTest, GivesLinksAsTheyAreAndFollowsNone) {
    files_.addFile("/secret/key", "x");
    files_.addLink("/root/app/outside", "/secret");
    files_.addLink("/root/app/b/up", "../a");
    EXPECT_THAT(walk("", "a;Z"), ElementsAre("b-c 1", "b/two 2", "b/up -1 -> ../a", "outside -1 -> /secret"));
    EXPECT_THAT(walk("key"), ElementsAre());
}

TEST_F(TreeWalkTest, FollowsNoLinkOnTheWayToTheTree) {
    files_.addFile("/secret/below/key", "x");
    files_.addLink("/root/linked", "/secret");
    EXPECT_EQ(failure("", "", "linked"), "/root/linked: a Tree doesn't follow links");
    EXPECT_EQ(failure("", "", "linked/below"), "/root/linked: a Tree doesn't follow links");
    EXPECT_EQ(failure("", "", "beside"), "/root/beside: this is not a directory");
}

TEST_F(TreeWalkTest, TheRootItselfMayBeReachedThroughALink) {
    files_.addLink("/here", "/root");
    root_ = "/here";
    EXPECT_EQ(walk().size(), 4U);
    EXPECT_EQ(failure("", "", "none/x"), "<none>");
    root_ = "/nowhere";
    EXPECT_EQ(failure(), "/nowhere: no such directory");
}

TEST_F(TreeWalkTest, HasNoneWithoutItsDirectory) {
    EXPECT_THAT(walk("", "", "none"), ElementsAre("<none>"));
    EXPECT_THAT(walk("", "", "none/below"), ElementsAre("<none>"));
}

TEST_F(TreeWalkTest, RefusesWhatIsNeitherFileNorLink) {
    files_.addDevice("/root/app/b/pipe");
    EXPECT_EQ(
        failure(),
        "/root/app/b/pipe: this is neither a file nor a directory nor a link: leave it out with Exclude");
    EXPECT_EQ(failure("", "pipe"), "<none>");
    EXPECT_EQ(failure("two"), "<none>");
}

TEST_F(TreeWalkTest, FindsNamesThatNoPathCanMean) {
    files_.addUnnameable("/root/app/b", "..\\..\\x");
    EXPECT_THAT(walk("b"), ElementsAre("b/..\\..\\x 0", "b/two 2"));
}

TEST_F(TreeWalkTest, RefusesADepthThatNoDescriptionCanHave) {
    std::string deep = "/root/app";
    for (int i = 0; i < 16; ++i) {
        deep += "/" + std::string(100, 'd');
    }
    files_.addFile(deep + "/f", "");
    EXPECT_NE(failure().find(": this path is too long: leave it out with Exclude"), std::string::npos);
    EXPECT_EQ(failure("", "d*"), "<none>");
}

}  // namespace
