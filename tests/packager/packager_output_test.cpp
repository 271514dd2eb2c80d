#include "packager/packager_output.h"

#include <gtest/gtest.h>

namespace {

TEST(Printable, ReplacesControlCharacters) {
    EXPECT_EQ(printable("a\tb\nc\x1B[2Jd\x7F"), "a?b?c?[2Jd?");
    EXPECT_EQ(printable("f\xC3\xBC.txt"), "f\xC3\xBC.txt");
}

}  // namespace
