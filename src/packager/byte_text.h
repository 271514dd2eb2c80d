#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Little-endian numbers at the end of a text of bytes.
namespace ByteText {

inline void append16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value);
    bytes += static_cast<char>(value >> 8U);
}

inline void append32(std::string& bytes, std::uint32_t value) {
    append16(bytes, value);
    append16(bytes, value >> 16U);
}

// The units of a UTF-16 text, without a terminator.
inline void appendWide(std::string& bytes, std::u16string_view text) {
    for (const char16_t unit : text) {
        append16(bytes, unit);
    }
}

// Zero bytes up to a multiple of `alignment`, which isn't 0.
inline void pad(std::string& bytes, std::size_t alignment) {
    bytes.resize((bytes.size() + alignment - 1) / alignment * alignment);
}

}  // namespace ByteText
