#include "support/p_stream.h"

#include <cstring>

namespace {

constexpr std::uint32_t kLengthSize = 2;

}  // namespace

int PStream::writeText(const char* text) {
    std::size_t left = text == nullptr ? 0 : std::strlen(text);
    while (left > 0) {
        const auto part = static_cast<std::uint32_t>(left < UINT32_MAX ? left : UINT32_MAX);
        std::uint32_t written = 0;
        const int status = write(text, part, written);
        if (status != 0 || written != part) {
            return status != 0 ? status : -1;
        }
        text += part;
        left -= part;
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
    outSize = 0;
    unsigned char length[kLengthSize] = {};
    int status = read(length, kLengthSize, outRead);
    if (status != 0 || outRead != kLengthSize) {
        return -1;
    }
    outSize = static_cast<std::uint16_t>(length[0] | length[1] << 8);
    if (outSize > 0) {
        std::uint32_t done = 0;
        status = read(buffer, outSize, done);
        outRead += done;
    }
    return status == 0 && outRead != kLengthSize + outSize ? -1 : status;
}

int PStream::readBlockText(char* buffer, std::uint16_t& inOutCapacity, std::uint32_t& outRead) {
    const std::uint16_t capacity = inOutCapacity;
    inOutCapacity = 0;
    if (capacity > 0) {
        buffer[0] = '\0';
    }
    unsigned char length[kLengthSize] = {};
    if (read(length, kLengthSize, outRead) != 0 || outRead != kLengthSize) {
        return -1;
    }
    const auto size = static_cast<std::uint16_t>(length[0] | length[1] << 8);
    if (size >= capacity) {
        return -1;
    }
    std::uint32_t done = 0;
    const int status = size == 0 ? 0 : read(buffer, size, done);
    outRead += done;
    buffer[done] = '\0';
    inOutCapacity = static_cast<std::uint16_t>(done);
    return status == 0 && done != size ? -1 : status;
}

bool PStream::isAtEnd() {
    return getPosition() >= getSize();
}
