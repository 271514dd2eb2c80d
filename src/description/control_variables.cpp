#include "description/control_variables.h"

#include <span>
#include <string>
#include <vector>

#include "base/text_functions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "support/debug_log.h"

namespace {

constexpr std::span kTags(vocabulary::kControlVariables);
static_assert(kTags.size() == kControlVariableCount);

std::int32_t findTag(const PXML& description, const std::vector<std::int32_t>& nodes, std::string_view tag) {
    for (const std::int32_t node : nodes) {
        if (OUtils::equalsIgnoreCase(description.getName(node), tag)) {
            return node;
        }
    }
    return -1;
}

}  // namespace

std::string_view ControlVariables::tagOf(ControlVariable role) {
    return kTags[static_cast<std::size_t>(role)];
}

bool ControlVariables::read(const PXML& description, DebugLog debugLog) {
    names_ = {};
    const std::int32_t section = vocabulary::findElement(description, "InstallerControlVariables");
    if (section < 0) {
        return false;
    }
    const std::vector<std::int32_t> nodes = description.childrenOf(section);
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const std::int32_t node = findTag(description, nodes, kTags[i]);
        names_[i].assign(description.getText(node).value_or(std::string_view()));
        if (names_[i].isEmpty()) {
            debugLog.line("WARNING: Missing " +
                          std::string(node < 0 ? "control variable" : "tag data for variable") +
                          " specifier in the installation template. (tag " + std::string(kTags[i]) + ")");
        }
    }
    return true;
}

std::string_view ControlVariables::nameOf(ControlVariable role) const {
    return names_[static_cast<std::size_t>(role)].view();
}
