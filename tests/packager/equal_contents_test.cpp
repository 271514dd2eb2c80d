#include "packager/equal_contents.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

class EqualContentsTest : public testing::Test {
protected:
    bool areEqual(const std::string& a, const std::string& b) {
        files_.addFile("/a", a);
        files_.addFile("/b", b);
        const bool result = haveEqualContents(files_, "/a", "/b");
        EXPECT_EQ(haveEqualContents(files_, "/b", "/a"), result);
        EXPECT_EQ(contentDigest(files_, "/a") == contentDigest(files_, "/b"), result);
        EXPECT_EQ(files_.openFileCount(), 0);
        return result;
    }

    MemoryFileSystem files_;
};

TEST_F(EqualContentsTest, ComparesEveryByte) {
    constexpr std::size_t kBlock = 64 * 1024;
    for (const std::size_t size : {kBlock - 1, kBlock, kBlock + 1, 2 * kBlock}) {
        const std::string content(size, 'x');
        EXPECT_TRUE(areEqual(content, content)) << size;
        EXPECT_FALSE(areEqual(content, content + "x")) << size;
        std::string other = content;
        other.back() = 'y';
        EXPECT_FALSE(areEqual(content, other)) << size;
    }
    EXPECT_TRUE(areEqual("", ""));
    EXPECT_FALSE(areEqual("", std::string(1, '\0')));
}

TEST_F(EqualContentsTest, SaysNothingOfWhatCannotBeRead) {
    files_.addFile("/a", "x");
    files_.addFile("/b", "x");
    EXPECT_FALSE(haveEqualContents(files_, "/a", "/none"));
    EXPECT_FALSE(contentDigest(files_, "/none"));
    files_.failFrom(MemoryFileSystem::Operation::kRead, "/b", 1);
    EXPECT_FALSE(haveEqualContents(files_, "/a", "/b"));
    EXPECT_FALSE(contentDigest(files_, "/b"));
    EXPECT_EQ(md5Text(*contentDigest(files_, "/a")), "9dd4e461268c8034f5c8564e155c67a6");
}

}  // namespace
