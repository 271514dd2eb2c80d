#include "packager/path_pattern.h"

#include <gtest/gtest.h>

namespace {

bool matches(const std::string& pattern, const std::string& path) {
    return PathPattern(pattern).matches(path);
}

TEST(PathPatternTest, MatchesTheLastPartAtAnyDepthWithoutASeparator) {
    EXPECT_TRUE(matches("*.txt", "a.txt"));
    EXPECT_TRUE(matches("*.txt", "d/e/a.txt"));
    EXPECT_TRUE(matches("e", "d/e"));
    EXPECT_FALSE(matches("e", "e/d"));
    EXPECT_FALSE(matches("*.txt", "a.txt/b"));
    EXPECT_FALSE(matches("a", "ab"));
    EXPECT_TRUE(matches("a?c*", "d/abc"));
    EXPECT_FALSE(matches("a?c", "ac"));
    EXPECT_TRUE(matches("*a*b*c", "xaxbxbxc"));
    EXPECT_FALSE(matches("*a*b*c", "xaxcxb"));
    EXPECT_TRUE(matches("**", "d/e"));
    EXPECT_TRUE(matches("a**b", "d/axb"));
}

TEST(PathPatternTest, MatchesTheWholePathWithASeparator) {
    EXPECT_TRUE(matches("d/*.txt", "d/a.txt"));
    EXPECT_FALSE(matches("d/*.txt", "d/e/a.txt"));
    EXPECT_FALSE(matches("d/*.txt", "x/d/a.txt"));
    EXPECT_TRUE(matches("/a.txt", "a.txt"));
    EXPECT_FALSE(matches("/a.txt", "d/a.txt"));
    EXPECT_TRUE(matches("d\\a.txt", "d/a.txt"));
    EXPECT_TRUE(matches("d//e/", "d/e"));
    EXPECT_TRUE(matches("*/a", "d/a"));
    EXPECT_FALSE(matches("*/a", "a"));
}

TEST(PathPatternTest, TakesTwoStarsForAnyNumberOfParts) {
    for (const std::string path : {"a", "d/a", "d/e/a"}) {
        EXPECT_TRUE(matches("**/a", path)) << path;
    }
    EXPECT_FALSE(matches("**/a", "d/b"));
    for (const std::string path : {"d", "d/a", "d/e/a"}) {
        EXPECT_TRUE(matches("d/**", path)) << path;
    }
    EXPECT_FALSE(matches("d/**", "e/d"));
    for (const std::string path : {"d/x/a", "d/e/x/f/a", "d/x/x/a"}) {
        EXPECT_TRUE(matches("d/**/x/**/a", path)) << path;
    }
    EXPECT_FALSE(matches("d/**/x/**/a", "d/e/a"));
    EXPECT_FALSE(matches("d/**/x/**/a", "d/x/b"));
}

TEST(PathPatternTest, CountsCharactersAndNotBytes) {
    EXPECT_TRUE(matches("?", "\xC3\xBC"));
    EXPECT_FALSE(matches("??", "\xC3\xBC"));
    EXPECT_TRUE(matches("??", "\xC3\xC3"));  // no characters at all
    EXPECT_FALSE(matches("A", "a"));
    EXPECT_TRUE(matches("a?b", "a\\b"));
}

TEST(PathPatternTest, MatchesNothingWithoutAPart) {
    for (const std::string pattern : {"", "/", "//"}) {
        EXPECT_FALSE(matches(pattern, "a")) << pattern;
        EXPECT_FALSE(matches(pattern, "")) << pattern;
    }
}

TEST(PathPatternTest, TakesNoLongerThanTheProductOfTheLengths) {
    std::string pattern;
    for (int i = 0; i < 500; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(matches(pattern, std::string(2000, 'a') + "b"));
    std::string parts;
    std::string path;
    for (int i = 0; i < 500; ++i) {
        parts += "**/a/";
        path += "a/a/";
    }
    EXPECT_FALSE(matches(parts + "b", path + "c"));
}

TEST(PathPatternsTest, MatchesIfOneDoesAndKnowsThoseThatNeverDid) {
    PathPatterns patterns(" *.txt ;;d/*; x*;\n");
    EXPECT_FALSE(patterns.areNone());
    EXPECT_EQ(patterns.unused(), (std::vector<std::string>{"*.txt", "d/*", "x*"}));
    EXPECT_TRUE(patterns.matchAny("d/a.txt"));
    EXPECT_EQ(patterns.unused(), std::vector<std::string>{"x*"});
    EXPECT_FALSE(patterns.matchAny("b"));
    EXPECT_TRUE(PathPatterns(" ; ").areNone());
}

}  // namespace
