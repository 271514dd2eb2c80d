#include "platform/error_text.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

TEST(WindowsErrorText, HasTheWordsOfTheSystem) {
    EXPECT_NE(platform::errorText(ERROR_DISK_FULL).find("isk"), std::string::npos);
    EXPECT_NE(platform::errorText(ERROR_ACCESS_DENIED).find("ccess"), std::string::npos);
}

TEST(WindowsErrorText, KnowsTheResultsOfComponents) {
    EXPECT_EQ(platform::errorText(static_cast<int>(E_ACCESSDENIED)),
              platform::errorText(ERROR_ACCESS_DENIED));
}

}  // namespace
