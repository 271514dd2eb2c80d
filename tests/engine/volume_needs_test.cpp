#include "engine/volume_needs.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

class VolumeNeedsTest : public testing::Test {
protected:
    MemoryFileSystem files_;
    VolumeNeeds needs_{files_};
};

TEST_F(VolumeNeedsTest, CountsDirectoriesOfOneVolumeTogether) {
    files_.setVolume("/big");
    needs_.at("/big/a").after += 10;
    needs_.at("/small").after += 1;
    needs_.at("/big/b/c").after += 5;
    ASSERT_EQ(needs_.all().size(), 2U);
    EXPECT_EQ(needs_.all()[0].bytes(), 15);
    EXPECT_EQ(needs_.all()[0].directory, "/big/a");
    EXPECT_EQ(needs_.all()[0].volume.name, "/big");
    EXPECT_EQ(needs_.all()[1].bytes(), 1);
    EXPECT_FALSE(needs_.unknown());
}

TEST_F(VolumeNeedsTest, ComparesVolumes) {
    files_.setVolume("/big");
    EXPECT_TRUE(needs_.isOneVolume("/a", "/b"));
    EXPECT_TRUE(needs_.isOneVolume("/big/a", "/big"));
    EXPECT_FALSE(needs_.isOneVolume("/a", "/big/a"));
}

TEST_F(VolumeNeedsTest, FollowsALinkToAnotherVolume) {
    files_.setVolume("/big");
    files_.addDirectory("/big/product");
    files_.addLink("/product", "/big/product");
    EXPECT_TRUE(needs_.isOneVolume("/product", "/big"));
}

TEST_F(VolumeNeedsTest, WhatGoesMakesRoomOnlyForWhatComesAfterIt) {
    VolumeNeeds::Need& need = needs_.at("/a");
    need.before = 30;
    need.freed = 100;
    need.after = 90;
    EXPECT_EQ(need.bytes(), 30);
    need.after = 120;
    EXPECT_EQ(need.bytes(), 50);
    need.passing = 7;
    EXPECT_EQ(need.bytes(), 57);
}

TEST_F(VolumeNeedsTest, NamesTheFirstVolumeThatCannotBeAsked) {
    files_.setVolume("/odd");
    files_.reportFreeSpace("/odd", -1);
    needs_.at("/odd/a").after += 10;
    needs_.at("/odd/b").after += 10;
    EXPECT_TRUE(needs_.all().empty());
    ASSERT_TRUE(needs_.unknown());
    EXPECT_EQ(needs_.unknown()->directory, "/odd/a");
    EXPECT_EQ(needs_.unknown()->status, MemoryFileSystem::kAccessDenied);
}

}  // namespace
