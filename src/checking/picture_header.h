#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Gives at most `count` bytes of a file from `offset` on; fewer at its end, none after a failure.
using ByteReader = std::function<std::string(std::int64_t offset, std::uint32_t count)>;

// Why a window wouldn't show a picture, as far as its header says: a few words that follow its name. Empty
// when nothing speaks against it. `size` is that of the file in bytes. Pixels are neither read nor decoded.
std::string pictureFault(const ByteReader& read, std::int64_t size);
