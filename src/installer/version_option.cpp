#include "installer/version_option.h"

#include <cstdint>

#include "base/revision.h"
#include "description/pxml.h"
#include "description/unknown_names.h"
#include "package/cabinet.h"
#include "package/package_offset.h"
#include "platform/environment.h"
#include "platform/platform.h"
#include "session/command_line_parameters.h"

namespace {

constexpr const char* kVersionOption = "version";
constexpr std::string_view kDescriptionAlias = "install.xml";

bool readsVersion(const std::string& package, std::int64_t offset, platform::FileSystem& files) {
    Cabinet cabinet(files, DebugLog());
    if (cabinet.load(package, offset) != Cabinet::LoadResult::kLoaded) {
        return false;
    }
    const std::optional<std::int32_t> index = cabinet.findAlias(kDescriptionAlias);
    const std::optional<std::string_view> text = index ? cabinet.entryContent(*index) : std::nullopt;
    PXML description;
    description.parseText(text.value_or(""));
    return optionsReadBy(description).contains(kVersionOption);
}

}  // namespace

bool asksForVersion(const CommandLineParameters& parameters, const std::string& binFile,
                    platform::Platform& platform) {
    if (parameters.find(kVersionOption) != std::string_view("")) {
        return false;
    }
    if (!binFile.empty()) {
        return !readsVersion(binFile, 0, platform.files);
    }
    const std::uint32_t offset = readStampedPackageOffset();
    std::string program;
    return offset == kUnstampedPackageOffset || !platform.environment.programPath(program) ||
           !readsVersion(program, offset, platform.files);
}

std::string versionLine() {
    return std::string("Tandrel installer ") + kProgramVersion + ", revision " + kBuildRevision + "\n";
}
