#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "package/solid_format.h"

// Whether the records of the solid stream at the start of `stream` ask for so much memory that the fuzzer's
// own limit would end the run. The reader itself allows up to 2 GiB.
inline bool asksForTooMuchMemory(std::string_view stream) {
    constexpr std::uint64_t kMostBytes = 0x4000000;
    const auto* bytes = reinterpret_cast<const unsigned char*>(stream.data());
    if (stream.size() < SolidFormat::kHeaderSize) {
        return false;
    }
    const std::int32_t count = std::clamp(LittleEndian::readSigned(bytes + SolidFormat::kChunkCountOffset), 0,
                                          SolidFormat::kMaxChunks);
    std::uint64_t total = 0;
    for (std::int32_t i = 0; i < count && SolidFormat::totalHeaderSize(i + 1) <= stream.size(); ++i) {
        total += SolidChunk::decode(bytes + SolidFormat::totalHeaderSize(i)).uncompressedSize;
    }
    return total > kMostBytes;
}
