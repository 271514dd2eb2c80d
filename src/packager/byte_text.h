#pragma once

#include <cstddef>
#include <string>

// Texts of bytes.
namespace ByteText {

// Zero bytes up to a multiple of `alignment`, which isn't 0.
inline void pad(std::string& bytes, std::size_t alignment) {
    bytes.resize((bytes.size() + alignment - 1) / alignment * alignment);
}

}  // namespace ByteText
