#include "support/md5.h"

Md5Digest md5Of(const void* data, std::size_t size) {
    Md5 digest;
    digest.update(data, size);
    return digest.finish();
}

std::string md5Text(const Md5Digest& digest) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}
