#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "image_check.h"

// The input is a file. Before it is read each whole chunk gets the checksum that belongs to it: the fuzzer
// would hardly find one.
namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";

std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

std::uint32_t checksum(std::string_view data) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : data) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~sum;
}

// The same file with the checksum that belongs to each chunk.
std::string withChecksums(std::string_view file) {
    constexpr std::size_t kLengthAndType = 8;
    constexpr std::size_t kSum = 4;
    std::string fixed(file.substr(0, kSignature.size()));
    file.remove_prefix(fixed.size());
    while (file.size() >= kLengthAndType + kSum) {
        const auto byteAt = [&](std::size_t i) { return std::uint32_t{static_cast<std::uint8_t>(file[i])}; };
        const std::size_t length = byteAt(0) << 24 | byteAt(1) << 16 | byteAt(2) << 8 | byteAt(3);
        if (length > file.size() - kLengthAndType - kSum) {
            break;
        }
        fixed += file.substr(0, kLengthAndType + length);
        fixed += bigEndian(checksum(file.substr(4, 4 + length)));
        file.remove_prefix(kLengthAndType + length + kSum);
    }
    return fixed + std::string(file);
}

}  // namespace

bool accepts(std::string_view input) {
    DecodedImage found;
    CheckingReceiver receiver;
    const std::string file = input.starts_with(kSignature) ? withChecksums(input) : std::string(input);
    const ImageLoader loader((DebugLog()));
    const ImageResult result = loader.LoadPNGArray(found, file.data(), file.size(), receiver);
    require(result != ImageResult::kLoaded || receiver.isComplete());
    require(isPicture(file) == (result == ImageResult::kLoaded) || !file.starts_with("\x89PNG"));
    return result == ImageResult::kLoaded;
}
