#include "checking/picture_header.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace {

using namespace std::string_view_literals;

// That of the pictures of a window.
constexpr std::uint64_t kMostSide = 6399;
// Encoders write a few dozen parts before the pixels.
constexpr int kMostParts = 1000;

constexpr std::string_view kPngStart = "\x89PNG"sv;
constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n"sv;
constexpr std::string_view kJpegStart = "\xFF\xD8"sv;
constexpr std::string_view kCut = "ends within its header";

std::uint64_t byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        number = number << 8U | byteAt(bytes, i);
    }
    return number;
}

std::uint64_t littleEndian(std::string_view bytes) {
    std::string reversed(bytes.rbegin(), bytes.rend());
    return bigEndian(reversed);
}

std::string sizeFault(std::uint64_t width, std::uint64_t height) {
    const bool isPossible = width >= 1 && width <= kMostSide && height >= 1 && height <= kMostSide;
    return isPossible ? std::string()
                      : "has " + std::to_string(width) + " by " + std::to_string(height) +
                            " pixels, and each side must have 1 to " + std::to_string(kMostSide);
}

namespace png {

constexpr std::uint32_t kHeadSize = 33;  // signature and first chunk
constexpr std::uint32_t kChunkFrame = 12;
constexpr std::uint64_t kGray = 0;
constexpr std::uint64_t kGrayWithAlpha = 4;
constexpr std::string_view kGrayAlphaFault = "is in shades of grey with transparency, which isn't shown";

// Whether a chunk before the pixels says which shade is transparent.
bool hasTransparentShade(const ByteReader& read) {
    std::int64_t offset = kHeadSize;
    for (int i = 0; i < kMostParts; ++i) {
        const std::string head = read(offset, 8);
        const std::string_view type = std::string_view(head).substr(std::min<std::size_t>(4, head.size()));
        if (type.size() < 4 || type == "IDAT" || type == "tRNS") {
            return type == "tRNS";
        }
        offset += static_cast<std::int64_t>(bigEndian(std::string_view(head).substr(0, 4))) + kChunkFrame;
    }
    return false;
}

std::string fault(const ByteReader& read) {
    const std::string head = read(0, kHeadSize);
    const std::string_view bytes = head;
    if (!bytes.starts_with(kPngSignature)) {
        return "begins as a PNG and is none: it may have been changed as a text";
    }
    if (bytes.size() < kHeadSize || bytes.substr(12, 4) != "IHDR") {
        return std::string(kCut);
    }
    std::string fault = sizeFault(bigEndian(bytes.substr(16, 4)), bigEndian(bytes.substr(20, 4)));
    const std::uint64_t colours = byteAt(bytes, 25);
    if (fault.empty() && (colours == kGrayWithAlpha || (colours == kGray && hasTransparentShade(read)))) {
        fault = kGrayAlphaFault;
    }
    return fault;
}

}  // namespace png

namespace jpeg {

// ITU-T T.81, table B.1.
constexpr std::uint64_t kStartOfScan = 0xDA;
constexpr std::uint64_t kEndOfImage = 0xD9;
constexpr std::uint64_t kNoFrames[] = {0xC4, 0xC8, 0xCC};
constexpr std::uint64_t kReadableFrames[] = {0xC0, 0xC1, 0xC2, 0xC9, 0xCA};

template <std::size_t Count>
bool contains(const std::uint64_t (&list)[Count], std::uint64_t marker) {
    return std::ranges::find(list, marker) != std::end(list);
}

bool isFrame(std::uint64_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && !contains(kNoFrames, marker);
}

bool isAlone(std::uint64_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7);
}

std::string frameFault(std::uint64_t marker, std::string_view frame) {
    constexpr std::size_t kFrameSize = 6;
    if (frame.size() < kFrameSize) {
        return std::string(kCut);
    }
    if (!contains(kReadableFrames, marker)) {
        return "is a JPEG of a kind that isn't read";
    }
    const std::uint64_t channels = byteAt(frame, 5);
    if (channels != 1 && channels != 3 && channels != 4) {
        return "is a JPEG with " + std::to_string(channels) + " channels, which isn't shown";
    }
    return sizeFault(bigEndian(frame.substr(3, 2)), bigEndian(frame.substr(1, 2)));
}

std::string fault(const ByteReader& read) {
    std::int64_t offset = kJpegStart.size();
    for (int i = 0; i < kMostParts; ++i) {
        const std::string part = read(offset, 10);
        const std::string_view bytes = part;
        if (bytes.size() < 4) {
            return std::string(kCut);
        }
        const std::uint64_t marker = byteAt(bytes, 1);
        if (byteAt(bytes, 0) != 0xFF || marker == kStartOfScan || marker == kEndOfImage) {
            return "is a JPEG without a frame, or a damaged one";
        }
        if (isFrame(marker)) {
            return frameFault(marker, bytes.substr(4));
        }
        const bool isFill = marker == 0xFF;
        const bool hasLength = !isFill && !isAlone(marker);
        offset += isFill ? 1 : 2;
        offset += hasLength ? static_cast<std::int64_t>(bigEndian(bytes.substr(2, 2))) : 0;
    }
    return {};
}

}  // namespace jpeg

// Without a signature whatever is no picture is found by its sides or its length.
std::string rawFault(const ByteReader& read, std::int64_t size) {
    constexpr std::uint32_t kHeadSize = 8;
    constexpr std::uint64_t kPixelSize = 4;
    const std::string head = read(0, kHeadSize);
    const std::string_view bytes = head;
    if (bytes.size() == kHeadSize) {
        const std::uint64_t width = littleEndian(bytes.substr(0, 4));
        const std::uint64_t height = littleEndian(bytes.substr(4, 4));
        const std::uint64_t needed = kHeadSize + width * height * kPixelSize;
        if (sizeFault(width, height).empty() && needed <= static_cast<std::uint64_t>(size)) {
            return {};
        }
    }
    return "is neither a PNG nor a JPEG nor a raw picture";
}

}  // namespace

std::string pictureFault(const ByteReader& read, std::int64_t size) {
    const std::string start = read(0, 4);
    if (start == kPngStart) {
        return png::fault(read);
    }
    return start.starts_with(kJpegStart) ? jpeg::fault(read) : rawFault(read, size);
}
