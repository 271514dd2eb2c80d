#include "package/package_offset.h"

#include <gtest/gtest.h>

#include "package/little_endian.h"
#include "package/package_stamp.h"

namespace {

TEST(PackageOffset, ReadsTheFirstBytesOfTheMarkerWhereNothingIsStamped) {
    EXPECT_EQ(readStampedPackageOffset(), kUnstampedPackageOffset);
    const std::string marker = packageOffsetMarkerText();
    EXPECT_EQ(LittleEndian::readUnsigned(reinterpret_cast<const unsigned char*>(marker.data())),
              kUnstampedPackageOffset);
}

}  // namespace
