#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/digest.h"

using Md5Digest = std::array<std::uint8_t, 16>;

// The MD5 digest of bytes that come piece by piece.
class Md5 {
public:
    void update(const void* data, std::size_t size) { context_.update(data, size); }
    // Ends the digest; the object can't be updated any more.
    Md5Digest finish() { return context_.finish(); }

private:
    platform::Md5Context context_;
};

// The digest of one block.
Md5Digest md5Of(const void* data, std::size_t size);

// 32 digits of base 16, the letters small.
std::string md5Text(const Md5Digest& digest);
