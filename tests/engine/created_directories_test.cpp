#include "engine/created_directories.h"

#include <gmock/gmock.h>

#include "engine/report.h"
#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CreatedDirectoriesTest : public testing::Test {
protected:
    bool remove(const std::string& path, int levels) { return directories_.remove(path, levels, report_); }

    MemoryFileSystem files_;
    RecordingUI ui_;
    ErrorList errors_;
    Report report_{&ui_, &errors_};
    CreatedDirectories directories_{files_};
};

TEST_F(CreatedDirectoriesTest, RemoveTheirLevelsFromTheDeepestOn) {
    files_.addFile("/keep/file", "");
    files_.addDirectory("/keep/a/b");
    EXPECT_TRUE(remove("/keep/a/b/", 2));
    EXPECT_FALSE(files_.hasDirectory("/keep/a"));
    EXPECT_TRUE(files_.hasFile("/keep/file"));
    EXPECT_THAT(ui_.calls,
                ElementsAre("addFileLine(\"Remove /keep/a/b\", 0)", "addFileLine(\"Remove /keep/a\", 0)"));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(CreatedDirectoriesTest, TreatAPathWithoutASeparatorAtItsEndOnceAsAWhole) {
    files_.addFile("/keep/file", "");
    files_.addDirectory("/keep/a/b");
    EXPECT_TRUE(remove("/keep/a/b", 1));
    EXPECT_THAT(ui_.calls,
                ElementsAre("addFileLine(\"Remove /keep/a/b\", 0)", "addFileLine(\"Remove /keep/a\", 0)"));
}

TEST_F(CreatedDirectoriesTest, StayWithForeignFilesAndCountAsFailed) {
    files_.addFile("/a/b/mine", "");
    EXPECT_FALSE(remove("\\a\\b\\", 2));
    EXPECT_TRUE(files_.hasFile("/a/b/mine"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove \\a\\b", "FAILED to remove \\a"));
}

TEST_F(CreatedDirectoriesTest, ThatAreGoneAreNoFailure) {
    EXPECT_TRUE(remove("/none/at/all/", 3));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(CreatedDirectoriesTest, DoNothingWithoutLevelsOrAPath) {
    files_.addDirectory("/a");
    for (const int levels : {0, -1}) {
        EXPECT_TRUE(remove("/a/", levels));
    }
    EXPECT_TRUE(remove("", 3));
    EXPECT_TRUE(remove("/", 2147483647));
    EXPECT_TRUE(files_.hasDirectory("/a"));
    EXPECT_THAT(ui_.calls, IsEmpty());
}

}  // namespace
