#include "package/package_stamp.h"

#include <algorithm>

#include "package/little_endian.h"
#include "package/package_layout.h"

namespace {

// The position of the first occurrence, or npos; `outSeveral` when there are more.
std::size_t findOnly(std::string_view image, std::string_view text, bool& outSeveral) {
    const std::size_t first = image.find(text);
    outSeveral = first != std::string_view::npos && image.find(text, first + 1) != std::string_view::npos;
    return first;
}

}  // namespace

std::string packageOffsetMarkerText() {
    std::string text = "_TESFFOEGAMIYRANIB_";
    std::reverse(text.begin(), text.end());
    text.push_back('\0');
    return text;
}

StampResult stampPackageOffset(std::string& image, std::uint32_t offset) {
    bool several = false;
    const std::size_t position = findOnly(image, packageOffsetMarkerText(), several);
    if (position == std::string::npos) {
        return StampResult::kNoMarker;
    }
    if (several) {
        return StampResult::kSeveralMarkers;
    }
    LittleEndian::writeUnsigned(reinterpret_cast<unsigned char*>(image.data() + position), offset);
    return StampResult::kStamped;
}

std::optional<std::uint32_t> findStampedOffset(std::string_view image) {
    const std::string rest = packageOffsetMarkerText().substr(PackageLayout::kStampSize);
    bool several = false;
    const std::size_t position = findOnly(image, rest, several);
    if (position == std::string_view::npos || several || position < PackageLayout::kStampSize) {
        return std::nullopt;
    }
    return LittleEndian::readUnsigned(
        reinterpret_cast<const unsigned char*>(image.data() + position - PackageLayout::kStampSize));
}
