#include "description/control_variables.h"

#include <vector>

#include "base/text_functions.h"
#include "description/pxml.h"
#include "support/debug_log.h"

namespace {

constexpr const char* kTags[] = {
    "PreviousInstallation", "LegacyInstallation", "ShouldUninstall",
    "CustomizeSettings",    "ProgressDetails",    "InstallError",
    "UninstallError",       "DlgCondition",       "ExternalLegacyInstallation",
};
static_assert(std::size(kTags) == kControlVariableCount);

std::int32_t findTag(const PXML& description, const std::vector<std::int32_t>& nodes, const char* tag) {
    for (const std::int32_t node : nodes) {
        if (OUtils::equalsIgnoreCase(description.getName(node), tag)) {
            return node;
        }
    }
    return -1;
}

}  // namespace

const char* ControlVariables::tagOf(ControlVariable role) {
    return kTags[static_cast<std::size_t>(role)];
}

int ControlVariables::read(const PXML& description, DebugLog debugLog) {
    for (auto& name : names_) {
        name.assign("");
    }
    const std::int32_t section = description.findByName("InstallerControlVariables");
    if (section < 0) {
        return 1;
    }
    std::vector<std::int32_t> nodes;
    description.listChildren(section, nodes);
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const std::int32_t node = findTag(description, nodes, kTags[i]);
        const char* text = description.getText(node);
        names_[i].assign(text);
        if (!names_[i].isEmpty()) {
            continue;
        }
        if (node < 0) {
            debugLog.print(
                "WARNING: Missing control variable specifier in the installation template. (tag %s)",
                kTags[i]);
        } else {
            debugLog.print(
                "WARNING: Missing tag data for variable specifier in the installation template. (tag %s)",
                kTags[i]);
        }
    }
    return 0;
}

const char* ControlVariables::nameOf(ControlVariable role) const {
    return names_[static_cast<std::size_t>(role)].c_str();
}
