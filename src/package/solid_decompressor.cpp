#include "package/solid_decompressor.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "support/p_console.h"

namespace {

// Nothing reads it: the text must stand in the built image, where packaging tools look for it.
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

// Ranges that only touch don't overlap, but an empty range at the edge of another one does.
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

std::unique_ptr<SolidDecompressor> createSolidDecompressor(const unsigned char* header) {
    formatMark = "SupportsSolidZlib";
    if (std::memcmp(header, SolidFormat::kMagic, sizeof(SolidFormat::kMagic)) != 0 ||
        LittleEndian::readUnsigned(header + SolidFormat::kFormatIdOffset) != SolidFormat::kFormatId ||
        !isSupported(header)) {
        return nullptr;
    }
    return std::make_unique<ZlibSolidDecompressor>();
}

int StripedSolidDecompressor::decompress(const unsigned char* data, std::int64_t size,
                                         std::unique_ptr<unsigned char[]>& outBuffer, std::int32_t& outSize) {
    outBuffer.reset();
    outSize = 0;
    SolidDataCursor cursor(data, size);
    Chunks chunks;
    std::int64_t total = 0;
    int result = readHeader(cursor, chunks);
    if (result == 0) {
        result = checkChunks(chunks);
    }
    if (result == 0) {
        result = checkCoverage(chunks, total);
    }
    if (result == 0) {
        result = allocate(total, outBuffer);
    }
    if (result == 0) {
        result = expandChunks(cursor, chunks, outBuffer.get());
    }
    if (result != 0) {
        outBuffer.reset();
        return result;
    }
    outSize = static_cast<std::int32_t>(total);
    return 0;
}

int StripedSolidDecompressor::readHeader(SolidDataCursor& cursor, Chunks& outChunks) {
    unsigned char header[SolidFormat::kHeaderSize];
    if (cursor.read(header, sizeof(header)) != 0) {
        return kSolidTooShort;
    }
    if (!isSupported(header)) {
        return kSolidBadVersion;
    }
    const std::int32_t count = LittleEndian::readSigned(header + SolidFormat::kChunkCountOffset);
    for (std::int32_t i = 0; i < count; ++i) {
        unsigned char record[SolidFormat::kChunkSize];
        if (cursor.read(record, sizeof(record)) != 0) {
            return kSolidTooShort;
        }
        outChunks.push_back(SolidChunk::decode(record));
    }
    return 0;
}

// Compares every pair: with 256 chunks at most that is nothing beside the expansion.
int StripedSolidDecompressor::checkChunks(const Chunks& chunks) {
    const int count = static_cast<int>(chunks.size());
    const auto headerSize = static_cast<std::int64_t>(SolidFormat::totalHeaderSize(count));
    for (int i = 0; i < count; ++i) {
        const SolidChunk& chunk = chunks[static_cast<std::size_t>(i)];
        if (chunk.compressedOffset < headerSize) {
            if (console_ != nullptr) {
                console_->print(
                    "ERROR: Decompressor: Compressed offset is less than total header size "
                    "(corrupted header - %d)",
                    i);
            }
            return kSolidBadOffset;
        }
        if (chunk.uncompressedOffset < 0) {
            if (console_ != nullptr) {
                console_->print(
                    "ERROR: Decompressor: Uncompressed offset is negative (corrupted header - %d)", i);
            }
            return kSolidNegativeOffset;
        }
        for (int j = i + 1; j < count; ++j) {
            if (overlap(chunk, chunks[static_cast<std::size_t>(j)])) {
                if (console_ != nullptr) {
                    console_->print(
                        "ERROR: Decompressor: Overlapping offset/size ranges (corrupted header - %d %d)", i,
                        j);
                }
                return kSolidOverlap;
            }
        }
    }
    return 0;
}

int StripedSolidDecompressor::checkCoverage(const Chunks& chunks, std::int64_t& outTotal) {
    std::int64_t total = 0;
    std::int64_t accounted = 0;
    for (const SolidChunk& chunk : chunks) {
        total = std::max(total, uncompressedRange(chunk).end);
        accounted += chunk.uncompressedSize;
    }
    if (accounted != total) {
        if (console_ != nullptr) {
            console_->print(
                "ERROR: Decompressor: Accounted size (%d) differs from uncompressed size (%d) as "
                "reporterd (corrupted header)",
                static_cast<int>(accounted), static_cast<int>(total));
        }
        return kSolidHoles;
    }
    outTotal = total;
    return 0;
}

// The chunks are expanded from where they lie, so the output is all that is allocated.
int StripedSolidDecompressor::allocate(std::int64_t total, std::unique_ptr<unsigned char[]>& outBuffer) {
    if (console_ != nullptr) {
        console_->print("Decompressor: Allocating memory for uncompressed cabinet (%d B)",
                        static_cast<int>(total));
    }
    try {
        if (total > INT32_MAX) {
            throw std::bad_alloc();
        }
        outBuffer.reset(new unsigned char[static_cast<std::size_t>(total)]);
    } catch (const std::bad_alloc& failure) {
        if (console_ != nullptr) {
            console_->print(
                "ERROR: Decompressor: Failed to allocate memory for the uncompressed cabinet (%s)",
                failure.what());
        }
        return kSolidOutOfMemory;
    }
    return 0;
}

int StripedSolidDecompressor::expandChunks(SolidDataCursor& cursor, const Chunks& chunks,
                                           unsigned char* output) {
    const int count = static_cast<int>(chunks.size());
    if (console_ != nullptr) {
        console_->print("Decompressor: Starting decompression ... (%d chunks)", count);
    }
    for (int i = 0; i < count; ++i) {
        const int result = expandChunk(cursor, chunks[static_cast<std::size_t>(i)], i, output);
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

int StripedSolidDecompressor::expandChunk(SolidDataCursor& cursor, const SolidChunk& chunk, int index,
                                          unsigned char* output) {
    int status = cursor.seekRelative(chunk.compressedOffset - cursor.position());
    if (status != 0) {
        if (console_ != nullptr) {
            console_->print("ERROR: Decompressor (chunk %d): Seeking compressed offset failed (Error: %d)",
                            index, status);
        }
        return kSolidSeekFailed;
    }
    const unsigned char* source = nullptr;
    status = cursor.readInPlace(chunk.compressedSize, source);
    if (status != 0) {
        if (console_ != nullptr) {
            console_->print("ERROR: Decompressor (chunk %d): Reading compressed data failed (Error: %d)",
                            index, status);
        }
        return kSolidReadFailed;
    }
    std::uint32_t delivered = chunk.uncompressedSize;
    status = decompressChunk(output + chunk.uncompressedOffset, delivered, source, chunk.compressedSize);
    if (status != 0 || delivered != chunk.uncompressedSize) {
        reportUncompressFailure(chunk, index, status);
        return kSolidUncompressFailed;
    }
    return 0;
}

void StripedSolidDecompressor::reportUncompressFailure(const SolidChunk& chunk, int index, int code) {
    if (console_ == nullptr) {
        return;
    }
    const int size = static_cast<int>(chunk.compressedSize);
    const char* text = errorText(code);
    if (text != nullptr) {
        console_->print("ERROR: Decompressor (chunk %d): Uncompressing data failed (size: %d B; msg: %s)",
                        index, size, text);
    } else {
        console_->print("ERROR: Decompressor (chunk %d): Uncompressing data failed (size: %d B; err: %d)",
                        index, size, code);
    }
}

int ZlibSolidDecompressor::decompressChunk(unsigned char* destination, std::uint32_t& inOutSize,
                                           const unsigned char* source, std::uint32_t sourceSize) {
    uLongf delivered = inOutSize;
    const int code = uncompress(destination, &delivered, source, sourceSize);
    inOutSize = static_cast<std::uint32_t>(delivered);
    return code;
}

const char* ZlibSolidDecompressor::errorText(int code) {
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
