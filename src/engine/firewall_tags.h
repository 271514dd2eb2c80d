#pragma once

#include <string>

#include "contracts/system_modifications.h"
#include "engine/tag_context.h"

// The group `Firewall`, of which only the first in the description counts: ports and programs that may be
// reached from outside.
class FirewallTags {
public:
    explicit FirewallTags(TagContext context) : context_(context) {}

    // 0, or -1 when an exception couldn't be added. A firewall that is switched off is no failure.
    int apply(InstallerUI* ui);

private:
    FirewallResult applyChild(std::int32_t node, InstallerUI* ui);
    FirewallResult addPort(std::int32_t node, InstallerUI* ui);
    FirewallResult addApplication(std::int32_t node, InstallerUI* ui);
    std::uint8_t readProtocols(const std::string& words);
    void report(FirewallResult result, const std::string& text, InstallerUI* ui);

    TagContext context_;
};
