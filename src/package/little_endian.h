#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers of the file formats: little-endian, at any address. The one place that knows how they are coded.
namespace LittleEndian {

inline std::uint32_t readUnsigned(const unsigned char* from) {
    return static_cast<std::uint32_t>(from[0]) | static_cast<std::uint32_t>(from[1]) << 8 |
           static_cast<std::uint32_t>(from[2]) << 16 | static_cast<std::uint32_t>(from[3]) << 24;
}

inline std::uint16_t readUnsigned16(const unsigned char* from) {
    return static_cast<std::uint16_t>(from[0] | from[1] << 8);
}

inline std::uint64_t readUnsigned64(const unsigned char* from) {
    return readUnsigned(from) | static_cast<std::uint64_t>(readUnsigned(from + 4)) << 32;
}

inline std::int32_t readSigned(const unsigned char* from) {
    return static_cast<std::int32_t>(readUnsigned(from));
}

inline std::int64_t readSigned64(const unsigned char* from) {
    return static_cast<std::int64_t>(readUnsigned64(from));
}

inline void writeUnsigned(unsigned char* to, std::uint32_t value) {
    to[0] = static_cast<unsigned char>(value);
    to[1] = static_cast<unsigned char>(value >> 8);
    to[2] = static_cast<unsigned char>(value >> 16);
    to[3] = static_cast<unsigned char>(value >> 24);
}

inline void writeSigned(unsigned char* to, std::int32_t value) {
    writeUnsigned(to, static_cast<std::uint32_t>(value));
}

inline void writeSigned64(unsigned char* to, std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    writeUnsigned(to, static_cast<std::uint32_t>(bits));
    writeUnsigned(to + 4, static_cast<std::uint32_t>(bits >> 32));
}

// At the end of a text of bytes; of a number larger than that, what fits.
inline void append16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value);
    bytes += static_cast<char>(value >> 8);
}

inline void append32(std::string& bytes, std::uint32_t value) {
    append16(bytes, value);
    append16(bytes, value >> 16);
}

// The units of a UTF-16 text, without a terminator.
inline void appendWide(std::string& bytes, std::u16string_view text) {
    for (const char16_t unit : text) {
        append16(bytes, unit);
    }
}

}  // namespace LittleEndian
