#include "installer/package_description.h"

#include <cstdint>

#include "description/pxml.h"
#include "package/cabinet.h"
#include "package/package_offset.h"
#include "platform/environment.h"
#include "platform/platform.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";

PackageKind read(const std::string& package, std::int64_t offset, platform::FileSystem& files,
                 PXML& outDescription) {
    Cabinet cabinet(files, DebugLog());
    if (cabinet.load(package, offset) != Cabinet::LoadResult::kLoaded) {
        return PackageKind::kUnreadable;
    }
    const std::optional<std::int32_t> index = cabinet.findAlias(kDescriptionAlias);
    const std::optional<std::string_view> text = index ? cabinet.entryContent(*index) : std::nullopt;
    outDescription.parseText(text.value_or(""));
    return text ? PackageKind::kReadable : PackageKind::kUnreadable;
}

}  // namespace

PackageKind readPackageDescription(const std::string& binFile, platform::Platform& platform,
                                   PXML& outDescription) {
    if (!binFile.empty()) {
        return read(binFile, 0, platform.files, outDescription);
    }
    const std::uint32_t offset = readStampedPackageOffset();
    if (offset == kUnstampedPackageOffset) {
        return PackageKind::kNone;
    }
    std::string program;
    return platform.environment.programPath(program) ? read(program, offset, platform.files, outDescription)
                                                     : PackageKind::kUnreadable;
}
