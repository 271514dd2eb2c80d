#include "packager/stripe_balancer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::vector<PackageFile> filesOf(std::size_t count, std::int64_t size) {
    std::vector<PackageFile> entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back({"p" + std::to_string(i), "n", "a" + std::to_string(i), size});
    }
    return entries;
}

std::vector<std::string> aliasesOf(const std::vector<PackageFile>& entries) {
    std::vector<std::string> aliases;
    aliases.reserve(entries.size());
    for (const PackageFile& entry : entries) {
        aliases.push_back(entry.alias);
    }
    return aliases;
}

TEST(StripeBalancer, DealsRunsOfNeighboursToTheStripes) {
    std::vector<PackageFile> entries = filesOf(1000, 100000);
    const std::vector<std::string> before = aliasesOf(entries);
    balanceStripes(entries, 2);
    std::vector<std::string> after = aliasesOf(entries);
    EXPECT_EQ(after.front(), "a0");
    EXPECT_EQ(after[2], "a2");  // a run of three
    EXPECT_EQ(after[3], "a6");  // the next one went to the other stripe
    EXPECT_NE(after, before);
    std::vector<std::string> sortedBefore = before;
    std::sort(sortedBefore.begin(), sortedBefore.end());
    std::sort(after.begin(), after.end());
    EXPECT_EQ(after, sortedBefore);
}

TEST(StripeBalancer, LeavesSmallPackagesAndManyStripesAlone) {
    std::vector<PackageFile> entries = filesOf(1000, 100000);
    const std::vector<std::string> before = aliasesOf(entries);
    balanceStripes(entries, 1);
    EXPECT_EQ(aliasesOf(entries), before);
    balanceStripes(entries, 9);
    EXPECT_EQ(aliasesOf(entries), before);
    std::vector<PackageFile> small = filesOf(100, 100000);
    balanceStripes(small, 2);
    EXPECT_EQ(aliasesOf(small), aliasesOf(filesOf(100, 100000)));
    std::vector<PackageFile> none;
    balanceStripes(none, 2);
    EXPECT_TRUE(none.empty());
}

}  // namespace
