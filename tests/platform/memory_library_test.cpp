#include "platform/memory_library.h"

#include <gtest/gtest.h>

namespace {

TEST(MemoryLibrary, WhatIsNoLibraryGivesAReasonInOneLine) {
    for (const std::string& image : {std::string(), std::string("no library"), std::string(100'000, '\0')}) {
        std::string reason;
        EXPECT_EQ(platform::loadMemoryLibrary(image, "function", reason), nullptr);
        EXPECT_FALSE(reason.empty());
        EXPECT_EQ(reason.find('\n'), std::string::npos) << reason;
    }
}

}  // namespace
