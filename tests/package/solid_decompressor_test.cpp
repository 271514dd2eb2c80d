#include "package/solid_decompressor.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "package/package_bytes.h"

using namespace PackageBytes;

namespace {

const unsigned char* bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

class SolidDecompressorTest : public testing::Test {
protected:
    int expand(const std::string& stream) {
        ZlibSolidDecompressor decompressor{DebugLog(console_)};
        // A copy of exactly this size, so that the sanitizers notice a read past its end.
        const auto copy = std::make_unique<unsigned char[]>(stream.size());
        std::memcpy(copy.get(), stream.data(), stream.size());
        SolidBlock out{std::make_unique<unsigned char[]>(1), 7};
        const int result = static_cast<int>(
            decompressor.decompress(copy.get(), static_cast<std::int64_t>(stream.size()), out));
        output_ = out.data == nullptr ? std::string()
                                      : std::string(reinterpret_cast<char*>(out.data.get()),
                                                    static_cast<std::size_t>(out.size));
        EXPECT_EQ(out.data == nullptr, result != 0);
        if (result != 0) {
            EXPECT_EQ(out.size, 0);
        }
        return result;
    }
    // A stream with these records and this data after them.
    static std::string streamOf(const std::vector<SolidChunk>& chunks, const std::string& data) {
        std::string stream = solidHeader(static_cast<std::int32_t>(chunks.size()));
        for (const SolidChunk& chunk : chunks) {
            stream += chunkRecord(chunk);
        }
        return stream + data;
    }

    FakeConsole console_;
    std::string output_;
};

std::uint32_t sizeOf(const std::string& text) {
    return static_cast<std::uint32_t>(text.size());
}

TEST(CreateSolidDecompressor, KnowsAHeaderOfItsVersion) {
    EXPECT_NE(createSolidDecompressor(bytes(solidHeader(1)), DebugLog()), nullptr);
    EXPECT_NE(createSolidDecompressor(bytes(solidHeader(256)), DebugLog()), nullptr);
}

TEST(CreateSolidDecompressor, RefusesANumberOfChunksOutsideItsLimits) {
    for (const std::int32_t count : {0, 257, -1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(createSolidDecompressor(bytes(solidHeader(count)), DebugLog()), nullptr) << count;
    }
}

TEST(CreateSolidDecompressor, RefusesAHeaderWithAnyByteChanged) {
    for (std::size_t i = 0; i < 16; ++i) {
        std::string header = solidHeader(1);
        header[i] = static_cast<char>(header[i] ^ 1);
        EXPECT_EQ(createSolidDecompressor(bytes(header), DebugLog()), nullptr) << i;
    }
}

TEST_F(SolidDecompressorTest, ExpandsChunksInRecordOrder) {
    EXPECT_EQ(expand(solidStream({"first ", "second ", "third"})), 0);
    EXPECT_EQ(output_, "first second third");
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{"Decompressor: Allocating memory for uncompressed cabinet (18 B)",
                                        "Decompressor: Starting decompression ... (3 chunks)"}));
}

TEST_F(SolidDecompressorTest, WorksWithALogWithoutATarget) {
    ZlibSolidDecompressor decompressor{DebugLog()};
    SolidBlock out;
    const std::string good = solidStream({"text"});
    EXPECT_EQ(decompressor.decompress(bytes(good), static_cast<std::int64_t>(good.size()), out),
              SolidResult::kDone);
    EXPECT_EQ(out.size, 4);
    EXPECT_EQ(decompressor.decompress(bytes(good), static_cast<std::int64_t>(good.size()) - 1, out),
              SolidResult::kReadFailed);
}

TEST_F(SolidDecompressorTest, DoesNotDependOnTheOrderOfTheRecords) {
    const std::string a = deflated("aaa");
    const std::string b = deflated("bb");
    const auto start = 20 + 32;
    EXPECT_EQ(expand(streamOf(
                  {{3, 2, static_cast<std::int32_t>(start + a.size()), sizeOf(b)}, {0, 3, start, sizeOf(a)}},
                  a + b)),
              0);
    EXPECT_EQ(output_, "aaabb");
}

