#include <gtest/gtest.h>

#include "description/pxml.h"
#include "platform/memory/memory_file_system.h"
#include "support/p_buf_stream.h"
#include "support/p_mem_stream.h"

namespace {

// A stream whose answers a test sets.
class ScriptedStream : public PBufStream {
public:
    using PBufStream::PBufStream;

    int openStatus = 0;
    int readStatus = 0;
    std::int64_t announced = -2;
    int closes = 0;

    int open() override {
        openCount_ += openStatus == 0 ? 1 : 0;
        return openStatus;
    }
    int close() override {
        ++closes;
        return 0;
    }
    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override {
        return readStatus != 0 ? readStatus : PBufStream::read(buffer, size, outRead);
    }
    std::int64_t getSize() override { return announced == -2 ? PBufStream::getSize() : announced; }
};

class PXMLLoading : public testing::Test {
protected:
    char text_[15] = {'<', 'r', '>', 'h', 'e', 'l', 'l', 'o', '<', '/', 'r', '>', '<', 'x', '>'};
    ScriptedStream stream_{text_, sizeof text_};
    PXML document_;
};

TEST_F(PXMLLoading, StreamIsReadParsedAndClosed) {
    EXPECT_EQ(document_.loadStream(stream_), 0);
    EXPECT_EQ(document_.getText(0), "hello");
    EXPECT_EQ(stream_.closes, 1);
}

TEST_F(PXMLLoading, StreamThatCannotBeOpenedGivesOne) {
    stream_.openStatus = 5;
    EXPECT_EQ(document_.loadStream(stream_), 1);
    EXPECT_EQ(stream_.closes, 0);
    EXPECT_EQ(document_.getNodeCount(), 0);
}

TEST_F(PXMLLoading, ReadErrorIsPassedOnAndTheStreamClosed) {
    stream_.readStatus = 23;
    EXPECT_EQ(document_.loadStream(stream_), 23);
    EXPECT_EQ(stream_.closes, 1);
    EXPECT_EQ(document_.getNodeCount(), 0);
}

TEST_F(PXMLLoading, MissingBytesGiveMinusThree) {
    stream_.announced = 16;
    EXPECT_EQ(document_.loadStream(stream_), -3);
    EXPECT_EQ(stream_.closes, 1);
    EXPECT_EQ(document_.getNodeCount(), 0);
}

TEST_F(PXMLLoading, UnusableSizeFails) {
    stream_.announced = -1;
    EXPECT_EQ(document_.loadStream(stream_), -1);
    stream_.announced = std::int64_t{1} << 40;
    EXPECT_EQ(document_.loadStream(stream_), -1);
    EXPECT_EQ(stream_.closes, 2);
}

TEST(PXMLLoadFile, FileIsRead) {
    MemoryFileSystem files;
    files.addFile("/d/install.xml", "<r>t</r>");
    PXML document;
    EXPECT_EQ(document.loadFile("/d\\install.xml", files), 0);
    EXPECT_EQ(document.getText(0), "t");
    EXPECT_EQ(files.openFileCount(), 0);
}

TEST(PXMLLoadFile, MissingFileGivesTheStreamsError) {
    MemoryFileSystem files;
    PXML document;
    EXPECT_EQ(document.loadFile("/none.xml", files), MemoryFileSystem::kNotFound);
}

TEST(PXMLLoadFile, EmptyFileGivesAnEmptyDocument) {
    MemoryFileSystem files;
    files.addFile("/empty.xml", "");
    PXML document;
    EXPECT_EQ(document.loadFile("/empty.xml", files), 0);
    EXPECT_EQ(document.getNodeCount(), 0);
}

}  // namespace
