#include "package/package_offset.h"

#include "package/little_endian.h"
#include "package/package_layout.h"

// Volatile, so that the compiler can't take the text for what the file will hold when it runs; not static, so
// that it is laid out as it stands. It may occur only once in the image: the packaging tool refuses any other
// number.
extern volatile char packageOffsetMarker[];
alignas(4) volatile char packageOffsetMarker[] = "_BINARYIMAGEOFFSET_";

static_assert(sizeof("_BINARYIMAGEOFFSET_") == PackageLayout::kMarkerSize);

std::uint32_t readStampedPackageOffset() {
    unsigned char bytes[PackageLayout::kStampSize];
    for (std::size_t i = 0; i < sizeof(bytes); ++i) {
        bytes[i] = static_cast<unsigned char>(packageOffsetMarker[i]);
    }
    return LittleEndian::readUnsigned(bytes);
}
