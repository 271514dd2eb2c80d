#include "package/solid_compressor.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "package/package_bytes.h"
#include "package/solid_decompressor.h"
#include "support/p_mem_stream.h"

using namespace PackageBytes;

namespace {

using Result = SolidCompressor::Result;

// Text that compresses, but not to nothing.
std::string sampleData(std::size_t size) {
    std::string data;
    std::uint32_t state = 1;
    while (data.size() < size) {
        state = state * 1664525 + 1013904223;
        data += std::to_string(state >> 20) + " ";
    }
    data.resize(size);
    return data;
}

std::string compressed(const std::string& data, std::int32_t stripes, std::int32_t level = 9) {
    ZlibSolidCompressor compressor;
    EXPECT_EQ(compressor.init(stripes, level), Result::kDone);
    EXPECT_EQ(compressor.addData(data.data(), static_cast<std::int32_t>(data.size())), Result::kDone);
    std::unique_ptr<unsigned char[]> stream;
    std::int32_t size = 0;
    std::int32_t uncompressed = 0;
    EXPECT_EQ(compressor.compress(stream, size, uncompressed), Result::kDone);
    EXPECT_EQ(uncompressed, static_cast<std::int32_t>(data.size()));
    return std::string(reinterpret_cast<char*>(stream.get()), static_cast<std::size_t>(size));
}

std::string expanded(const std::string& stream) {
    ZlibSolidDecompressor decompressor{DebugLog()};
    SolidBlock out;
    EXPECT_EQ(decompressor.decompress(reinterpret_cast<const unsigned char*>(stream.data()),
                                      static_cast<std::int64_t>(stream.size()), out),
              SolidResult::kDone);
    return std::string(reinterpret_cast<char*>(out.data.get()), static_cast<std::size_t>(out.size));
}

SolidChunk chunkOf(const std::string& stream, int index) {
    return SolidChunk::decode(reinterpret_cast<const unsigned char*>(stream.data()) + 20 + 16 * index);
}

TEST(ZlibSolidCompressor, WritesWhatTheDecompressorReads) {
    const std::string data = sampleData(300000);
    for (const std::int32_t stripes : {1, 2, 7, 256}) {
        EXPECT_EQ(expanded(compressed(data, stripes)), data) << stripes;
    }
}

TEST(ZlibSolidCompressor, WritesTheHeaderAndChunksWithoutGaps) {
    const std::string stream = compressed(sampleData(100001), 8);
    EXPECT_EQ(stream.substr(0, 20), solidHeader(8));
    std::int32_t next = 20 + 16 * 8;
    for (int i = 0; i < 8; ++i) {
        const SolidChunk chunk = chunkOf(stream, i);
        EXPECT_EQ(chunk.compressedOffset, next);
        next += static_cast<std::int32_t>(chunk.compressedSize);
    }
    EXPECT_EQ(static_cast<std::size_t>(next), stream.size());
}

TEST(ZlibSolidCompressor, CutsStripesByTheFloorFormula) {
    const std::int64_t total = 100001;
    const std::string stream = compressed(sampleData(total), 8);
    for (std::int64_t i = 0; i < 8; ++i) {
        const SolidChunk chunk = chunkOf(stream, static_cast<int>(i));
        EXPECT_EQ(chunk.uncompressedOffset, i * total / 8);
        EXPECT_EQ(chunk.uncompressedSize, (i + 1) * total / 8 - i * total / 8);
    }
}

TEST(ZlibSolidCompressor, WritesEachChunkAsCompress2Does) {
    const std::string data = sampleData(5000);
    const std::string stream = compressed(data, 1);
    EXPECT_EQ(stream.substr(36), deflated(data));
}

TEST(ZlibSolidCompressor, GivesTheSameBytesEachTime) {
    const std::string data = sampleData(200000);
    EXPECT_EQ(compressed(data, 5), compressed(data, 5));
}

TEST(ZlibSolidCompressor, WritesToAStreamWhatItWouldReturn) {
    const std::string data = sampleData(70000);
    ZlibSolidCompressor compressor;
    compressor.init(3, 9);
    compressor.addData(data.data(), static_cast<std::int32_t>(data.size()));
    PMemStream out;
    std::int32_t size = 0;
    std::int32_t uncompressed = 0;
    ASSERT_EQ(compressor.compressTo(out, size, uncompressed), Result::kDone);
    const std::string expected = compressed(data, 3);
    ASSERT_EQ(out.getSize(), static_cast<std::int64_t>(expected.size()));
    EXPECT_EQ(size, static_cast<std::int32_t>(expected.size()));
    std::string written(expected.size(), '\0');
    std::uint32_t done = 0;
    out.seek(0);
    out.read(written.data(), static_cast<std::uint32_t>(written.size()), done);
    EXPECT_EQ(written, expected);
}

TEST(ZlibSolidCompressor, UsesTheLevelsOfZlib) {
    const std::string data = sampleData(50000);
    EXPECT_LT(compressed(data, 1, 9).size(), compressed(data, 1, 1).size());
}

TEST(ZlibSolidCompressor, RefusesNumbersOfStripesThatNoReaderAccepts) {
    ZlibSolidCompressor compressor;
    EXPECT_EQ(compressor.init(0, 9), Result::kBadParameter);
    EXPECT_EQ(compressor.init(257, 9), Result::kDone);
    std::unique_ptr<unsigned char[]> stream;
    std::int32_t size = 5;
    std::int32_t uncompressed = 5;
    EXPECT_EQ(compressor.compress(stream, size, uncompressed), Result::kBadParameter);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(size, 0);
}

TEST(ZlibSolidCompressor, ReportsEachStripeThatFailed) {
    ZlibSolidCompressor compressor;
    EXPECT_EQ(compressor.init(2, 42), Result::kDone);  // a level that zlib refuses
    compressor.addData("abcd", 4);
    std::unique_ptr<unsigned char[]> stream;
    std::int32_t size = 0;
    std::int32_t uncompressed = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(compressor.compress(stream, size, uncompressed), Result::kStripeFailed);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Worker 0 failed with zlib error -2\nWorker 1 failed with zlib error -2\n");
    EXPECT_EQ(stream, nullptr);
}

TEST(CommonSolidCompressor, RefusesABlobAboveItsLimit) {
    ZlibSolidCompressor compressor;
    compressor.init(1, 1);
    const std::string piece(1000, 'x');
    EXPECT_EQ(compressor.addData(piece.data(), 1000), Result::kDone);
    testing::internal::CaptureStderr();
    // The sizes are checked before the data is read.
    EXPECT_EQ(compressor.addData(piece.data(), 0x40000000 - 999), Result::kBadParameter);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FATAL ERROR: Uncompressed blob size exceeds supported size of 1073741824 B\n");
    EXPECT_EQ(compressor.blobSize(), 1000);
}

TEST(CommonSolidCompressor, ReplacesBytesInPlace) {
    ZlibSolidCompressor compressor;
    compressor.init(1, 9);
    compressor.addData("abcdef", 6);
    compressor.overwrite(2, "XY", 2);
    std::unique_ptr<unsigned char[]> stream;
    std::int32_t size = 0;
    std::int32_t uncompressed = 0;
    ASSERT_EQ(compressor.compress(stream, size, uncompressed), Result::kDone);
    EXPECT_EQ(expanded(std::string(reinterpret_cast<char*>(stream.get()), static_cast<std::size_t>(size))),
              "abXYef");
}

}  // namespace
