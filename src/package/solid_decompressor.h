#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "package/solid_data_cursor.h"
#include "package/solid_format.h"
#include "support/byte_progress.h"
#include "support/debug_log.h"

// The results of SolidDecompressor::decompress. The numbers appear in the debug log, and loading a package
// passes them on.
enum class SolidResult : int {
    kDone = 0,
    kTooShort = -11,         // less than the header with its records
    kBadVersion = -21,       // or a number of chunks outside 1 to 256
    kBadOffset = -22,        // a chunk's data would overlap the header
    kNegativeOffset = -23,   // in the output
    kOverlap = -24,          // two chunks share bytes
    kHoles = -25,            // the chunks don't cover the output from 0 on
    kOutOfMemory = -26,      // or more than 2,147,483,647 bytes of output
    kSeekFailed = -27,       // a chunk's data begins past the end of the stream
    kReadFailed = -28,       // a chunk's data ends past the end of the stream
    kUncompressFailed = -29  // zlib failed, or delivered another size than the record says
};

// Bytes in memory that belong to this object.
struct SolidBlock {
    std::unique_ptr<unsigned char[]> data;
    std::int32_t size = 0;
};

class SolidDecompressor {
public:
    SolidDecompressor() = default;
    SolidDecompressor(const SolidDecompressor&) = delete;
    SolidDecompressor& operator=(const SolidDecompressor&) = delete;
    virtual ~SolidDecompressor() = default;

    // Expands the stream in `data`, which may be longer than the stream. After a failure `outBlock` is empty.
    // Uses no thread but the caller's.
    virtual SolidResult decompress(const unsigned char* data, std::int64_t size, SolidBlock& outBlock) = 0;

    // Gets the bytes that were expanded.
    void showOn(ByteProgress progress) { progress_ = std::move(progress); }

protected:
    const ByteProgress& progress() const { return progress_; }

private:
    ByteProgress progress_;
};

// Walks the chunks of a stream. Everything that the header says is checked before the first byte is expanded.
class StripedSolidDecompressor : public SolidDecompressor {
public:
    explicit StripedSolidDecompressor(DebugLog debugLog);

    SolidResult decompress(const unsigned char* data, std::int64_t size, SolidBlock& outBlock) override;

    // Expands one chunk into `inOutSize` bytes of memory and stores the size delivered. Returns 0 or the code
    // of the codec.
    virtual int decompressChunk(unsigned char* destination, std::uint32_t& inOutSize,
                                const unsigned char* source, std::uint32_t sourceSize) = 0;
    // A text for a code of decompressChunk, if the codec has one.
    virtual std::optional<std::string_view> errorText(int code) = 0;

private:
    using Chunks = std::vector<SolidChunk>;

    SolidResult readHeader(SolidDataCursor& cursor, Chunks& outChunks);
    SolidResult checkChunks(const Chunks& chunks);
    SolidResult checkChunk(const Chunks& chunks, int index);
    SolidResult checkCoverage(const Chunks& chunks, std::int64_t& outTotal);
    SolidResult allocate(std::int64_t total, SolidBlock& outBlock);
    SolidResult expandChunks(SolidDataCursor& cursor, const Chunks& chunks, const SolidBlock& output);
    SolidResult expandChunk(SolidDataCursor& cursor, const SolidChunk& chunk, int index,
                            unsigned char* output);
    void reportUncompressFailure(const SolidChunk& chunk, int index, int code);

    DebugLog debugLog_;
};

class ZlibSolidDecompressor : public StripedSolidDecompressor {
public:
    using StripedSolidDecompressor::StripedSolidDecompressor;

    int decompressChunk(unsigned char* destination, std::uint32_t& inOutSize, const unsigned char* source,
                        std::uint32_t sourceSize) override;
    std::optional<std::string_view> errorText(int code) override;
};

// A decompressor for the stream whose first 20 bytes are at `header`. Null when they don't begin a solid
// stream of this version; that is not an error, since the historical form of a package has none.
std::unique_ptr<SolidDecompressor> createSolidDecompressor(const unsigned char* header,
                                                           const DebugLog& debugLog);
