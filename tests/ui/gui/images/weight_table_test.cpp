#include "ui/gui/images/weight_table.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

std::vector<float> weightsOf(const WeightTable::Span& span) {
    return {span.weights, span.weights + span.count};
}

TEST(WeightTable, AddsUpToOneWithinTheSource) {
    for (const auto& [source, target] : std::vector<std::pair<int, int>>{{1, 1},
                                                                         {1, 7},
                                                                         {7, 1},
                                                                         {2, 3},
                                                                         {3, 2},
                                                                         {100, 99},
                                                                         {99, 100},
                                                                         {640, 17},
                                                                         {17, 640},
                                                                         {6399, 1},
                                                                         {1, 6399}}) {
        const WeightTable table(source, target);
        for (int i = 0; i < target; ++i) {
            const WeightTable::Span span = table.at(i);
            ASSERT_GE(span.count, 1);
            ASSERT_GE(span.first, 0);
            ASSERT_LE(span.first + span.count, source);
            float sum = 0;
            for (const float weight : weightsOf(span)) {
                sum += weight;
            }
            EXPECT_NEAR(sum, 1, 1e-4) << source << " " << target << " " << i;
        }
    }
}

TEST(WeightTable, CountsEverySourcePixelWhenMadeSmaller) {
    for (const int target : {1, 3, 10, 33, 50, 99}) {
        const WeightTable table(100, target);
        std::vector<float> used(100);
        for (int i = 0; i < target; ++i) {
            const WeightTable::Span span = table.at(i);
            for (int k = 0; k < span.count; ++k) {
                used[static_cast<std::size_t>(span.first + k)] += span.weights[k];
            }
        }
        for (const float weight : used) {
            EXPECT_GT(weight, 0) << target;
        }
    }
}

TEST(WeightTable, HalvesByATent) {
    const WeightTable table(8, 4);
    const WeightTable::Span span = table.at(1);
    EXPECT_EQ(span.first, 1);
    EXPECT_EQ(weightsOf(span), (std::vector<float>{0.125F, 0.375F, 0.375F, 0.125F}));
}

TEST(WeightTable, KeepsEachPixelForTheSameLength) {
    const WeightTable table(5, 5);
    for (int i = 0; i < 5; ++i) {
        const WeightTable::Span span = table.at(i);
        for (int k = 0; k < span.count; ++k) {
            EXPECT_EQ(span.weights[k], span.first + k == i ? 1 : 0);
        }
    }
}

TEST(WeightTable, LooksAtFourPixelsWhenMadeLarger) {
    const WeightTable table(10, 20);
    const WeightTable::Span span = table.at(9);
    EXPECT_EQ(span.first, 3);
    ASSERT_EQ(span.count, 4);
    EXPECT_LT(span.weights[0], 0);
    EXPECT_GT(span.weights[1], 0.8F);
    EXPECT_GT(span.weights[2], 0.2F);
    EXPECT_LT(span.weights[3], 0);
}

TEST(WeightTable, IsSymmetric) {
    const WeightTable table(10, 23);
    for (int i = 0; i < 23; ++i) {
        const WeightTable::Span left = table.at(i);
        const WeightTable::Span right = table.at(22 - i);
        ASSERT_EQ(left.count, right.count);
        EXPECT_EQ(left.first, 10 - right.first - right.count);
        for (int k = 0; k < left.count; ++k) {
            EXPECT_NEAR(left.weights[k], right.weights[right.count - 1 - k], 1e-6);
        }
    }
}

}  // namespace
