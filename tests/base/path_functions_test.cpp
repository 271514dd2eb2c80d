#include "base/path_functions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::string joined(const char* path, const char* name, int capacity = 64) {
    char buffer[64];
    std::strcpy(buffer, path);
    OUtils::joinPath(buffer, name, capacity);
    if (capacity > 0) {
        EXPECT_EQ(buffer, OUtils::joinedPath(path, name == nullptr ? "" : name, capacity - 1U));
    }
    return buffer;
}

std::string normalized(const char* path, int* outChanges = nullptr) {
    char buffer[64];
    std::strcpy(buffer, path);
    const int changes = OUtils::normalizePath(buffer);
    if (outChanges != nullptr) {
        *outChanges = changes;
    }
    EXPECT_EQ(buffer, OUtils::normalizedPath(path));
    return buffer;
}

template <typename Function>
std::string changed(const char* path, Function function) {
    char buffer[64];
    std::strcpy(buffer, path);
    function(buffer);
    return buffer;
}

TEST(JoinPathTest, PutsOneSeparatorBetween) {
    EXPECT_EQ("D:\\a\\b", joined("D:\\a", "b"));
    EXPECT_EQ("D:\\a\\b", joined("D:\\a\\", "\\b"));
    EXPECT_EQ("D:\\a\\b", joined("D:\\a", "/b"));
    EXPECT_EQ("/a/b", joined("/a/", "b"));
}

TEST(JoinPathTest, PutsNoSeparatorAfterAnEmptyPath) {
    EXPECT_EQ("b", joined("", "\\b"));
    EXPECT_EQ("b", joined("", "b"));
}

TEST(JoinPathTest, DropsOnlyOneSeparatorOfTheName) {
    EXPECT_EQ("a\\\\b", joined("a", "\\\\b"));
}

TEST(JoinPathTest, AppendsNothingForAnEmptyName) {
    EXPECT_EQ("a", joined("a", ""));
    EXPECT_EQ("a", joined("a", nullptr));
    EXPECT_EQ("a\\", joined("a", "\\"));
}

TEST(JoinPathTest, CutsAtTheCapacity) {
    EXPECT_EQ("abc\\def", joined("abc", "defgh", 8));
    EXPECT_EQ("abc\\", joined("abc", "def", 5));
}

TEST(JoinPathTest, LeavesAPathThatFillsTheCapacity) {
    EXPECT_EQ("abcd", joined("abcd", "e", 5));
    EXPECT_EQ("abcd", joined("abcd", "e", 4));
    EXPECT_EQ("abcd", joined("abcd", "e", 0));
}

TEST(NormalizePathTest, KeepsTheSeparatorsOfANetworkPath) {
    int changes = 0;
    EXPECT_EQ("\\\\server\\share\\x", normalized("\\\\server\\share//x", &changes));
    EXPECT_EQ(3, changes);  // two slashes turned, one separator dropped
}

TEST(NormalizePathTest, CountsEveryChange) {
    int changes = -1;
    EXPECT_EQ("C:\\a\\b", normalized(" \tC:/a\\\\\\b\r\n", &changes));
    EXPECT_EQ(4 + 1 + 2, changes);
    EXPECT_EQ("C:\\a", normalized("C:\\a", &changes));
    EXPECT_EQ(0, changes);
    EXPECT_EQ("", normalized("  ", &changes));
    EXPECT_EQ(2, changes);
    EXPECT_EQ("", normalized("", &changes));
    EXPECT_EQ(0, changes);
}

TEST(NormalizePathTest, KeepsTwoOfALongerLeadingRun) {
    EXPECT_EQ("\\\\a", normalized("////a"));
    EXPECT_EQ("\\\\", normalized("///"));
    EXPECT_EQ("\\", normalized("/"));
}

TEST(NormalizePathTest, KeepsASeparatorAtTheEnd) {
    EXPECT_EQ("a\\", normalized("a//"));
}

TEST(SeparatorsTest, BecomeTheOneAskedFor) {
    EXPECT_EQ("\\a\\b", changed("/a\\b", [](char* path) { OUtils::setSeparators(path); }));
    EXPECT_EQ("/a/b", changed("/a\\b", [](char* path) { OUtils::setSeparators(path, '/'); }));
    EXPECT_EQ("\\a\\b", OUtils::withSeparators("/a\\b"));
    EXPECT_EQ("/a/b", OUtils::withSeparators("/a\\b", '/'));
}

TEST(PathValueTest, EndsAtTheFirstZeroByte) {
    const std::string text("a//b\0//c", 8);
    EXPECT_EQ("a/b", OUtils::collapsedPath(text));
    EXPECT_EQ("a\\b", OUtils::normalizedPath(text));
}

TEST(SeparatorsTest, KeepTheLastOfARun) {
    EXPECT_EQ("\\a/b\\", changed("//\\a\\\\/b/\\", OUtils::collapseSeparators));
    EXPECT_EQ("", changed("", OUtils::collapseSeparators));
    EXPECT_EQ("a", changed("a", OUtils::collapseSeparators));
    EXPECT_EQ("\\a/b\\", OUtils::collapsedPath("//\\a\\\\/b/\\"));
    EXPECT_EQ("", OUtils::collapsedPath(""));
}

TEST(SeparatorsTest, GoFromTheEndButNotTheFirstCharacter) {
    EXPECT_EQ("a", OUtils::stripTrailingSeparators("a\\/\\"));
    EXPECT_EQ("\\", OUtils::stripTrailingSeparators("\\\\"));
    EXPECT_EQ("/", OUtils::stripTrailingSeparators("/"));
    EXPECT_EQ("", OUtils::stripTrailingSeparators(""));
    EXPECT_EQ("C:", OUtils::stripTrailingSeparators("C:\\"));
}

TEST(LastPathComponentTest, FollowsTheLastSeparatorOfEitherKind) {
    EXPECT_EQ("c", OUtils::lastPathComponent("a/b\\c"));
    EXPECT_EQ("c", OUtils::lastPathComponent("a\\b/c"));
    EXPECT_EQ("c", OUtils::lastPathComponent("c"));
    EXPECT_EQ("", OUtils::lastPathComponent("a/"));
    EXPECT_EQ("", OUtils::lastPathComponent(""));
}

}  // namespace
