#include "engine/kept_files.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

class KeptFilesTest : public testing::Test {
protected:
    bool postpones(const std::string& directory) { return kept_.postponesDirectory(directory, status_); }

    MemoryFileSystem files_;
    KeptFiles kept_{files_};
    int status_ = 0;
};

TEST_F(KeptFilesTest, HoldsAFileInEverySpellingUntilTheRelease) {
    kept_.hold("/app/un/install.log");
    EXPECT_TRUE(kept_.holds("/app/un\\install.log"));
    EXPECT_TRUE(kept_.holds("/app//un/install.log"));
    EXPECT_FALSE(kept_.holds("/app/un/install.lo"));
    kept_.release();
    EXPECT_FALSE(kept_.holds("/app/un/install.log"));
    EXPECT_FALSE(kept_.postponesFile("/app/un/install.log"));
}

TEST_F(KeptFilesTest, HoldsNothingWithoutAPath) {
    kept_.hold("");
    kept_.holdByName("");
    EXPECT_FALSE(kept_.holds(""));
    EXPECT_FALSE(kept_.holds("/"));
}

TEST_F(KeptFilesTest, HoldsNothingMoreOnceItIsClosed) {
    kept_.hold("/a/archive");
    kept_.close();
    kept_.hold("/a/log");
    kept_.holdByName("uninstaller");
    EXPECT_TRUE(kept_.holds("/a/archive"));
    EXPECT_FALSE(kept_.holds("/a/log"));
    EXPECT_FALSE(kept_.holds("/a/uninstaller"));
}

TEST_F(KeptFilesTest, HoldsANameInEveryDirectory) {
    kept_.holdByName("installer");
    EXPECT_TRUE(kept_.holds("/app/un/installer"));
    EXPECT_FALSE(kept_.holds("/app/installer/tool"));
}

TEST_F(KeptFilesTest, PostponesDirectoriesThatHoldOnlyWhatIsPostponed) {
    files_.addFile("/app/un/install.log", "");
    files_.addFile("/app/un/installer", "");
    kept_.hold("/app/un/install.log");
    kept_.hold("/app/un/installer");
    EXPECT_TRUE(kept_.postponesFile("/app/un\\installer"));
    EXPECT_FALSE(postpones("/app/un"));  // nobody will delete the log
    EXPECT_TRUE(kept_.postponesFile("/app/un/install.log"));
    EXPECT_FALSE(postpones("/app"));  // in the order of the walk: deepest first
    EXPECT_TRUE(postpones("/app/un"));
    EXPECT_TRUE(postpones("/app\\"));
    files_.addFile("/app/mine", "");
    EXPECT_FALSE(postpones("/app"));
    kept_.release();
    EXPECT_FALSE(postpones("/app/un"));
}

TEST_F(KeptFilesTest, KnowsWhichPostponedFilesAreLeft) {
    for (const char* const path : {"/app/a", "/app/b", "/app/c"}) {
        files_.addFile(path, "");
        kept_.hold(path);
    }
    EXPECT_TRUE(kept_.postponesFile("/app/b"));
    EXPECT_TRUE(kept_.postponesFile("/app/a"));
    EXPECT_TRUE(kept_.postponesFile("/app\\a"));
    kept_.release();
    EXPECT_EQ(kept_.leftFiles(), (std::vector<std::string>{"/app/b", "/app/a"}));
    files_.removeFile("/app/b");
    EXPECT_EQ(kept_.leftFiles(), std::vector<std::string>{"/app/a"});
}

TEST_F(KeptFilesTest, PostponesNoDirectoryThatIsEmptyOrGone) {
    files_.addDirectory("/app/empty");
    kept_.hold("/app/x");
    EXPECT_TRUE(kept_.postponesFile("/app/x"));
    EXPECT_FALSE(postpones("/app/empty"));
    EXPECT_FALSE(postpones("/none"));
    EXPECT_EQ(status_, 0);
}

TEST_F(KeptFilesTest, TellsWhyADirectoryCannotBeListed) {
    files_.addFile("/app/un/install.log", "");
    kept_.hold("/app/un/install.log");
    EXPECT_TRUE(kept_.postponesFile("/app/un/install.log"));
    files_.failAt(MemoryFileSystem::Operation::kList, "/app/un", 1, MemoryFileSystem::kAccessDenied);
    EXPECT_FALSE(postpones("/app/un"));
    EXPECT_EQ(status_, MemoryFileSystem::kAccessDenied);
    EXPECT_TRUE(postpones("/app/un"));
    EXPECT_EQ(status_, 0);
}

}  // namespace