TEST_F(SolidDecompressorTest, FailsForLessThanItsHeader) {
    const std::string stream = solidStream({"a", "b"});
    for (std::size_t size = 0; size < 20 + 32; ++size) {
        EXPECT_EQ(expand(stream.substr(0, size)), -11) << size;
    }
    EXPECT_TRUE(console_.lines().empty());
}

TEST_F(SolidDecompressorTest, FailsForAnotherVersionAndBadNumbersOfChunks) {
    std::string stream = solidStream({"a"});
    setNumber(stream, 12, 0x20121112);
    EXPECT_EQ(expand(stream), -21);
    EXPECT_EQ(expand(solidHeader(0)), -21);
    EXPECT_EQ(expand(solidHeader(257) + std::string(16 * 257, '\0')), -21);
    EXPECT_EQ(expand(solidHeader(-5)), -21);
}

TEST_F(SolidDecompressorTest, FailsForDataInsideTheHeader) {
    EXPECT_EQ(expand(streamOf({{0, 1, 19, 9}}, "")), -22);
    EXPECT_EQ(expand(streamOf({{0, 1, 35, 9}}, "")), -22);
    EXPECT_EQ(expand(streamOf({{0, 1, -1, 9}}, "")), -22);
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor: Compressed offset is less than total header size (corrupted header - 0)");
}

TEST_F(SolidDecompressorTest, FailsForANegativePlaceInTheOutput) {
    EXPECT_EQ(expand(streamOf({{-1, 1, 36, 9}}, "")), -23);
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor: Uncompressed offset is negative (corrupted header - 0)");
}

TEST_F(SolidDecompressorTest, FailsForOverlapsInEitherSpace) {
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {0, 5, 61, 9}}, "")), -24);  // not -25
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor: Overlapping offset/size ranges (corrupted header - 0 1)");
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {4, 5, 61, 9}}, "")), -24);
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {5, 5, 60, 9}}, "")), -24);
    EXPECT_EQ(expand(streamOf({{5, 5, 52, 9}, {0, 6, 61, 9}}, "")), -24);
    EXPECT_EQ(expand(streamOf({{0, 9, 52, 9}, {2, 3, 61, 9}}, "")), -24);
}

TEST_F(SolidDecompressorTest, CountsAnEmptyRangeAtTheEdgeOfAnotherAsAnOverlap) {
    EXPECT_EQ(expand(streamOf({{0, 0, 52, 8}, {0, 5, 60, 9}}, "")), -24);
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {0, 0, 61, 8}}, "")), -24);
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {5, 0, 61, 8}}, "")), -24);
}

TEST_F(SolidDecompressorTest, FailsForHoles) {
    EXPECT_EQ(expand(streamOf({{0, 5, 52, 9}, {6, 5, 61, 9}}, "")), -25);
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor: Accounted size (10) differs from uncompressed size "
              "(11) as reporterd (corrupted header)");
    EXPECT_EQ(expand(streamOf({{1, 5, 36, 9}}, "")), -25);  // the output doesn't start at 0
}

TEST_F(SolidDecompressorTest, FailsForAnOutputAboveTheLimit) {
    EXPECT_EQ(expand(streamOf({{0, 0x80000000, 36, 9}}, "")), -26);
    EXPECT_TRUE(console_.lines().back().starts_with(
        "ERROR: Decompressor: Failed to allocate memory for the uncompressed cabinet ("))
        << console_.lines().back();
    EXPECT_EQ(expand(streamOf({{0, 0xFFFFFFFF, 36, 9}}, "")), -26);
}

TEST_F(SolidDecompressorTest, FailsForAChunkPastTheEnd) {
    EXPECT_EQ(expand(streamOf({{0, 5, 37, 9}}, "")), -27);
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor (chunk 0): Seeking compressed offset failed (Error: -12)");
    EXPECT_EQ(expand(streamOf({{0, 5, INT32_MAX, 9}}, "")), -27);
}

