#include "platform/posix/directory_completion.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using platform::completeDirectory;
using Names = std::vector<std::string>;

class DirectoryCompletionTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "completionXXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        top_ = pattern;
        for (const char* name : {"apple", "apricot", "banana", ".hidden", "b\xC3\xA4r", "b\xC3\xA5t"}) {
            std::filesystem::create_directory(top_ + "/" + name);
        }
        std::ofstream(top_ + "/apfile") << "no directory";
        std::filesystem::create_directory_symlink("apple", top_ + "/link");
    }
    void TearDown() override { std::filesystem::remove_all(top_); }

    std::string added(const std::string& name) { return completeDirectory(top_ + "/" + name).added; }

    std::string top_;
};

TEST_F(DirectoryCompletionTest, AddsWhatCanOnlyFollow) {
    EXPECT_EQ(added("app"), "le/");
    EXPECT_EQ(added("ban"), "ana/");
    EXPECT_EQ(added("li"), "nk/");
    EXPECT_EQ(added("x"), "");
    EXPECT_EQ(added("apple/"), "");
}

TEST_F(DirectoryCompletionTest, NamesTheDirectoriesThatAreMeant) {
    const auto found = completeDirectory(top_ + "/ap");
    EXPECT_EQ(found.added, "");
    EXPECT_EQ(found.names, (Names{"apple", "apricot"}));
}

TEST_F(DirectoryCompletionTest, KeepsCharactersWhole) {
    // Both begin with the byte C3.
    EXPECT_EQ(completeDirectory(top_ + "/b\xC3").added, "");
    EXPECT_EQ(added("b"), "");
}

TEST_F(DirectoryCompletionTest, OffersHiddenOnesForTheirDot) {
    EXPECT_EQ(added("."), "hidden/");
    for (const std::string& name : completeDirectory(top_ + "/").names) {
        EXPECT_NE(name, ".hidden");
    }
}

TEST_F(DirectoryCompletionTest, NeverOffersWhatATerminalCannotShow) {
    std::filesystem::create_directory(top_ + "/z\x1B[2J");
    EXPECT_EQ(added("z"), "");
}

TEST_F(DirectoryCompletionTest, KnowsTheHomeDirectory) {
    const char* const home = std::getenv("HOME");
    const std::string former = home == nullptr ? "" : home;
    setenv("HOME", top_.data(), 1);
    EXPECT_EQ(completeDirectory("~/app").added, "le/");
    EXPECT_EQ(completeDirectory("~").added, "/");
    home == nullptr ? unsetenv("HOME") : setenv("HOME", former.data(), 1);
}

TEST_F(DirectoryCompletionTest, OffersAHundredNamesAtMost) {
    for (int i = 0; i < 150; ++i) {
        std::filesystem::create_directory(top_ + "/apple/x" + std::to_string(i));
    }
    EXPECT_EQ(completeDirectory(top_ + "/apple/x").names.size(), 100U);
}

}  // namespace
