#pragma once

#include <cstddef>
#include <cstdint>

#include "package/little_endian.h"

// The bytes of the solid stream, shared by reader and writer. solid_format.md says what they mean.
namespace SolidFormat {

inline constexpr char kMagic[8] = "SolidHD";  // its terminator is part of it
inline constexpr std::uint32_t kFormatId = 100;
inline constexpr std::uint32_t kVersion = 0x20121111;  // a date in hexadecimal digits
inline constexpr std::int32_t kMaxChunks = 256;

// Offsets within the header.
inline constexpr std::size_t kFormatIdOffset = 8;
inline constexpr std::size_t kVersionOffset = 12;
inline constexpr std::size_t kChunkCountOffset = 16;
inline constexpr std::size_t kHeaderSize = 20;

// Offsets within a chunk record.
inline constexpr std::size_t kUncompressedOffsetOffset = 0;
inline constexpr std::size_t kUncompressedSizeOffset = 4;
inline constexpr std::size_t kCompressedOffsetOffset = 8;
inline constexpr std::size_t kCompressedSizeOffset = 12;
inline constexpr std::size_t kChunkSize = 16;

static_assert(sizeof(kMagic) == kFormatIdOffset);
static_assert(kHeaderSize == kChunkCountOffset + 4);
static_assert(kChunkSize == kCompressedSizeOffset + 4);
static_assert(kVersion == 538054929);

// The header with all its records.
inline constexpr std::size_t totalHeaderSize(std::int32_t chunkCount) {
    return kHeaderSize + kChunkSize * static_cast<std::size_t>(chunkCount);
}

}  // namespace SolidFormat

// One chunk: an independent zlib stream, and where its data is.
struct SolidChunk {
    std::int32_t uncompressedOffset = 0;
    std::uint32_t uncompressedSize = 0;
    std::int32_t compressedOffset = 0;  // from the start of the stream
    std::uint32_t compressedSize = 0;

    static SolidChunk decode(const unsigned char* record) {
        return {LittleEndian::readSigned(record + SolidFormat::kUncompressedOffsetOffset),
                LittleEndian::readUnsigned(record + SolidFormat::kUncompressedSizeOffset),
                LittleEndian::readSigned(record + SolidFormat::kCompressedOffsetOffset),
                LittleEndian::readUnsigned(record + SolidFormat::kCompressedSizeOffset)};
    }
    void encode(unsigned char* record) const {
        LittleEndian::writeSigned(record + SolidFormat::kUncompressedOffsetOffset, uncompressedOffset);
        LittleEndian::writeUnsigned(record + SolidFormat::kUncompressedSizeOffset, uncompressedSize);
        LittleEndian::writeSigned(record + SolidFormat::kCompressedOffsetOffset, compressedOffset);
        LittleEndian::writeUnsigned(record + SolidFormat::kCompressedSizeOffset, compressedSize);
    }
};
