#include "packager/packager_output.h"

#include <gtest/gtest.h>

namespace {

TEST(Printable, ReplacesControlCharacters) {
    EXPECT_EQ(printable("a\tb\nc\x1B[2Jd\x7F"), "a?b?c?[2Jd?");
    EXPECT_EQ(printable("a\nb\r\nc"), "a?b??c");
    EXPECT_EQ(printable("a\xE2\x80\xAE"
                        "exe.txt\xC2\x9B"
                        "2J"),
              "a?exe.txt?2J");
    EXPECT_EQ(printable("f\xC3\xBC.txt"), "f\xC3\xBC.txt");
}

}  // namespace
