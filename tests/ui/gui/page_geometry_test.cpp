#include "ui/gui/page_geometry.h"

#include <limits>

#include <gtest/gtest.h>

#include "description/dialog_model.h"

namespace {

TEST(PageGeometryTest, CutsFractionsOfScaledLengths) {
    const PageGeometry geometry(1.25, {800, 600});
    EXPECT_EQ(geometry.scaled(3), 3);
    EXPECT_EQ(geometry.scaled(-3), -3);
    EXPECT_EQ(geometry.scaled(100), 125);
}

TEST(PageGeometryTest, BoundsLengthsThatNoScreenHas) {
    const PageGeometry geometry(2.0, {800, 600});
    EXPECT_EQ(geometry.scaled(std::numeric_limits<int>::max()), PageGeometry::kMaxLength);
    EXPECT_EQ(geometry.scaled(std::numeric_limits<int>::min()), -PageGeometry::kMaxLength);
}

TEST(PageGeometryTest, NegativeWidthsCountFromTheRightEdge) {
    const PageGeometry geometry(1.0, {800, 600});
    EXPECT_EQ(geometry.placeOf({180, 0, -20, 30}), (Place{180, 0, 600, 30}));
}

TEST(PageGeometryTest, NegativeHeightsCountFromTheLowerEdge) {
    const PageGeometry geometry(2.0, {800, 600});
    EXPECT_EQ(geometry.placeOf({10, 50, 20, -30}), (Place{20, 100, 40, 440}));
}

TEST(PageGeometryTest, RightAlignedPlacesCountFromTheRightEdge) {
    const PageGeometry geometry(1.0, {750, 600});
    EXPECT_EQ(geometry.placeOf({100, 5, 80, 30, kAlignRight, kAlignTop}), (Place{650, 5, 80, 30}));
}

TEST(PageGeometryTest, BottomAlignedPlacesCountFromTheLowerEdge) {
    const PageGeometry geometry(1.5, {750, 600});
    EXPECT_EQ(geometry.placeOf({100, 50, 80, 30, kAlignLeft, kAlignBottom}), (Place{150, 525, 120, 45}));
}

}  // namespace
