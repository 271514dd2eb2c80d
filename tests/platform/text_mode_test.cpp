#include "platform/text_mode.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "fakes/temporary_directory.h"

TEST(TextMode, LineEndIsWhatTheLibraryWritesInTextMode) {
    TemporaryDirectory directory;
    const std::string path = directory.file("lines.txt");
    std::FILE* file = std::fopen(path.c_str(), "wt");
    ASSERT_NE(file, nullptr);
    std::fputs("\n", file);
    std::fclose(file);

    EXPECT_EQ(readTestFile(path), platform::textLineEnd());
}
