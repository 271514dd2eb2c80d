#include "package/solid_data_cursor.h"

#include <gtest/gtest.h>

namespace {

const unsigned char kData[] = {1, 2, 3, 4, 5};

TEST(SolidDataCursor, RefusesPlacesOutsideTheBlock) {
    SolidDataCursor cursor(kData, 5);
    EXPECT_EQ(cursor.seekRelative(-1), -12);
    EXPECT_EQ(cursor.seekRelative(6), -12);
    EXPECT_EQ(cursor.position(), 0);
    EXPECT_EQ(cursor.seekRelative(5), 0);
    EXPECT_EQ(cursor.position(), 5);
    EXPECT_EQ(cursor.seekRelative(-5), 0);
    EXPECT_EQ(cursor.position(), 0);
}

TEST(SolidDataCursor, CopiesWhatIsLeftAndTellsThatItWasLess) {
    SolidDataCursor cursor(kData, 5);
    unsigned char out[4] = {};
    EXPECT_EQ(cursor.read(out, 4), 0);
    EXPECT_EQ(out[3], 4);
    EXPECT_EQ(cursor.read(out, 4), -11);
    EXPECT_EQ(out[0], 5);
    EXPECT_EQ(cursor.position(), 5);
    EXPECT_EQ(cursor.read(out, 0), 0);
}

TEST(SolidDataCursor, GivesBytesInPlaceOnlyWhole) {
    SolidDataCursor cursor(kData, 5);
    const unsigned char* data = nullptr;
    EXPECT_EQ(cursor.readInPlace(3, data), 0);
    EXPECT_EQ(data, kData);
    EXPECT_EQ(cursor.readInPlace(3, data), -11);
    EXPECT_EQ(cursor.position(), 3);
    EXPECT_EQ(cursor.readInPlace(-1, data), -11);
    EXPECT_EQ(cursor.readInPlace(2, data), 0);
    EXPECT_EQ(*data, 4);
}

}  // namespace
