#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "package/solid_data_cursor.h"
#include "package/solid_format.h"

class PConsole;

// The results of SolidDecompressor::decompress other than 0.
enum SolidError : int {
    kSolidTooShort = -11,         // less than the header with its records
    kSolidBadVersion = -21,       // or a number of chunks outside 1 to 256
    kSolidBadOffset = -22,        // a chunk's data would lie in the header
    kSolidNegativeOffset = -23,   // in the output
    kSolidOverlap = -24,          // two chunks share bytes
    kSolidHoles = -25,            // the chunks don't cover the output from 0 on
    kSolidOutOfMemory = -26,      // or more than 2,147,483,647 bytes of output
    kSolidSeekFailed = -27,       // a chunk's data begins behind the end of the stream
    kSolidReadFailed = -28,       // a chunk's data ends behind the end of the stream
    kSolidUncompressFailed = -29  // zlib failed, or gave another size than the record tells
};

class SolidDecompressor {
public:
    SolidDecompressor() = default;
    SolidDecompressor(const SolidDecompressor&) = delete;
    SolidDecompressor& operator=(const SolidDecompressor&) = delete;
    virtual ~SolidDecompressor() = default;

    // Expands the stream in `data`, which may be longer than the stream. Returns 0 or a SolidError.
    // `outBuffer` belongs to the caller; after a failure it is null and `outSize` 0. Runs on the calling
    // thread alone.
    virtual int decompress(const unsigned char* data, std::int64_t size,
                           std::unique_ptr<unsigned char[]>& outBuffer, std::int32_t& outSize) = 0;
    // Where failures are told; borrowed, may be null.
    virtual void setConsole(PConsole* console) = 0;
};

// Walks the chunks of a stream and checks all that its header says before a byte is expanded.
class StripedSolidDecompressor : public SolidDecompressor {
public:
    int decompress(const unsigned char* data, std::int64_t size, std::unique_ptr<unsigned char[]>& outBuffer,
                   std::int32_t& outSize) override;
    void setConsole(PConsole* console) override { console_ = console; }

    // Expands one chunk into the room of `inOutSize` bytes and stores the size delivered. 0 or the codec's
    // code.
    virtual int decompressChunk(unsigned char* destination, std::uint32_t& inOutSize,
                                const unsigned char* source, std::uint32_t sourceSize) = 0;
    // A text for a code of decompressChunk, or null.
    virtual const char* errorText(int code) = 0;

private:
    using Chunks = std::vector<SolidChunk>;

    int readHeader(SolidDataCursor& cursor, Chunks& outChunks);
    int checkChunks(const Chunks& chunks);
    int checkCoverage(const Chunks& chunks, std::int64_t& outTotal);
    int allocate(std::int64_t total, std::unique_ptr<unsigned char[]>& outBuffer);
    int expandChunks(SolidDataCursor& cursor, const Chunks& chunks, unsigned char* output);
    int expandChunk(SolidDataCursor& cursor, const SolidChunk& chunk, int index, unsigned char* output);
    void reportUncompressFailure(const SolidChunk& chunk, int index, int code);

    PConsole* console_ = nullptr;
};

class ZlibSolidDecompressor : public StripedSolidDecompressor {
public:
    int decompressChunk(unsigned char* destination, std::uint32_t& inOutSize, const unsigned char* source,
                        std::uint32_t sourceSize) override;
    const char* errorText(int code) override;
};

// A decompressor for the stream whose first 20 bytes are at `header`; null when no solid stream of this
// version stands there, which is no error: the historical form of a package has none.
std::unique_ptr<SolidDecompressor> createSolidDecompressor(const unsigned char* header);
