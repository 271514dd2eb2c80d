#include "installer/version_option.h"

#include "base/revision.h"
#include "description/pxml.h"
#include "description/unknown_names.h"
#include "installer/package_description.h"
#include "session/command_line_parameters.h"

namespace {

constexpr const char* kVersionOption = "version";

}  // namespace

bool asksForVersion(const CommandLineParameters& parameters, const std::string& binFile,
                    platform::Platform& platform) {
    if (parameters.find(kVersionOption) != std::string_view("")) {
        return false;
    }
    PXML description;
    readPackageDescription(binFile, platform, description);
    return !optionsReadBy(description).contains(kVersionOption);
}

std::string versionLine() {
    return std::string("Tandrel installer ") + kProgramVersion + ", revision " + kBuildRevision + "\n";
}
