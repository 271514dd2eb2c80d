#include "package/package_offset.h"

#include "package/little_endian.h"
#include "package/package_layout.h"

// Volatile, so that the compiler can't assume that the running file still holds this text; not static, so
// that it is laid out as it is. It may occur only once in the image: otherwise the packaging tool refuses the
// image.
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
