#include "platform/written_path.h"

#include <gtest/gtest.h>

namespace {

// Either form of a path stays good for the system's own calls.
TEST(WrittenPathTest, KeepsTheComponentsOfAPath) {
    EXPECT_EQ("", platform::writtenPath(""));
    EXPECT_EQ("name", platform::writtenPath("name"));
    EXPECT_EQ("/opt/a b", platform::writtenPath("/opt/a b"));
}

}  // namespace
