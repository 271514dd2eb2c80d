#include "platform/error_text.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "platform/registry.h"

namespace {

TEST(PosixErrorText, HasTheWordsOfTheLibrary) {
    EXPECT_EQ(platform::errorText(ENOSPC), "No space left on device");
    EXPECT_EQ(platform::errorText(EACCES), "Permission denied");
}

// The number 5 means "input/output error" in a file operation.
TEST(PosixErrorText, KeepsTheNumbersOfTheRegistryApart) {
    EXPECT_EQ(platform::registryErrorText(platform::kRegAccessDenied),
              "The registry can't be opened or changed: permission denied");
    EXPECT_EQ(platform::errorText(platform::kRegAccessDenied), "Input/output error");
}

}  // namespace
