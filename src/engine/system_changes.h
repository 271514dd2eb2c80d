#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/session_log.h"

class Expressions;
class InstallerUI;
class PXML;

// The tags of the description that change the system beside files. This version carries none of them out: a
// description without them succeeds, one that asks for them fails, and the log says so.
class SystemChanges {
public:
    SystemChanges(const PXML& description, Expressions& expressions, SessionLog console)
        : description_(description), expressions_(expressions), console_(console) {}

    // The children of containers that are actions.
    static std::vector<std::string_view> actionNames();

    // All: 0, or 1 when the description holds a group of the kind with a child and a true condition.
    int applyEnvironmentTags(InstallerUI* ui);
    int applyIniTags(InstallerUI* ui);
    int applyModifyFileTags(InstallerUI* ui);
    int applyShortcutTags(InstallerUI* ui);
    int applyFirewallTags(InstallerUI* ui);
    // The containers of this name, which may also be pages: only children that are actions count.
    int runAdditionalActions(InstallerUI* ui, const char* container);

private:
    using ChildTest = bool (*)(const char* name);

    bool isAskedFor(std::int32_t node, ChildTest isTag);
    int refuse(const char* group, ChildTest isTag);

    const PXML& description_;
    Expressions& expressions_;
    SessionLog console_;
};
