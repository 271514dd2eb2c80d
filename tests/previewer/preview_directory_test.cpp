#include "previewer/preview_directory.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Names = std::vector<std::string>;

class PreviewDirectoryTest : public testing::Test {
protected:
    PreviewDirectoryTest() { files.addDirectory("/out"); }

    std::string failureOf(const std::function<void()>& work) {
        try {
            work();
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "none";
    }

    MemoryFileSystem files;
    PreviewDirectory directory{files, "/out"};
};

TEST_F(PreviewDirectoryTest, ListsWhatItWrites) {
    directory.begin();
    directory.write({{"index.html", "page"}});
    directory.write({{"default-100/install-01-A.png", "picture"}});
    EXPECT_EQ(files.content("/out/default-100/install-01-A.png"), "picture");
    EXPECT_EQ(directory.names(), (Names{"index.html", "default-100/install-01-A.png"}));
}

TEST_F(PreviewDirectoryTest, IsMadeWhereItIsMissing) {
    PreviewDirectory made(files, "/out/new");
    made.begin();
    EXPECT_TRUE(files.hasFile("/out/new/preview.txt"));
}

TEST_F(PreviewDirectoryTest, RemovesTheEarlierPreviewAndNothingElse) {
    directory.begin();
    directory.write({{"index.html", "page"}});
    directory.write({{"default-100/install-01-A.png", "picture"}});
    directory.write({{"default-150/install-01-A.png", "picture"}});
    files.addFile("/out/mine.txt", "mine");
    files.addFile("/out/default-100/mine.png", "mine");
    directory.begin();
    EXPECT_EQ(files.allFiles(), (Names{"/out/default-100/mine.png", "/out/mine.txt", "/out/preview.txt"}));
    EXPECT_FALSE(files.hasDirectory("/out/default-150"));
    EXPECT_EQ(directory.names(), Names());
}

TEST_F(PreviewDirectoryTest, RefusesADirectoryWithOtherFiles) {
    files.addFile("/out/mine.txt", "mine");
    EXPECT_EQ(failureOf([&] { directory.begin(); }),
              "/out: is neither empty nor an earlier preview: choose another directory");
    files.addFile("/out/preview.txt", "mine as well");
    EXPECT_NE(failureOf([&] { directory.begin(); }), "none");
    EXPECT_EQ(files.content("/out/preview.txt"), "mine as well");
    EXPECT_NE(failureOf([&] { PreviewDirectory(files, "/out/mine.txt").begin(); }), "none");
}

TEST_F(PreviewDirectoryTest, FollowsNoListOutOfTheDirectory) {
    files.addFile("/precious", "1");
    files.addFile("/elsewhere/x.png", "1");
    files.addLink("/out/linked", "/elsewhere");
    files.addFile("/out/preview.txt",
                  "Tandrel preview 1\n../precious\n/precious\nlinked/x.png\na/../../precious\n\n.\n");
    directory.begin();
    EXPECT_TRUE(files.hasFile("/precious"));
    EXPECT_TRUE(files.hasFile("/elsewhere/x.png"));
    EXPECT_NE(failureOf([&] { directory.write({{"linked/y.png", "1"}}); }), "none");
    EXPECT_NE(failureOf([&] { directory.write({{"../y.png", "1"}}); }), "none");
}

TEST_F(PreviewDirectoryTest, NotesAllFilesBeforeItWritesTheFirst) {
    directory.begin();
    files.setFreeSpace(500);
    EXPECT_NE(failureOf([&] {
                  directory.write({{"default-100/walk.txt", "pages"},
                                   {"default-100/install-01-A.png", std::string(1000, 'p')},
                                   {"default-100/install-02-B.png", "picture"}});
              }),
              "none");
    EXPECT_EQ(directory.names().size(), 3U);
    EXPECT_TRUE(files.hasFile("/out/default-100/walk.txt"));
    EXPECT_FALSE(files.hasFile("/out/default-100/install-02-B.png"));
    files.setFreeSpace(-1);
    directory.begin();
    EXPECT_EQ(files.allFiles(), Names{"/out/preview.txt"});
}

TEST_F(PreviewDirectoryTest, TakesNothingOverThatNoPreviewWrote) {
    directory.begin();
    files.addFile("/out/default-100/install-02-B.png", "mine");
    EXPECT_EQ(
        failureOf([&] {
            directory.write({{"default-100/install-01-A.png", "1"}, {"default-100/install-02-B.png", "2"}});
        }),
        "/out/default-100/install-02-B.png: no preview wrote what is in this place");
    EXPECT_EQ(directory.names(), Names());
    directory.begin();
    EXPECT_EQ(files.content("/out/default-100/install-02-B.png"), "mine");
}

TEST_F(PreviewDirectoryTest, SaysThatTheDiskIsFull) {
    directory.begin();
    files.setFreeSpace(0);
    EXPECT_TRUE(failureOf([&] {
                    directory.write({{"index.html", "page"}});
                }).starts_with("/out/preview.txt: can't be written"));
}

}  // namespace
