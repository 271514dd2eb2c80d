#include "package/solid_decompressor.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <utility>

namespace {

// Nothing reads it. Packaging tools look for this text in the built image, so the compiler must not drop it.
const char* volatile formatMark;

// A range of bytes, [start, end).
struct Range {
    std::int64_t start;
    std::int64_t end;
};

Range compressedRange(const SolidChunk& chunk) {
    return {chunk.compressedOffset, static_cast<std::int64_t>(chunk.compressedOffset) + chunk.compressedSize};
}

Range uncompressedRange(const SolidChunk& chunk) {
    return {chunk.uncompressedOffset,
            static_cast<std::int64_t>(chunk.uncompressedOffset) + chunk.uncompressedSize};
}

bool startsWithin(const Range& a, const Range& b) {
    return a.start >= b.start && a.start < b.end;
}

bool endsWithin(const Range& a, const Range& b) {
    return a.end > b.start && a.end <= b.end;
}

// Ranges that only touch don't overlap, but an empty range at the edge of another one counts as overlapping:
// no reader accepts such a stream, and that must stay so.
bool overlap(const Range& a, const Range& b) {
    return startsWithin(a, b) || endsWithin(a, b) || startsWithin(b, a) || endsWithin(b, a);
}

bool overlap(const SolidChunk& a, const SolidChunk& b) {
    return overlap(compressedRange(a), compressedRange(b)) ||
           overlap(uncompressedRange(a), uncompressedRange(b));
}

bool isSupported(const unsigned char* header) {
    const std::int32_t chunkCount = LittleEndian::readSigned(header + SolidFormat::kChunkCountOffset);
    return LittleEndian::readUnsigned(header + SolidFormat::kVersionOffset) == SolidFormat::kVersion &&
           chunkCount >= 1 && chunkCount <= SolidFormat::kMaxChunks;
}

}  // namespace

StripedSolidDecompressor::StripedSolidDecompressor(DebugLog debugLog) : debugLog_(std::move(debugLog)) {}

SolidResult StripedSolidDecompressor::decompress(const unsigned char* data, std::int64_t size,
                                                 SolidBlock& outBlock) {
    outBlock = {};
    SolidDataCursor cursor(data, size);
    Chunks chunks;
    std::int64_t total = 0;
    SolidBlock block;
    SolidResult result = readHeader(cursor, chunks);
    if (result == SolidResult::kDone) {
        result = checkChunks(chunks);
    }
    if (result == SolidResult::kDone) {
        result = checkCoverage(chunks, total);
    }
    if (result == SolidResult::kDone) {
        result = allocate(total, block);
    }
    if (result == SolidResult::kDone) {
        result = expandChunks(cursor, chunks, block);
    }
    if (result == SolidResult::kDone) {
        outBlock = std::move(block);
    }
    return result;
}

SolidResult StripedSolidDecompressor::readHeader(SolidDataCursor& cursor, Chunks& outChunks) {
    unsigned char header[SolidFormat::kHeaderSize];
    if (cursor.read(header, sizeof(header)) != CursorResult::kDone) {
        return SolidResult::kTooShort;
    }
    if (!isSupported(header)) {
        return SolidResult::kBadVersion;
    }
    const std::int32_t count = LittleEndian::readSigned(header + SolidFormat::kChunkCountOffset);
    for (std::int32_t i = 0; i < count; ++i) {
        unsigned char record[SolidFormat::kChunkSize];
        if (cursor.read(record, sizeof(record)) != CursorResult::kDone) {
            return SolidResult::kTooShort;
        }
        outChunks.push_back(SolidChunk::decode(record));
    }
    return SolidResult::kDone;
}

SolidResult StripedSolidDecompressor::checkChunks(const Chunks& chunks) {
    for (int i = 0; i < static_cast<int>(chunks.size()); ++i) {
        const SolidResult result = checkChunk(chunks, i);
        if (result != SolidResult::kDone) {
            return result;
        }
    }
    return SolidResult::kDone;
}

// Compares the chunk with each one after it. There are 256 chunks at most, so that costs nothing compared
// with the expansion.
SolidResult StripedSolidDecompressor::checkChunk(const Chunks& chunks, int index) {
    const int count = static_cast<int>(chunks.size());
    const SolidChunk& chunk = chunks[static_cast<std::size_t>(index)];
    if (chunk.compressedOffset < static_cast<std::int64_t>(SolidFormat::totalHeaderSize(count))) {
        debugLog_.print(
            "ERROR: Decompressor: Compressed offset is less than total header size (corrupted header - %d)",
            index);
        return SolidResult::kBadOffset;
    }
    if (chunk.uncompressedOffset < 0) {
        debugLog_.print("ERROR: Decompressor: Uncompressed offset is negative (corrupted header - %d)",
                        index);
        return SolidResult::kNegativeOffset;
    }
    for (int other = index + 1; other < count; ++other) {
        if (overlap(chunk, chunks[static_cast<std::size_t>(other)])) {
            debugLog_.print("ERROR: Decompressor: Overlapping offset/size ranges (corrupted header - %d %d)",
                            index, other);
            return SolidResult::kOverlap;
        }
    }
    return SolidResult::kDone;
}

