#include "engine/system_changes.h"

#include "description/expressions.h"
#include "description/pxml.h"

int SystemChanges::applyEnvironmentTags(InstallerUI*) {
    return refuse("Environment");
}

int SystemChanges::applyIniTags(InstallerUI*) {
    return refuse("IniFiles");
}

int SystemChanges::applyModifyFileTags(InstallerUI*) {
    return refuse("ModifyFiles");
}

int SystemChanges::applyShortcutTags(InstallerUI*) {
    return refuse("Shortcuts");
}

int SystemChanges::applyFirewallTags(InstallerUI*) {
    return refuse("Firewall");
}

int SystemChanges::runAdditionalActions(InstallerUI*, const char* container) {
    return container == nullptr ? -1 : refuse(container);
}

bool SystemChanges::isAskedFor(std::int32_t node) {
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    return !children.empty() &&
           expressions_.evaluateCondition(description_.getAttribute(node, "Condition")) != 0;
}

int SystemChanges::refuse(const char* group) {
    for (std::int32_t node = description_.findByName(group); node >= 0;
         node = description_.findByName(group, node)) {
        if (isAskedFor(node)) {
            console_->print("ERROR: The tags of <%s> are not carried out: this version can not do that",
                            group);
            return 1;
        }
    }
    return 0;
}
