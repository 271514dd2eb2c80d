#include "description/version_order.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// -1, 0 or 1, the same from both sides.
int compare(std::string_view left, std::string_view right) {
    const std::weak_ordering order = compareVersions(left, right);
    EXPECT_TRUE(order == 0 ? compareVersions(right, left) == 0
                           : (order < 0) == (compareVersions(right, left) > 0));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

TEST(VersionOrder, PartsCompareAsNumbers) {
    EXPECT_EQ(compare("1.10.2", "1.9"), 1);
    EXPECT_EQ(compare("1.9.9", "1.10"), -1);
    EXPECT_EQ(compare("2", "10"), -1);
    EXPECT_EQ(compare("1.2.3", "1.2.3"), 0);
    EXPECT_EQ(compare("1.2.3", "1.2.4"), -1);
}

TEST(VersionOrder, MissingPartsAreZero) {
    EXPECT_EQ(compare("1.2", "1.2.0.0"), 0);
    EXPECT_EQ(compare("1.2", "1.2.0.1"), -1);
    EXPECT_EQ(compare("", "0"), 0);
    EXPECT_EQ(compare("", "0.0.1"), -1);
    EXPECT_EQ(compare(".1", "0.1"), 0);
    EXPECT_EQ(compare("1..2", "1.0.2"), 0);
    EXPECT_EQ(compare("1.", "1"), 0);
    EXPECT_EQ(compare("...", ""), 0);
}

TEST(VersionOrder, LeadingZerosDontCount) {
    EXPECT_EQ(compare("1.02", "1.2"), 0);
    EXPECT_EQ(compare("1.002", "1.10"), -1);
    EXPECT_EQ(compare("000", "0"), 0);
}

TEST(VersionOrder, NumbersMayHaveAnyLength) {
    const std::string large(500, '9');
    EXPECT_EQ(compare("1." + large, "1.1" + std::string(500, '0')), -1);
    EXPECT_EQ(compare(large, "4294967296"), 1);
    EXPECT_EQ(compare(std::string(500, '0') + "7", "7"), 0);
    EXPECT_EQ(compare("18446744073709551617", "18446744073709551616"), 1);
}

TEST(VersionOrder, LettersBehindANumberMakeItLater) {
    EXPECT_EQ(compare("1.2b", "1.2"), 1);
    EXPECT_EQ(compare("1.2b", "1.2.1"), 1) << "the second part is the later one";
    EXPECT_EQ(compare("1.2b", "1.3"), -1);
    EXPECT_EQ(compare("1.2b2", "1.2b10"), -1);
    EXPECT_EQ(compare("1.2b", "1.2b0"), 0);
}

TEST(VersionOrder, LettersCompareByTheirBytes) {
    EXPECT_EQ(compare("1a", "1b"), -1);
    EXPECT_EQ(compare("1B", "1a"), -1);
    EXPECT_EQ(compare("1a", "1ab"), -1);
    EXPECT_EQ(compare("1z", "1\xC3\xA9"), -1);
    EXPECT_EQ(compare("v1.2", "1.0"), -1) << "a letter without a number ahead of it follows 0";
    EXPECT_EQ(compare("beta", "0beta"), 0);
}

TEST(VersionOrder, ATailMakesAVersionEarlier) {
    const char* const inOrder[] = {"1.2.3",     "1.3-",    "1.3-0.9",     "1.3-1",  "1.3-10",
                                   "1.3",       "2-alpha", "2-alpha.1",   "2-beta", "2.0-beta.2",
                                   "2-beta.11", "2-rc1",   "2-rc2-fixed", "2.0",    "2.0.1-a"};
    const auto count = static_cast<int>(std::size(inOrder));
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            EXPECT_EQ(compare(inOrder[i], inOrder[j]), (i > j) - (i < j))
                << inOrder[i] << " and " << inOrder[j];
        }
    }
    EXPECT_EQ(compare("1-0", "1-"), 0);
    EXPECT_EQ(compare("-beta", ""), -1);
}

TEST(VersionOrder, BlanksAtTheEndsDontCount) {
    EXPECT_EQ(compare(" 1.2\t", "1.2"), 0);
    EXPECT_EQ(compare("  ", "0"), 0);
    EXPECT_EQ(compare("1 .2", "1.2"), 1) << "inside they are characters";
}

TEST(VersionOrder, AnyThreeVersionsAreInOneOrder) {
    const char* const versions[] = {"",    "0-",  "1",    "1.0",   "1a",      "1.a",
                                    "1-a", "1-1", "1a-b", "01.00", "1.1-1.1", "a"};
    for (const char* const a : versions) {
        for (const char* const b : versions) {
            for (const char* const c : versions) {
                if (compare(a, b) <= 0 && compare(b, c) <= 0) {
                    EXPECT_LE(compare(a, c), 0) << a << ", " << b << ", " << c;
                }
            }
        }
    }
}

}  // namespace
