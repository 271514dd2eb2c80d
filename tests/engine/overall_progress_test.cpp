#include "engine/overall_progress.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Shares = std::vector<int>;

class OverallProgressTest : public testing::Test {
protected:
    OverallProgressTest() {
        progress_.showOn([this](int percent) { shown_.push_back(percent); });
    }

    Shares shown_;
    OverallProgress progress_;
};

TEST_F(OverallProgressTest, IsMadeOfTheWeightsOfItsStages) {
    progress_.plan(JobStage::kUndo, 100);
    progress_.plan(JobStage::kCopy, 300);
    progress_.begin(JobStage::kUndo);
    progress_.share(50);
    progress_.begin(JobStage::kCopy);
    progress_.advance(100);
    progress_.advance(200);
    progress_.finish();
    EXPECT_EQ(shown_, (Shares{0, 12, 25, 50, 99, 100}));
}

TEST_F(OverallProgressTest, NeverGoesBack) {
    progress_.plan(JobStage::kBackUp, 100);
    progress_.plan(JobStage::kUndo, 100);
    progress_.begin(JobStage::kBackUp);
    progress_.share(80);
    progress_.share(20);
    progress_.begin(JobStage::kUndo);
    progress_.share(0);
    EXPECT_EQ(shown_, (Shares{0, 40, 50}));
}

TEST_F(OverallProgressTest, CountsStagesThatAreLeftOutAsDone) {
    progress_.plan(JobStage::kUndo, 100);
    progress_.plan(JobStage::kCopy, 50);
    progress_.plan(JobStage::kActions, 50);
    progress_.begin(JobStage::kActions);
    EXPECT_EQ(shown_, Shares{75});
    progress_.begin(JobStage::kCopy);  // is over
    progress_.advance(50);
    EXPECT_EQ(shown_, (Shares{75, 99}));
}

TEST_F(OverallProgressTest, AStageNeverCountsMoreThanItsWeight) {
    progress_.plan(JobStage::kCopy, 100);
    progress_.plan(JobStage::kFinish, 100);
    progress_.begin(JobStage::kCopy);
    progress_.advance(1000);
    progress_.advance(-5);
    progress_.share(7);  // it advances by weight
    EXPECT_EQ(shown_, (Shares{0, 50}));
}

TEST_F(OverallProgressTest, TwoStagesOfOneKindAreTwoStages) {
    progress_.plan(JobStage::kUndo, 100);
    progress_.plan(JobStage::kUndo, 100);
    progress_.begin(JobStage::kUndo);
    progress_.share(100);
    progress_.begin(JobStage::kUndo);
    progress_.share(50);
    EXPECT_EQ(shown_, (Shares{0, 50, 75}));
}

TEST_F(OverallProgressTest, WithoutAPlanOnlyTheEndIsShown) {
    progress_.begin(JobStage::kCopy);
    progress_.advance(10);
    EXPECT_EQ(shown_, Shares{});
    progress_.plan(JobStage::kCopy, -1);
    progress_.finish();
    progress_.finish();
    EXPECT_EQ(shown_, Shares{100});
}

TEST_F(OverallProgressTest, NobodyNeedsToLook) {
    OverallProgress unseen;
    unseen.plan(JobStage::kCopy, 1);
    unseen.begin(JobStage::kCopy);
    unseen.finish();
    EXPECT_TRUE(unseen.isPlanned());
}

}  // namespace