TEST_F(SolidDecompressorTest, FailsForACutChunk) {
    const std::string stream = solidStream({"some text", "some more text"});
    const std::size_t data = 20 + 32;
    const std::size_t second = data + deflated("some text").size();
    for (std::size_t size = data; size < stream.size(); ++size) {
        // When nothing is left of the second chunk, its data begins at the end, which can still be reached.
        EXPECT_EQ(expand(stream.substr(0, size)), -28) << size;
    }
    EXPECT_EQ(expand(stream.substr(0, second)), -28);
    EXPECT_EQ(console_.lines().back(),
              "ERROR: Decompressor (chunk 1): Reading compressed data failed (Error: -11)");
    EXPECT_EQ(expand(streamOf({{0, 5, 36, 0xFFFFFFFF}}, "abc")), -28);
}

TEST_F(SolidDecompressorTest, FailsForDamagedData) {
    std::string stream = solidStream({"some text"});
    stream[38] ^= 0x55;
    EXPECT_EQ(expand(stream), -29);
    EXPECT_EQ(console_.lines().back(), "ERROR: Decompressor (chunk 0): Uncompressing data failed (size: " +
                                           std::to_string(stream.size() - 36) +
                                           " B; msg: corrupted compressed data)");
}

TEST_F(SolidDecompressorTest, FailsForAChunkWhoseSizeDiffersFromItsRecord) {
    const std::string data = deflated("1234");
    EXPECT_EQ(expand(streamOf({{0, 5, 36, sizeOf(data)}}, data)), -29);  // zlib itself reports success
    EXPECT_EQ(console_.lines().back(), "ERROR: Decompressor (chunk 0): Uncompressing data failed (size: " +
                                           std::to_string(data.size()) + " B; msg: unknown error)");
    EXPECT_EQ(expand(streamOf({{0, 3, 36, sizeOf(data)}}, data)), -29);
    EXPECT_EQ(console_.lines().back(), "ERROR: Decompressor (chunk 0): Uncompressing data failed (size: " +
                                           std::to_string(data.size()) +
                                           " B; msg: output buffer is not big enough)");
}

TEST_F(SolidDecompressorTest, SurvivesEveryChangedHeaderByte) {
    const std::string stream = solidStream({"some text", "some more text"});
    for (std::size_t i = 0; i < 20 + 32; ++i) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string changed = stream;
            changed[i] = static_cast<char>(changed[i] ^ flip);
            const int result = expand(changed);
            EXPECT_TRUE(result == 0 || result == -11 || (result <= -21 && result >= -29))
                << i << ": " << result;
        }
    }
}

TEST(ZlibSolidDecompressor, HasTextsForItsCodes) {
    ZlibSolidDecompressor decompressor{DebugLog()};
    EXPECT_EQ(decompressor.errorText(-5), "output buffer is not big enough");
    EXPECT_EQ(decompressor.errorText(-4), "insufficient memory");
    EXPECT_EQ(decompressor.errorText(-3), "corrupted compressed data");
    EXPECT_EQ(decompressor.errorText(0), "unknown error");
    EXPECT_EQ(decompressor.errorText(-2), "unknown error");
}

// A codec without texts, as another format could have.
class TextlessDecompressor : public StripedSolidDecompressor {
public:
    using StripedSolidDecompressor::StripedSolidDecompressor;
    int decompressChunk(unsigned char*, std::uint32_t&, const unsigned char*, std::uint32_t) override {
        return -77;
    }
    std::optional<std::string_view> errorText(int) override { return std::nullopt; }
};

TEST(StripedSolidDecompressor, LogsTheCodeWhenThereIsNoText) {
    FakeConsole console;
    TextlessDecompressor decompressor{DebugLog(console)};
    const std::string stream = solidStream({"text"});
    SolidBlock out;
    EXPECT_EQ(decompressor.decompress(bytes(stream), static_cast<std::int64_t>(stream.size()), out),
              SolidResult::kUncompressFailed);
    EXPECT_EQ(console.lines().back(), "ERROR: Decompressor (chunk 0): Uncompressing data failed (size: " +
                                          std::to_string(stream.size() - 36) + " B; err: -77)");
}

}  // namespace
