#include "support/p_stream.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kLengthSize = 2;

}  // namespace

int PStream::writeText(std::string_view text) {
    while (!text.empty()) {
        const auto part = static_cast<std::uint32_t>(std::min<std::size_t>(text.size(), UINT32_MAX));
        std::uint32_t written = 0;
        const int status = write(text.data(), part, written);
        if (status != 0 || written != part) {
            return status != 0 ? status : -1;
        }
        text.remove_prefix(part);
    }
    return 0;
}

int PStream::writeBlock(const void* buffer, std::uint16_t size, std::uint32_t& outWritten) {
    const unsigned char length[kLengthSize] = {static_cast<unsigned char>(size & 0xFF),
                                               static_cast<unsigned char>(size >> 8)};
    int status = write(length, kLengthSize, outWritten);
    if (status == 0 && outWritten == kLengthSize && size > 0) {
        std::uint32_t written = 0;
        status = write(buffer, size, written);
        outWritten += written;
    }
    return status == 0 && outWritten != kLengthSize + size ? -1 : status;
}

int PStream::readBlock(void* buffer, std::uint16_t& outSize, std::uint32_t& outRead) {
    if (!readLength(outSize, outRead)) {
        return -1;
    }
    int status = 0;
    if (outSize > 0) {
        std::uint32_t done = 0;
        status = read(buffer, outSize, done);
        outRead += done;
    }
    return status == 0 && outRead != kLengthSize + outSize ? -1 : status;
}

int PStream::readBlockText(std::string& outText, std::uint16_t capacity, std::uint32_t& outRead) {
    outText.clear();
    std::uint16_t size = 0;
    if (!readLength(size, outRead) || size >= capacity) {
        return -1;
    }
    outText.resize(size);
    std::uint32_t done = 0;
    const int status = size == 0 ? 0 : read(outText.data(), size, done);
    outText.resize(done);
    outRead += done;
    return status == 0 && done != size ? -1 : status;
}

bool PStream::readLength(std::uint16_t& outLength, std::uint32_t& outRead) {
    unsigned char length[kLengthSize] = {};
    const bool complete = read(length, kLengthSize, outRead) == 0 && outRead == kLengthSize;
    outLength = complete ? static_cast<std::uint16_t>(length[0] | length[1] << 8) : 0;
    return complete;
}

bool PStream::isAtEnd() {
    return getPosition() >= getSize();
}
