#include "platform/written_path.h"

#include <gtest/gtest.h>

namespace {

TEST(WindowsWrittenPathTest, ChangesNothing) {
    EXPECT_EQ("C:\\Demo\\x", platform::writtenPath("C:\\Demo\\x"));
    EXPECT_EQ("C:/Demo", platform::writtenPath("C:/Demo"));
    EXPECT_EQ("\\\\server\\share", platform::writtenPath("\\\\server\\share"));
}

}  // namespace
