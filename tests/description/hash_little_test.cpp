#include "description/hash_little.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

// Values that the function's author published.
TEST(HashLittle, GivesThePublishedValues) {
    EXPECT_EQ(hashLittle("", 0), 0xDEADBEEFU);
    EXPECT_EQ(hashLittle("", 0xDEADBEEF), 0xBD5B7DDEU);
    EXPECT_EQ(hashLittle("Four score and seven years ago", 0), 0x17770551U);
    EXPECT_EQ(hashLittle("Four score and seven years ago", 1), 0xCD628161U);
}

TEST(HashLittle, EveryByteOfEveryLengthCounts) {
    std::set<std::uint32_t> seen;
    std::string text;
    for (int length = 0; length <= 40; ++length) {
        EXPECT_TRUE(seen.insert(hashLittle(text, 0)).second) << length;
        for (char& byte : text) {
            byte ^= '\x80';
            EXPECT_TRUE(seen.insert(hashLittle(text, 0)).second) << length;
            byte ^= '\x80';
        }
        text += 'x';
    }
}

}  // namespace
