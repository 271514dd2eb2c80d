#include "platform/digest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

std::string finishAsHex(platform::Md5Context& context) {
    std::string text;
    for (const std::uint8_t byte : context.finish()) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

std::string digestOf(const std::string& data) {
    platform::Md5Context context;
    context.update(data.data(), data.size());
    return finishAsHex(context);
}

// The test suite of RFC 1321.
TEST(Md5ContextTest, GivesTheDigestsOfTheStandard) {
    EXPECT_EQ(digestOf(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(digestOf("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(digestOf("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(digestOf("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(digestOf("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(digestOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(digestOf("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5ContextTest, PiecesGiveTheDigestOfTheWhole) {
    const std::string data(1000, 'x');
    for (const std::size_t piece : {1U, 7U, 63U, 64U, 65U, 999U}) {
        platform::Md5Context context;
        for (std::size_t position = 0; position < data.size(); position += piece) {
            context.update(data.data() + position, std::min(piece, data.size() - position));
        }
        EXPECT_EQ(finishAsHex(context), digestOf(data)) << piece;
    }
}

TEST(Md5ContextTest, AnEmptyUpdateChangesNothing) {
    platform::Md5Context context;
    context.update(nullptr, 0);
    context.update("abc", 3);
    context.update(nullptr, 0);
    EXPECT_EQ(finishAsHex(context), "900150983cd24fb0d6963f7d28e17f72");
}

}  // namespace
