#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <zlib.h>

#include "package/cabinet_format.h"
#include "package/little_endian.h"
#include "package/package_layout.h"
#include "package/solid_format.h"

// Packages put together byte by byte, independently of the writer.
namespace PackageBytes {

inline unsigned char* bytesOf(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

inline void setNumber(std::string& bytes, std::size_t offset, std::uint32_t value) {
    LittleEndian::writeUnsigned(bytesOf(bytes) + offset, value);
}

inline std::uint32_t getNumber(const std::string& bytes, std::size_t offset) {
    return LittleEndian::readUnsigned(reinterpret_cast<const unsigned char*>(bytes.data()) + offset);
}

inline std::string leadBlock(std::uint32_t payloadSize = 0, std::uint32_t count = 0) {
    std::string block(64, '\0');
    setNumber(block, 0, 0x63276327);
    setNumber(block, 4, 0x75092612);
    setNumber(block, 8, 0x78011813);
    setNumber(block, 12, payloadSize);
    setNumber(block, 16, payloadSize);
    setNumber(block, 20, count);
    return block;
}

inline std::string entryHeader(std::string_view name, std::string_view alias, std::uint32_t fileSize,
                               std::uint32_t storedSize, std::string_view digest = "0123456789abcdef",
                               std::uint32_t magic = 0x63270010) {
    std::string header(608, '\0');
    setNumber(header, 0, magic);
    setNumber(header, 4, fileSize);
    setNumber(header, 8, storedSize);
    std::memcpy(header.data() + 16, digest.data(), digest.size());
    std::memcpy(header.data() + 32, name.data(), name.size());
    std::memcpy(header.data() + 332, alias.data(), alias.size());
    return header;
}

inline std::string entry(std::string_view alias, std::string_view content) {
    const auto size = static_cast<std::uint32_t>(content.size());
    const Md5Digest digest = md5Of(content.data(), content.size());
    return entryHeader(alias, alias, size, size,
                       std::string_view(reinterpret_cast<const char*>(digest.data()), digest.size())) +
           std::string(content);
}

inline std::string endRecord() {
    return entryHeader("", "", 0, 0, std::string_view("\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0x63270003);
}

inline std::string deflated(std::string_view data) {
    uLongf size = compressBound(static_cast<uLong>(data.size()));
    std::string out(size, '\0');
    compress2(bytesOf(out), &size, reinterpret_cast<const Bytef*>(data.data()),
              static_cast<uLong>(data.size()), 9);
    out.resize(size);
    return out;
}

inline std::string solidHeader(std::int32_t chunkCount) {
    std::string header("SolidHD\0", 8);
    header.resize(20);
    setNumber(header, 8, 100);
    setNumber(header, 12, 0x20121111);
    setNumber(header, 16, static_cast<std::uint32_t>(chunkCount));
    return header;
}

inline std::string chunkRecord(const SolidChunk& chunk) {
    std::string record(16, '\0');
    chunk.encode(bytesOf(record));
    return record;
}

// A stream whose chunks hold these pieces, in this order.
inline std::string solidStream(const std::vector<std::string>& pieces) {
    std::string stream = solidHeader(static_cast<std::int32_t>(pieces.size()));
    std::string data;
    std::int32_t position = 0;
    for (const std::string& piece : pieces) {
        const std::string chunk = deflated(piece);
        stream += chunkRecord({position, static_cast<std::uint32_t>(piece.size()),
                               static_cast<std::int32_t>(20 + 16 * pieces.size() + data.size()),
                               static_cast<std::uint32_t>(chunk.size())});
        position += static_cast<std::int32_t>(piece.size());
        data += chunk;
    }
    return stream + data;
}

// A package in a file of its own, of one chunk.
inline std::string package(std::string_view cabinet) {
    return leadBlock() + solidStream({std::string(cabinet)});
}

}  // namespace PackageBytes
