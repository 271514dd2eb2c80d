#include "checking/icon_file.h"

#include <algorithm>
#include <iterator>

#include "checking/icon_file_format.h"
#include "package/little_endian.h"

namespace {

using namespace IconFileFormat;
using namespace std::string_view_literals;

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n"sv;
constexpr std::uint32_t kShownSizes[] = {16, 32, 48, 256};

const unsigned char* bytesOf(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::uint32_t bigEndian(std::string_view bytes) {
    const unsigned char* const at = bytesOf(bytes);
    return static_cast<std::uint32_t>(at[0]) << 24U | static_cast<std::uint32_t>(at[1]) << 16U |
           static_cast<std::uint32_t>(at[2]) << 8U | at[3];
}

// The fault of a picture, and what it says of itself.
struct Read {
    IconPicture picture;
    std::string fault;
};

Read faulty(std::string fault) {
    return {{}, std::move(fault)};
}

bool isSide(std::uint32_t side) {
    return side >= 1 && side <= kMostSide;
}

namespace png {

constexpr std::size_t kChunkFrame = 12;  // length, type and checksum
constexpr std::size_t kHeaderLength = 13;

// From the type of the colours and the bits of each channel.
std::uint16_t bitsOf(std::uint32_t colours, std::uint32_t depth) {
    struct Row {
        std::uint32_t colours;
        std::uint32_t channels;
    };
    constexpr Row kRows[] = {{0, 1}, {2, 3}, {3, 1}, {4, 2}, {6, 4}};
    const Row* const row = std::ranges::find(kRows, colours, &Row::colours);
    const bool isDepth = depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
    return row == std::end(kRows) || !isDepth ? 0 : static_cast<std::uint16_t>(row->channels * depth);
}

// Whether the chunks fill the file to its end and have pixels among them.
bool isWhole(std::string_view chunks) {
    bool hasPixels = false;
    while (chunks.size() >= kChunkFrame) {
        const std::size_t length = bigEndian(chunks);
        if (length > chunks.size() - kChunkFrame) {
            return false;
        }
        const std::string_view type = chunks.substr(4, 4);
        chunks.remove_prefix(length + kChunkFrame);
        if (type == "IEND") {
            return hasPixels && chunks.empty();
        }
        hasPixels = hasPixels || type == "IDAT";
    }
    return false;
}

Read read(std::string_view bytes) {
    const std::string_view chunks = bytes.substr(kPngSignature.size());
    if (chunks.size() < kChunkFrame + kHeaderLength || bigEndian(chunks) != kHeaderLength ||
        chunks.substr(4, 4) != "IHDR" || !isWhole(chunks)) {
        return faulty("has a damaged PNG");
    }
    const unsigned char* const header = bytesOf(chunks) + 8;
    const IconPicture picture{bigEndian(chunks.substr(8)), bigEndian(chunks.substr(12)),
                              bitsOf(header[9], header[8]), bytes};
    if (picture.bits == 0) {
        return faulty("has a damaged PNG");
    }
    if (!isSide(picture.width) || !isSide(picture.height)) {
        return faulty("has a PNG of " + std::to_string(picture.width) + " by " +
                      std::to_string(picture.height) + " pixels, and each side must have 1 to 256");
    }
    return {picture, {}};
}

}  // namespace png

namespace bitmap {

std::size_t rowSize(std::size_t width, std::size_t bits) {
    return (width * bits + 31) / 32 * 4;
}

Read read(std::string_view bytes) {
    if (bytes.size() < kBitmapHeaderSize ||
        LittleEndian::readUnsigned(bytesOf(bytes) + kBitmapHeader) != kBitmapHeaderSize) {
        return faulty("has a picture that is neither PNG nor a bitmap");
    }
    const std::uint32_t width = LittleEndian::readUnsigned(bytesOf(bytes) + kBitmapWidth);
    const std::uint32_t bothHeights = LittleEndian::readUnsigned(bytesOf(bytes) + kBitmapHeight);
    const std::uint16_t bits = LittleEndian::readUnsigned16(bytesOf(bytes) + kBitmapBits);
    constexpr std::uint16_t kDepths[] = {1, 4, 8, 24, 32};
    if (!isSide(width) || bothHeights % 2 != 0 || !isSide(bothHeights / 2) ||
        std::ranges::find(kDepths, bits) == std::end(kDepths) ||
        LittleEndian::readUnsigned(bytesOf(bytes) + kBitmapCompression) != 0) {
        return faulty("has a bitmap of a kind that icons don't have");
    }
    const std::uint32_t height = bothHeights / 2;
    const std::uint32_t given = LittleEndian::readUnsigned(bytesOf(bytes) + kBitmapColours);
    const std::uint32_t most = bits <= 8 ? 1U << bits : 0;
    if (given > std::max(most, 256U)) {
        return faulty("has a bitmap of a kind that icons don't have");
    }
    const std::size_t palette = std::size_t{given == 0 ? most : given} * 4;
    const std::size_t needed =
        kBitmapHeaderSize + palette + height * (rowSize(width, bits) + rowSize(width, 1));
    if (bytes.size() < needed) {
        return faulty("has a bitmap that is cut");
    }
    return {{width, height, bits, bytes}, {}};
}

}  // namespace bitmap

Read readPicture(std::string_view bytes) {
    return bytes.starts_with(kPngSignature) ? png::read(bytes) : bitmap::read(bytes);
}

std::uint32_t sideOf(unsigned char side) {
    return side == 0 ? kMostSide : side;
}

// The picture of an entry of the list.
Read readEntry(std::string_view content, std::size_t index, std::size_t listEnd) {
    const unsigned char* const entry = bytesOf(content) + kHeaderSize + index * kEntrySize;
    const std::size_t place = LittleEndian::readUnsigned(entry + kPlace);
    const std::size_t size = LittleEndian::readUnsigned(entry + kSize);
    if (place < listEnd || place > content.size() || size > content.size() - place) {
        return faulty("ends within its pictures");
    }
    Read read = readPicture(content.substr(place, size));
    if (read.fault.empty() &&
        (read.picture.width != sideOf(entry[kWidth]) || read.picture.height != sideOf(entry[kHeight]))) {
        return faulty("has a picture of another size than its list says");
    }
    return read;
}

IconFile readList(std::string_view content) {
    if (content.size() < kHeaderSize || LittleEndian::readUnsigned16(bytesOf(content) + kReserved) != 0 ||
        LittleEndian::readUnsigned16(bytesOf(content) + kType) != kIcons) {
        return {{}, "is neither a file of icons (ICO) nor a PNG"};
    }
    const std::size_t count = LittleEndian::readUnsigned16(bytesOf(content) + kCount);
    if (count == 0 || count > kMostPictures) {
        return {{}, "has " + std::to_string(count) + " pictures, and 1 to 64 are possible"};
    }
    const std::size_t listEnd = kHeaderSize + count * kEntrySize;
    if (content.size() < listEnd) {
        return {{}, "ends within its list of pictures"};
    }
    IconFile file;
    std::size_t total = listEnd;
    for (std::size_t i = 0; i < count; ++i) {
        Read read = readEntry(content, i, listEnd);
        total += read.picture.bytes.size();
        if (read.fault.empty() && total > content.size()) {
            read.fault = "has pictures that overlap";
        }
        if (!read.fault.empty()) {
            return {{}, read.fault};
        }
        file.pictures.push_back(read.picture);
    }
    return file;
}

}  // namespace

IconFile readIconFile(std::string_view content) {
    if (content.size() > kMostFileSize) {
        return {{}, "has more than 1 MiB"};
    }
    if (!content.starts_with(kPngSignature)) {
        return readList(content);
    }
    const Read read = png::read(content);
    if (read.fault.empty() && read.picture.width != read.picture.height) {
        return {{}, "is a PNG that isn't square"};
    }
    return read.fault.empty() ? IconFile{{read.picture}, {}} : IconFile{{}, read.fault};
}

std::vector<std::uint32_t> missingIconSizes(const IconFile& file) {
    std::vector<std::uint32_t> missing;
    std::ranges::copy_if(kShownSizes, std::back_inserter(missing), [&](std::uint32_t side) {
        return std::ranges::none_of(file.pictures, [side](const IconPicture& picture) {
            return picture.width == side && picture.height == side;
        });
    });
    return missing;
}
