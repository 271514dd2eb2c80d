#include "support/file_copy.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

TEST(CopyWithRights, CopiesAFileWithItsRights) {
    MemoryFileSystem files;
    files.addFile("/app/tool", "content");
    ASSERT_EQ(files.makeExecutable("/app/tool"), 0);
    EXPECT_EQ(copyWithRights(files, "/app/tool", "/app/tool", "/app/copy"), 0);
    EXPECT_EQ(files.content("/app/copy"), "content");
    EXPECT_TRUE(files.isExecutable("/app/copy"));
    files.addLink("/app/link", "/app/tool");
    EXPECT_NE(copyWithRights(files, "/app/link", "/app/link", "/app/other"), 0);
    EXPECT_FALSE(files.hasFile("/app/other"));
}

TEST(CopyWithRights, GivesAFileTheRightsOfAnother) {
    MemoryFileSystem files;
    files.addFile("/app/plain", "content");
    files.addFile("/app/tool", "");
    ASSERT_EQ(files.makeExecutable("/app/tool"), 0);
    EXPECT_EQ(copyWithRights(files, "/app/plain", "/app/tool", "/app/plain"), 0);
    EXPECT_EQ(files.content("/app/plain"), "content");
    EXPECT_TRUE(files.isExecutable("/app/plain"));
}

}  // namespace
