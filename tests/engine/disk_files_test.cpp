#include "engine/file_comparer.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class FileComparerTest : public testing::Test {
protected:
    FileOnDisk compare(const std::string& content) {
        return FileComparer(files_).compare("/dir/file", static_cast<std::int64_t>(content.size()),
                                            md5Of(content.data(), content.size()));
    }

    MemoryFileSystem files_;
};

TEST_F(FileComparerTest, knowsAnIdenticalFile) {
    files_.addFile("/dir/file", "content");
    const FileOnDisk found = compare("content");
    EXPECT_TRUE(found.exists);
    EXPECT_FALSE(found.differs);
}

TEST_F(FileComparerTest, knowsAnIdenticalEmptyFile) {
    files_.addFile("/dir/file", "");
    EXPECT_FALSE(compare("").differs);
}

TEST_F(FileComparerTest, comparesLargeFilesPieceByPiece) {
    std::string content(700000, 'a');
    content[600000] = 'b';
    files_.addFile("/dir/file", content);
    EXPECT_FALSE(compare(content).differs);
    content[600000] = 'c';
    EXPECT_TRUE(compare(content).differs);
}

TEST_F(FileComparerTest, findsADifferenceInSizeOrContent) {
    files_.addFile("/dir/file", "content");
    EXPECT_TRUE(compare("contenT").differs);
    EXPECT_TRUE(compare("content!").differs);
    EXPECT_TRUE(compare("").differs);
    EXPECT_TRUE(compare("").exists);
}

TEST_F(FileComparerTest, doesNotTakeADirectoryForAFile) {
    files_.addDirectory("/dir/file");
    const FileOnDisk found = compare("content");
    EXPECT_FALSE(found.exists);
    EXPECT_TRUE(found.differs);
}

TEST_F(FileComparerTest, countsAMissingFileAsDifferent) {
    const FileOnDisk found = compare("content");
    EXPECT_FALSE(found.exists);
    EXPECT_TRUE(found.differs);
}

TEST_F(FileComparerTest, countsAFileThatCannotBeReadAsDifferent) {
    files_.addFile("/dir/file", "content");
    files_.failAt(Operation::kRead, "/dir/file", 1);
    const FileOnDisk found = compare("content");
    EXPECT_TRUE(found.exists);
    EXPECT_TRUE(found.differs);
    EXPECT_EQ(files_.openFileCount(), 0);
}

}  // namespace
