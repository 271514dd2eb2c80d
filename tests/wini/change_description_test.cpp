#include "wini/change_description.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::size_t pairCount(const TextLines& lines) {
    const auto pairs = ChangeDescription::parse(lines);
    return pairs.has_value() ? pairs->size() : 0;
}

TEST(ChangeDescriptionTest, HoldsPairsOfBlocks) {
    const auto pairs = ChangeDescription::parse({"2", "a", "", "1", "2", " 1\t", "x", "2", "y", "z"});
    ASSERT_TRUE(pairs.has_value());
    ASSERT_EQ(pairs->size(), 2U);
    EXPECT_EQ((*pairs)[0].search, (TextLines{"a", ""}));
    EXPECT_EQ((*pairs)[0].addition, TextLines{"2"});
    EXPECT_EQ((*pairs)[1].search, TextLines{"x"});
    EXPECT_EQ((*pairs)[1].addition, (TextLines{"y", "z"}));
}

TEST(ChangeDescriptionTest, MayEndWithBlankLines) {
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "", " \r"}), 1U);
    EXPECT_EQ(pairCount({"1\r", "a\r", "1\r", "b\r"}), 1U);
}

TEST(ChangeDescriptionTest, IsBrokenWithoutAWholePair) {
    const std::vector<std::string_view> whole{"2", "a", "b", "1", "c", "1", "d", "2", "e", "f"};
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const TextLines cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(pairCount(cut), size == 5 ? 1U : size == 10 ? 2U : 0U) << size;
    }
}

TEST(ChangeDescriptionTest, IsBrokenByACountThatIsNone) {
    for (const char* count : {"0", "-1", "+1", "x", "1x", "1 1", "", "2", "99999999999999999999999",
                              "18446744073709551615", "4294967297"}) {
        EXPECT_EQ(pairCount({count, "a", "1", "b"}), 0U) << count;
        EXPECT_EQ(pairCount({"1", "a", count, "b"}), 0U) << count;
    }
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "rest"}), 0U);
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "", "1", "c", "1", "d"}), 0U);
    EXPECT_EQ(pairCount({"", ""}), 0U);
}

TEST(ChangeDescriptionTest, IsBrokenByALineAboveTheLimit) {
    const std::string longest(ChangeDescription::kLineLimit, 'x');
    const std::string longer = longest + 'x';
    EXPECT_EQ(pairCount({"1", longest, "1", longest}), 1U);
    EXPECT_EQ(pairCount({"1", longer, "1", "b"}), 0U);
    EXPECT_EQ(pairCount({"1", "a", "1", longer}), 0U);
}

// The walk as it is told, with a group of lines that moves on by one.
TextLines walk(const std::vector<ChangePair>& pairs, const TextLines& lines) {
    TextLines out;
    std::size_t position = 0;
    for (const ChangePair& pair : pairs) {
        for (;; out.push_back(lines[position++])) {
            if (position + pair.search.size() > lines.size()) {
                out.insert(out.end(), lines.begin() + static_cast<std::ptrdiff_t>(position), lines.end());
                return out;
            }
            const auto group = lines.begin() + static_cast<std::ptrdiff_t>(position);
            if (std::equal(pair.search.begin(), pair.search.end(), group)) {
                break;
            }
        }
        out.insert(out.end(), pair.search.begin(), pair.search.end());
        out.insert(out.end(), pair.addition.begin(), pair.addition.end());
        position += pair.search.size();
    }
    out.insert(out.end(), lines.begin() + static_cast<std::ptrdiff_t>(position), lines.end());
    return out;
}

TextLines randomLines(std::mt19937& random, unsigned limit) {
    static constexpr std::string_view kWords[] = {"a", "b", ""};
    TextLines lines(random() % limit);
    for (std::string_view& line : lines) {
        line = kWords[random() % std::size(kWords)];
    }
    return lines;
}

TEST(ChangeDescriptionTest, IsAppliedAsTheMovingGroupTellsAndComesBack) {
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<ChangePair> pairs(1 + random() % 3);
        for (ChangePair& pair : pairs) {
            pair.search = randomLines(random, 4);
            pair.search.emplace_back("a");
            pair.addition = randomLines(random, 3);
            pair.addition.emplace_back("b");
        }
        const TextLines lines = randomLines(random, 20);
        TextLines changed;
        const bool hasChanged = ChangeDescription::apply(pairs, lines, changed);
        ASSERT_EQ(changed, walk(pairs, lines));
        ASSERT_EQ(hasChanged, changed != lines);
        if (hasChanged && changed.size() == lines.size() + [&] {
                std::size_t sum = 0;
                for (const ChangePair& pair : pairs) {
                    sum += pair.addition.size();
                }
                return sum;
            }()) {
            TextLines reverted;
            EXPECT_TRUE(ChangeDescription::revert(pairs, changed, reverted));
            ASSERT_EQ(reverted, lines);
        }
    }
}

TEST(ChangeDescriptionTest, LeavesLinesThatWereChangedSince) {
    const std::vector<ChangePair> pairs{{{"A"}, {"x", "y"}}, {{"B"}, {"z"}}};
    TextLines out;
    EXPECT_TRUE(ChangeDescription::revert(pairs, {"A", "x", "Y", "B", "z", "C"}, out));
    EXPECT_EQ(out, (TextLines{"A", "x", "Y", "B", "C"}));
    EXPECT_TRUE(ChangeDescription::revert(pairs, {"A", "B", "z"}, out));
    EXPECT_EQ(out, (TextLines{"A", "B"}));
    EXPECT_FALSE(ChangeDescription::revert(pairs, {"A", "x"}, out));
    EXPECT_EQ(out, (TextLines{"A", "x"}));
    EXPECT_FALSE(ChangeDescription::revert(pairs, {"x", "y"}, out));
}

TEST(ChangeDescriptionTest, SearchesAlikeLinesInOneWalk) {
    constexpr std::size_t kMany = 300000;
    TextLines lines(kMany, "same");
    TextLines search(kMany / 2, "same");
    search.emplace_back("other");
    TextLines out;
    EXPECT_FALSE(ChangeDescription::apply({{search, {"x"}}}, lines, out));
    EXPECT_EQ(out.size(), kMany);
    lines.emplace_back("other");
    EXPECT_TRUE(ChangeDescription::apply({{search, {"x"}}}, lines, out));
    EXPECT_EQ(out.size(), kMany + 2);
    EXPECT_EQ(out.back(), "x");
}

}  // namespace
