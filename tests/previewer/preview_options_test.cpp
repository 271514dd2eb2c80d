#include "previewer/preview_options.h"

#include <gtest/gtest.h>

namespace {

using Sizes = std::vector<int>;

TEST(PreviewOptions, AreReadFromTheArguments) {
    const PreviewOptions options = readPreviewOptions(
        {"--package", "p", "--system",  "windows",   "--offset",     "12", "--title", "t",
         "--to",      "d", "--answers", "a",         "--answers",    "b",  "--sizes", "100,150",
         "--compare", "e", "--strict",  "--display", "--window-set", "2"});
    EXPECT_EQ(options.problem, "");
    EXPECT_EQ(options.package, "p");
    EXPECT_EQ(options.offset, 12);
    EXPECT_EQ(options.system, MemoryManner::System::kWindows);
    EXPECT_EQ(options.title, "t");
    EXPECT_EQ(options.directory, "d");
    EXPECT_EQ(options.answers, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(options.sizes, (Sizes{100, 150}));
    EXPECT_EQ(options.earlier, "e");
    EXPECT_TRUE(options.isStrict);
    EXPECT_TRUE(options.usesDisplay);
    EXPECT_EQ(options.windowSet, 2);
}

TEST(PreviewOptions, HaveOneSizeByDefault) {
    const PreviewOptions options = readPreviewOptions({"--package", "p", "--system", "windows", "--to", "d"});
    EXPECT_EQ(options.problem, "");
    EXPECT_EQ(options.sizes, Sizes{100});
    EXPECT_EQ(options.windowSet, -1);
}

TEST(PreviewOptions, SayWhatIsWrong) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"--package", "p", "--system", "windows"},
        {"--package", "p", "--to", "d"},
        {"--package", "p", "--to", "d", "--system", "solaris"},
        {"--package", "p", "--system", "windows", "--to"},
        {"--package", "p", "--system", "windows", "--to", "d", "--what", "x"},
        {"--package", "p", "--system", "windows", "--to", "d", "--offset", "-1"},
        {"--package", "p", "--system", "windows", "--to", "d", "--offset", "1x"},
        {"--package", "p", "--system", "windows", "--to", "d", "--sizes", "10"},
        {"--package", "p", "--system", "windows", "--to", "d", "--window-set", "1"},
    };
    for (const auto& arguments : wrong) {
        EXPECT_NE(readPreviewOptions(arguments).problem, "");
    }
}

TEST(PreviewOptions, TakeUpToEightSizesThatCanBeRead) {
    EXPECT_EQ(readSizes("50,400"), (Sizes{50, 400}));
    for (const char* text :
         {"", "49", "401", "100,", "100;150", "9,100", "1,1", "60,60,60,60,60,60,60,60,60"}) {
        EXPECT_EQ(readSizes(text), Sizes()) << text;
    }
}

}  // namespace
