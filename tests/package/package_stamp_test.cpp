#include "package/package_stamp.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

// Assembled here, so that this program contains the whole text only where the package layer has it.
std::string marker() {
    return std::string("_BINARY") + "IMAGE" + "OFFSET_" + '\0';
}

TEST(PackageStamp, KnowsTheMarker) {
    EXPECT_EQ(packageOffsetMarkerText(), marker());
    EXPECT_EQ(packageOffsetMarkerText().size(), 20U);
}

TEST(PackageStamp, OverwritesTheFirstFourBytes) {
    std::string image = "head" + marker() + "tail";
    EXPECT_EQ(stampPackageOffset(image, 0x01020304), StampResult::kStamped);
    EXPECT_EQ(image, "head\x04\x03\x02\x01" + marker().substr(4) + "tail");
    EXPECT_EQ(findStampedOffset(image), 0x01020304U);
}

TEST(PackageStamp, LeavesAnImageAloneUnlessItHasOneMarker) {
    std::string none = "no marker _BINARYIMAGE";
    EXPECT_EQ(stampPackageOffset(none, 1), StampResult::kNoMarker);
    std::string unterminated = marker().substr(0, 19) + "x";
    EXPECT_EQ(stampPackageOffset(unterminated, 1), StampResult::kNoMarker);
    const std::string twice = marker() + marker();
    std::string changed = twice;
    EXPECT_EQ(stampPackageOffset(changed, 1), StampResult::kSeveralMarkers);
    EXPECT_EQ(changed, twice);
}

TEST(PackageStamp, FindsNoOffsetWhenItIsAmbiguous) {
    EXPECT_FALSE(findStampedOffset(""));
    EXPECT_FALSE(findStampedOffset(marker().substr(4)));  // no room for the number
    EXPECT_FALSE(findStampedOffset(marker() + marker()));
}

}  // namespace
