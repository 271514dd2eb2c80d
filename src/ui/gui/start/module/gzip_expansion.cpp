#include "ui/gui/start/module/gzip_expansion.h"

#include <zlib.h>

#include <climits>
#include <cstdint>

namespace {

constexpr int kGzip = 16 + MAX_WBITS;
// The format ends with the length of the content, little-endian.
constexpr std::size_t kLengthBytes = 4;
// Deflate makes nothing smaller than this part of itself.
constexpr std::size_t kMaxExpansion = 1032;

std::size_t statedLength(std::string_view file) {
    std::size_t length = 0;
    for (std::size_t i = 1; i <= kLengthBytes; ++i) {
        length = length << 8U | static_cast<std::uint8_t>(file[file.size() - i]);
    }
    return length;
}

}  // namespace

bool expandGzip(std::string_view file, std::string& outContent) {
    outContent.clear();
    if (file.size() < kLengthBytes || file.size() > INT_MAX ||
        statedLength(file) > file.size() * kMaxExpansion) {
        return false;
    }
    z_stream stream{};
    if (inflateInit2(&stream, kGzip) != Z_OK) {
        return false;
    }
    outContent.resize(statedLength(file));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(file.data()));
    stream.avail_in = static_cast<uInt>(file.size());
    stream.next_out = reinterpret_cast<Bytef*>(outContent.data());
    stream.avail_out = static_cast<uInt>(outContent.size());
    const bool isWhole =
        inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_out == 0 && stream.avail_in == 0;
    inflateEnd(&stream);
    if (!isWhole) {
        outContent.clear();
    }
    return isWhole;
}
