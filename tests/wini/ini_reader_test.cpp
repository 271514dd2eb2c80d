#include "wini/ini_reader.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string_view>;

std::string get(const Lines& lines, std::string_view section, std::string_view key) {
    return std::string(iniValue(lines, section, key).value_or("(none)"));
}

TEST(IniReaderTest, FindsNamesInAnyCase) {
    const Lines lines{"[Other]", "Root=x", "[Paths]", "Root=y", "rOOt=z"};
    EXPECT_EQ(get(lines, "PATHS", "root"), "y");
    EXPECT_EQ(get(lines, "other", "ROOT"), "x");
    EXPECT_EQ(get(lines, "Paths", "None"), "(none)");
    EXPECT_EQ(get(lines, "None", "Root"), "(none)");
}

TEST(IniReaderTest, CutsBlanksAndQuotes) {
    const Lines lines{"  [ S ]  ", "\t a b = x y \r", "q=\" x \"", "p='y'", "n=\"x'", "e=", "d=\"\"", "o=\""};
    EXPECT_EQ(get(lines, "S", "a b"), "x y");
    EXPECT_EQ(get(lines, "S", "q"), " x ");
    EXPECT_EQ(get(lines, "S", "p"), "y");
    EXPECT_EQ(get(lines, "S", "n"), "\"x'");
    EXPECT_EQ(get(lines, "S", "e"), "");
    EXPECT_EQ(get(lines, "S", "d"), "");
    EXPECT_EQ(get(lines, "S", "o"), "\"");
}

TEST(IniReaderTest, PassesOverCommentsAndLinesWithoutASign) {
    const Lines lines{"k=outside", "[S]", ";k=comment", "k", "", "k=1=2", "[", "]", "x=1"};
    EXPECT_EQ(get(lines, "S", "k"), "1=2");
    EXPECT_EQ(get(lines, "S", ";k"), "(none)");
    EXPECT_EQ(get(lines, "S", "x"), "1");
    EXPECT_EQ(get(lines, "", "k"), "(none)");
}

TEST(IniReaderTest, KnowsTheFirstOfTheSectionsAndKeysOfOneName) {
    const Lines lines{"[s]", "a=1", "A=2", "b=3", "[S]", "c=4"};
    const std::vector<IniEntry> entries = iniEntries(lines, "S");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].key, "a");
    EXPECT_EQ(entries[0].value, "1");
    EXPECT_EQ(entries[1].key, "b");
    EXPECT_EQ(get(lines, "S", "c"), "(none)");
}

}  // namespace
