#include "engine/system_changes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "description/expressions.h"
#include "description/pxml.h"

namespace {

constexpr std::string_view kActions[] = {"OpenDocument", "OpenURL",    "RunProgram", "CopyFile",
                                         "Registry",     "RemoveFile", "RemoveDir",  "CreateFile"};

bool isAction(const char* name) {
    return name != nullptr && std::ranges::find(kActions, std::string_view(name)) != std::end(kActions);
}

bool isAny(const char*) {
    return true;
}

}  // namespace

std::vector<std::string_view> SystemChanges::actionNames() {
    return {std::begin(kActions), std::end(kActions)};
}

int SystemChanges::applyEnvironmentTags(InstallerUI*) {
    return refuse("Environment", isAny);
}

int SystemChanges::applyIniTags(InstallerUI*) {
    return refuse("IniFiles", isAny);
}

int SystemChanges::applyModifyFileTags(InstallerUI*) {
    return refuse("ModifyFiles", isAny);
}

int SystemChanges::applyShortcutTags(InstallerUI*) {
    return refuse("Shortcuts", isAny);
}

int SystemChanges::applyFirewallTags(InstallerUI*) {
    return refuse("Firewall", isAny);
}

int SystemChanges::runAdditionalActions(InstallerUI*, const char* container) {
    return container == nullptr ? -1 : refuse(container, isAction);
}

bool SystemChanges::isAskedFor(std::int32_t node, ChildTest isTag) {
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    const bool holdsTags =
        std::ranges::any_of(children, [&](std::int32_t child) { return isTag(description_.getName(child)); });
    return holdsTags && expressions_.evaluateCondition(description_.getAttribute(node, "Condition")) != 0;
}

int SystemChanges::refuse(const char* group, ChildTest isTag) {
    for (std::int32_t node = description_.findByName(group); node >= 0;
         node = description_.findByName(group, node)) {
        if (isAskedFor(node, isTag)) {
            console_->print("ERROR: The tags of <%s> are not carried out: this version can not do that",
                            group);
            return 1;
        }
    }
    return 0;
}
