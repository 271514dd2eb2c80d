#include "support/md5.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string hex(const Md5Digest& digest) {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

TEST(Md5Test, GivesTheKnownDigests) {
    EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", hex(md5Of("", 0)));
    EXPECT_EQ("900150983cd24fb0d6963f7d28e17f72", hex(md5Of("abc", 3)));
    EXPECT_EQ("c3fcd3d76192e4007dfb496cca67e13b", hex(md5Of("abcdefghijklmnopqrstuvwxyz", 26)));
}

TEST(Md5Test, PiecesGiveTheDigestOfTheWhole) {
    const std::string text(100000, 'q');
    Md5 digest;
    for (std::size_t at = 0; at < text.size(); at += 1777) {
        digest.update(text.data() + at, std::min<std::size_t>(1777, text.size() - at));
    }
    EXPECT_EQ(md5Of(text.data(), text.size()), digest.finish());
}

}  // namespace
