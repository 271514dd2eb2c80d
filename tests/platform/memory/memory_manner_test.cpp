#include "platform/memory/memory_manner.h"

#include <gtest/gtest.h>

#include "platform/error_text.h"
#include "platform/memory/memory_file_system.h"
#include "platform/path_identity.h"
#include "platform/registry.h"
#include "platform/text_mode.h"
#include "platform/written_path.h"

namespace {

const MemoryManner linuxManner(MemoryManner::System::kLinux);
const MemoryManner windowsManner(MemoryManner::System::kWindows);

TEST(MemoryMannerTest, WritesPathsAsItsSystemDoes) {
    EXPECT_EQ(linuxManner.writtenPath("C:\\a/b"), "/a/b");
    EXPECT_EQ(windowsManner.writtenPath("C:\\a/b"), "C:\\a/b");
}

TEST(MemoryMannerTest, TakesSpellingsOfOnePathForTheSame) {
    for (const MemoryManner* manner : {&linuxManner, &windowsManner}) {
        EXPECT_EQ(manner->pathIdentity("/a\\\\B/c"), manner->pathIdentity("/A/b\\C"));
        EXPECT_NE(manner->pathIdentity("/a/b"), manner->pathIdentity("/a/c"));
    }
    EXPECT_EQ(linuxManner.pathIdentity("C:\\a"), linuxManner.pathIdentity("/a"));
    EXPECT_NE(windowsManner.pathIdentity("C:\\a"), windowsManner.pathIdentity("D:\\a"));
}

TEST(MemoryMannerTest, NamesErrorsInTheWordsOfItsSystem) {
    EXPECT_EQ(linuxManner.errorText(MemoryFileSystem::kDiskFull), "No space left on device");
    EXPECT_EQ(windowsManner.errorText(MemoryFileSystem::kDiskFull), "There is not enough space on the disk.");
    EXPECT_EQ(windowsManner.registryErrorText(platform::kRegAccessDenied), "Access is denied.");
    EXPECT_EQ(linuxManner.errorText(99), "error 99");
}

TEST(MannerInUseTest, AnswersInsteadOfTheSystem) {
    const std::string own = platform::writtenPath("C:\\a") + platform::textLineEnd() + platform::errorText(2);
    for (const MemoryManner* manner : {&linuxManner, &windowsManner}) {
        const platform::MannerInUse inUse(*manner);
        EXPECT_EQ(platform::writtenPath("C:\\a"), manner->writtenPath("C:\\a"));
        EXPECT_EQ(platform::pathIdentity("C:\\A"), manner->pathIdentity("C:\\A"));
        EXPECT_STREQ(platform::textLineEnd(), manner->textLineEnd());
        EXPECT_EQ(platform::errorText(5), manner->errorText(5));
        EXPECT_EQ(platform::registryErrorText(5), manner->registryErrorText(5));
    }
    EXPECT_EQ(platform::writtenPath("C:\\a") + platform::textLineEnd() + platform::errorText(2), own);
}

}  // namespace
