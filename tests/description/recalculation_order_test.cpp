#include "description/recalculation_order.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

struct Variable {
    std::string name;
    std::string expression;
};

std::vector<Recalculated> listOf(const std::vector<Variable>& variables) {
    std::vector<Recalculated> list;
    for (std::size_t i = 0; i < variables.size(); ++i) {
        list.push_back({static_cast<std::int32_t>(i), variables[i].name, variables[i].expression});
    }
    return list;
}

// The pass over a full table of references, as it is defined.
std::vector<std::int32_t> orderByTable(const std::vector<Variable>& variables) {
    const std::size_t count = variables.size();
    std::vector<std::int32_t> order;
    for (std::size_t i = 0; i < count; ++i) {
        order.push_back(static_cast<std::int32_t>(i));
    }
    const auto refersTo = [&variables](std::int32_t i, std::int32_t j) {
        const std::string wanted = "$" + variables[static_cast<std::size_t>(j)].name;
        return i != j && variables[static_cast<std::size_t>(i)].expression.find(wanted) != std::string::npos;
    };
    for (std::size_t a = 0; a < count; ++a) {
        for (std::size_t b = a + 1; b < count; ++b) {
            if (refersTo(order[a], order[b])) {
                std::swap(order[a], order[b]);
            }
        }
    }
    return order;
}

TEST(RecalculationOrder, WithoutReferencesTheListStays) {
    EXPECT_TRUE(recalculationOrder({}).empty());
    EXPECT_EQ(recalculationOrder(listOf({{"A", "$X"}, {"B", ""}})), (std::vector<std::int32_t>{0, 1}));
}

TEST(RecalculationOrder, WhatIsReferredToComesFirst) {
    EXPECT_EQ(recalculationOrder(listOf({{"A", "$B/x"}, {"B", "1"}})), (std::vector<std::int32_t>{1, 0}));
    EXPECT_EQ(recalculationOrder(listOf({{"A", "1"}, {"B", "$A/x"}})), (std::vector<std::int32_t>{0, 1}));
}

TEST(RecalculationOrder, StartOfALongerNameCountsAsAReference) {
    EXPECT_EQ(recalculationOrder(listOf({{"A", "$BASE"}, {"B", "1"}})), (std::vector<std::int32_t>{1, 0}));
    EXPECT_EQ(recalculationOrder(listOf({{"A", "$b"}, {"B", "1"}})), (std::vector<std::int32_t>{0, 1}));
}

TEST(RecalculationOrder, EqualsTheTableOnRandomReferences) {
    std::mt19937 random(7);
    const char* const names[] = {"A", "AB", "ABC", "B", "BA", "C", "CA", "D", "DAB", "E", "F", "G"};
    for (int round = 0; round < 2000; ++round) {
        std::vector<Variable> variables;
        for (const char* name : names) {
            std::string expression;
            for (unsigned references = random() % 4; references > 0; --references) {
                expression += std::string("/$") + names[random() % 12];
            }
            variables.push_back({name, expression});
        }
        ASSERT_EQ(recalculationOrder(listOf(variables)), orderByTable(variables));
    }
}

TEST(RecalculationOrder, TenThousandVariablesAreOrdered) {
    std::vector<Variable> variables;
    for (int i = 0; i < 10000; ++i) {
        variables.push_back(
            {"V" + std::to_string(i) + "_", "$V" + std::to_string((i * 7 + 3) % 10000) + "_"});
    }
    EXPECT_EQ(recalculationOrder(listOf(variables)).size(), 10000U);
}

}  // namespace