SolidResult StripedSolidDecompressor::checkCoverage(const Chunks& chunks, std::int64_t& outTotal) {
    std::int64_t total = 0;
    std::int64_t accounted = 0;
    for (const SolidChunk& chunk : chunks) {
        total = std::max(total, uncompressedRange(chunk).end);
        accounted += chunk.uncompressedSize;
    }
    if (accounted != total) {
        debugLog_.print(
            "ERROR: Decompressor: Accounted size (%d) differs from uncompressed size (%d) as "
            "reporterd (corrupted header)",
            static_cast<int>(accounted), static_cast<int>(total));
        return SolidResult::kHoles;
    }
    outTotal = total;
    return SolidResult::kDone;
}

// The chunks are expanded straight from the stream, so the output is all that is allocated.
SolidResult StripedSolidDecompressor::allocate(std::int64_t total, SolidBlock& outBlock) {
    debugLog_.print("Decompressor: Allocating memory for uncompressed cabinet (%d B)",
                    static_cast<int>(total));
    try {
        if (total > INT32_MAX) {
            throw std::bad_alloc();
        }
        outBlock.data.reset(new unsigned char[static_cast<std::size_t>(total)]);
        outBlock.size = static_cast<std::int32_t>(total);
    } catch (const std::bad_alloc& failure) {
        debugLog_.print("ERROR: Decompressor: Failed to allocate memory for the uncompressed cabinet (%s)",
                        failure.what());
        return SolidResult::kOutOfMemory;
    }
    return SolidResult::kDone;
}

SolidResult StripedSolidDecompressor::expandChunks(SolidDataCursor& cursor, const Chunks& chunks,
                                                   const SolidBlock& output) {
    const int count = static_cast<int>(chunks.size());
    debugLog_.print("Decompressor: Starting decompression ... (%d chunks)", count);
    std::int64_t expanded = 0;
    for (int i = 0; i < count; ++i) {
        const SolidChunk& chunk = chunks[static_cast<std::size_t>(i)];
        const SolidResult result = expandChunk(cursor, chunk, i, output.data.get());
        if (result != SolidResult::kDone) {
            return result;
        }
        expanded += chunk.uncompressedSize;
        if (progress()) {
            progress()(expanded, output.size);
        }
    }
    return SolidResult::kDone;
}

SolidResult StripedSolidDecompressor::expandChunk(SolidDataCursor& cursor, const SolidChunk& chunk, int index,
                                                  unsigned char* output) {
    CursorResult status = cursor.seekRelative(chunk.compressedOffset - cursor.position());
    if (status != CursorResult::kDone) {
        debugLog_.print("ERROR: Decompressor (chunk %d): Seeking compressed offset failed (Error: %d)", index,
                        static_cast<int>(status));
        return SolidResult::kSeekFailed;
    }
    const unsigned char* source = nullptr;
    status = cursor.readInPlace(chunk.compressedSize, source);
    if (status != CursorResult::kDone) {
        debugLog_.print("ERROR: Decompressor (chunk %d): Reading compressed data failed (Error: %d)", index,
                        static_cast<int>(status));
        return SolidResult::kReadFailed;
    }
    std::uint32_t delivered = chunk.uncompressedSize;
    const int code =
        decompressChunk(output + chunk.uncompressedOffset, delivered, source, chunk.compressedSize);
    if (code != 0 || delivered != chunk.uncompressedSize) {
        reportUncompressFailure(chunk, index, code);
        return SolidResult::kUncompressFailed;
    }
    return SolidResult::kDone;
}

void StripedSolidDecompressor::reportUncompressFailure(const SolidChunk& chunk, int index, int code) {
    const std::optional<std::string_view> text = errorText(code);
    const std::string reason =
        text ? "msg: " + std::string(*text) : std::string("err: ") + std::to_string(code);
    debugLog_.line("ERROR: Decompressor (chunk " + std::to_string(index) +
                   "): Uncompressing data failed (size: " +
                   std::to_string(static_cast<int>(chunk.compressedSize)) + " B; " + reason + ")");
}

int ZlibSolidDecompressor::decompressChunk(unsigned char* destination, std::uint32_t& inOutSize,
                                           const unsigned char* source, std::uint32_t sourceSize) {
    uLongf delivered = inOutSize;
    const int code = uncompress(destination, &delivered, source, sourceSize);
    inOutSize = static_cast<std::uint32_t>(delivered);
    return code;
}

std::optional<std::string_view> ZlibSolidDecompressor::errorText(int code) {
    switch (code) {
        case Z_BUF_ERROR:
            return "output buffer is not big enough";
        case Z_MEM_ERROR:
            return "insufficient memory";
        case Z_DATA_ERROR:
            return "corrupted compressed data";
        default:
            return "unknown error";
    }
}

std::unique_ptr<SolidDecompressor> createSolidDecompressor(const unsigned char* header,
                                                           const DebugLog& debugLog) {
    formatMark = "SupportsSolidZlib";
    if (std::memcmp(header, SolidFormat::kMagic, sizeof(SolidFormat::kMagic)) != 0 ||
        LittleEndian::readUnsigned(header + SolidFormat::kFormatIdOffset) != SolidFormat::kFormatId ||
        !isSupported(header)) {
        return nullptr;
    }
    return std::make_unique<ZlibSolidDecompressor>(debugLog);
}
