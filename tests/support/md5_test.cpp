#include "support/md5.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Md5Test, GivesTheKnownDigests) {
    EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", md5Text(md5Of("", 0)));
    EXPECT_EQ("900150983cd24fb0d6963f7d28e17f72", md5Text(md5Of("abc", 3)));
    EXPECT_EQ("c3fcd3d76192e4007dfb496cca67e13b", md5Text(md5Of("abcdefghijklmnopqrstuvwxyz", 26)));
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
