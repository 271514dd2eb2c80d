#include "platform/error_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <memory>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/registry.h"

namespace {

constexpr int kUnknown = 0x2fabcdef;

// The number that this system gives for a file that doesn't exist.
int missingFileStatus() {
    const TemporaryDirectory directory;
    std::unique_ptr<platform::File> file;
    return platform::systemFileSystem().open(directory.path() + "/missing", {}, file);
}

TEST(ErrorText, IsOneLineWithoutAnEnd) {
    for (int status = 1; status < 2000; ++status) {
        const std::string text = platform::errorText(status);
        ASSERT_FALSE(text.empty()) << status;
        EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << status;
        EXPECT_NE(text.back(), ' ') << status;
    }
}

TEST(ErrorText, GivesANumberThatTheSystemDoesNotKnow) {
    EXPECT_EQ(platform::errorText(kUnknown), "error 799788527");
    EXPECT_EQ(platform::registryErrorText(kUnknown), "error 799788527");
}

TEST(ErrorText, IsTheSameInEveryLanguage) {
    const int status = missingFileStatus();
    const std::string plain = platform::errorText(status);
    EXPECT_FALSE(plain.starts_with("error ")) << plain;
    std::setlocale(LC_ALL, "");
    EXPECT_EQ(platform::errorText(status), plain);
    std::setlocale(LC_ALL, "C");
}

TEST(RegistryErrorText, HasWordsForEachStatus) {
    for (const int status : {platform::kRegNotFound, platform::kRegAccessDenied, platform::kRegBadArgument,
                             platform::kRegDiskFull, platform::kRegBusy, platform::kRegDamaged,
                             platform::kRegIoFailed, platform::kRegForeign}) {
        EXPECT_FALSE(platform::registryErrorText(status).empty()) << status;
        EXPECT_FALSE(platform::registryErrorText(status).starts_with("error ")) << status;
    }
}

}  // namespace
