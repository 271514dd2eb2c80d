#include "package/solid_data_cursor.h"

#include <gtest/gtest.h>

namespace {

const unsigned char kData[] = {1, 2, 3, 4, 5};

TEST(SolidDataCursor, RefusesPositionsOutsideTheBlock) {
    SolidDataCursor cursor(kData, 5);
    EXPECT_EQ(cursor.seekRelative(-1), CursorResult::kBadSeek);
    EXPECT_EQ(cursor.seekRelative(6), CursorResult::kBadSeek);
    EXPECT_EQ(cursor.position(), 0);
    EXPECT_EQ(cursor.seekRelative(5), CursorResult::kDone);
    EXPECT_EQ(cursor.position(), 5);
    EXPECT_EQ(cursor.seekRelative(-5), CursorResult::kDone);
    EXPECT_EQ(cursor.position(), 0);
}

TEST(SolidDataCursor, CopiesWhatIsLeftAndReportsThatItWasLess) {
    SolidDataCursor cursor(kData, 5);
    unsigned char out[4] = {};
    EXPECT_EQ(cursor.read(out, 4), CursorResult::kDone);
    EXPECT_EQ(out[3], 4);
    EXPECT_EQ(cursor.read(out, 4), CursorResult::kShortRead);
    EXPECT_EQ(out[0], 5);
    EXPECT_EQ(cursor.position(), 5);
    EXPECT_EQ(cursor.read(out, 0), CursorResult::kDone);
}

TEST(SolidDataCursor, PointsToBytesInPlaceOnlyIfAllAreThere) {
    SolidDataCursor cursor(kData, 5);
    const unsigned char* data = nullptr;
    EXPECT_EQ(cursor.readInPlace(3, data), CursorResult::kDone);
    EXPECT_EQ(data, kData);
    EXPECT_EQ(cursor.readInPlace(3, data), CursorResult::kShortRead);
    EXPECT_EQ(cursor.position(), 3);
    EXPECT_EQ(cursor.readInPlace(-1, data), CursorResult::kShortRead);
    EXPECT_EQ(cursor.readInPlace(2, data), CursorResult::kDone);
    EXPECT_EQ(*data, 4);
}

}  // namespace
