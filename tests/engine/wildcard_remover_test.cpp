#include "engine/wildcard_remover.h"

#include <gmock/gmock.h>

#include "platform/memory/memory_file_system.h"

namespace {

using testing::ElementsAre;

class WildcardRemoverTest : public testing::Test {
protected:
    WildcardRemoverTest() {
        files_.addFile("/app/a.log", "");
        files_.addFile("/app/B.LOG", "");
        files_.addFile("/app/keep.txt", "");
        files_.addFile("/app/sub/c.log", "");
        files_.addFile("/app/sub/deep/d.log", "");
    }

    MemoryFileSystem files_;
    WildcardRemover remover_{files_};
};

TEST_F(WildcardRemoverTest, DeletesMatchingFilesInTheWholeTree) {
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*.log", false), 4);
    EXPECT_THAT(files_.allFiles(), ElementsAre("/app/keep.txt"));
    EXPECT_TRUE(files_.hasDirectory("/app/sub/deep"));
}

TEST_F(WildcardRemoverTest, RemovesDirectoriesThatAreEmptyThenWhereAsked) {
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*.log", true), 6);
    EXPECT_FALSE(files_.hasDirectory("/app/sub"));
    EXPECT_TRUE(files_.hasDirectory("/app"));
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*", true), 2);
    EXPECT_FALSE(files_.hasDirectory("/app"));
}

TEST_F(WildcardRemoverTest, DeletesLinksAndFollowsNone) {
    files_.addFile("/other/mine.log", "");
    files_.addLink("/app/link.log", "/other");
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*.log", true), 7);
    EXPECT_TRUE(files_.hasFile("/other/mine.log"));
}

TEST_F(WildcardRemoverTest, RefusesADirectoryThatIsALink) {
    files_.addFile("/other/mine.log", "");
    files_.addLink("/cache", "/other");
    EXPECT_EQ(remover_.deleteByWildcard("/cache", "*", true), std::nullopt);
    EXPECT_EQ(remover_.deleteByWildcard("/cache/", "*", true), std::nullopt);
    EXPECT_TRUE(files_.hasFile("/other/mine.log"));
    EXPECT_TRUE(files_.exists("/cache"));
}

// Somebody who can write below a cleaned directory waits for the moment between the look and the deletion.
TEST_F(WildcardRemoverTest, DeletesNothingThroughALinkThatTakesThePlaceOfADirectory) {
    files_.addFile("/other/mine.log", "");
    files_.addFile("/other/c.log", "");
    files_.addFile("/other/deep/d.log", "");
    for (const char* moment : {"/app/sub/c.log", "/app/sub/deep/d.log"}) {
        files_.runBefore(MemoryFileSystem::Operation::kRemoveFile, moment, 1,
                         [this] { files_.addLink("/app/sub", "/other"); });
    }
    remover_.deleteByWildcard("/app", "*", true);
    EXPECT_TRUE(files_.hasFile("/other/mine.log"));
    EXPECT_TRUE(files_.hasFile("/other/c.log"));
    EXPECT_TRUE(files_.hasFile("/other/deep/d.log"));
}

TEST_F(WildcardRemoverTest, DoesNotEnterALinkThatTakesThePlaceOfAListedDirectory) {
    files_.addFile("/other/mine.log", "");
    files_.runBefore(MemoryFileSystem::Operation::kOpen, "/app/sub", 1,
                     [this] { files_.addLink("/app/sub", "/other"); });
    remover_.deleteByWildcard("/app", "*", true);
    EXPECT_TRUE(files_.hasFile("/other/mine.log"));
}

TEST_F(WildcardRemoverTest, LeavesADirectoryWithANameThatNoPathMeans) {
    files_.addUnnameable("/app/sub/deep");
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*", true), 5);
    EXPECT_TRUE(files_.hasDirectory("/app/sub/deep"));
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(WildcardRemoverTest, LeavesWhatIsToBeKept) {
    WildcardRemover remover(files_, [](const std::string& path) { return path == "/app/sub/c.log"; });
    EXPECT_EQ(remover.deleteByWildcard("/app", "*", true), 5);
    EXPECT_THAT(files_.allFiles(), ElementsAre("/app/sub/c.log"));
}

TEST_F(WildcardRemoverTest, KeepsNoDirectoryOpen) {
    remover_.deleteByWildcard("/app", "*", true);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(WildcardRemoverTest, RefusesWhatCannotBelongToAProduct) {
    for (const char* directory :
         {"", "/", "\\", "//", "app", "./app", "C:", "C:\\", "C:app", "\\\\server\\share",
          "\\\\server\\share\\", "/app/..", "/app/../app", "/.", "/none"}) {
        EXPECT_EQ(remover_.deleteByWildcard(directory, "*", true), std::nullopt) << directory;
    }
    for (const char* pattern : {"", "sub/*.log", "sub\\*.log"}) {
        EXPECT_EQ(remover_.deleteByWildcard("/app", pattern, true), std::nullopt) << pattern;
    }
    EXPECT_EQ(files_.allFiles().size(), 5U);
}

TEST_F(WildcardRemoverTest, KeepsTheFilesThatItIsToldToKeepAndTheirDirectories) {
    std::vector<std::string> asked;
    WildcardRemover remover(files_, [&asked](const std::string& path) {
        asked.push_back(path);
        return path == "/app/sub/c.log";
    });
    EXPECT_EQ(remover.deleteByWildcard("/app", "*.log", true), 4);
    EXPECT_THAT(files_.allFiles(), ElementsAre("/app/keep.txt", "/app/sub/c.log"));
    EXPECT_EQ(asked.size(), 4U);  // about what would be deleted
}

TEST_F(WildcardRemoverTest, GoesOnAfterAFileThatResists) {
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/a.log", 1);
    EXPECT_EQ(remover_.deleteByWildcard("/app", "*", true), 6);
    EXPECT_THAT(files_.allFiles(), ElementsAre("/app/a.log"));
}

TEST_F(WildcardRemoverTest, LeavesWhatLiesTooDeepAlone) {
    std::string path = "/deep";
    for (int level = 0; level <= WildcardRemover::kDeepestLevel; ++level) {
        path += "/d";
    }
    files_.addFile(path + "/f", "");
    EXPECT_EQ(remover_.deleteByWildcard("/deep", "*", true), 0);
    EXPECT_TRUE(files_.hasFile(path + "/f"));
}

}  // namespace
