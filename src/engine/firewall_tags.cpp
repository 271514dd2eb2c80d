#include "engine/firewall_tags.h"

#include <cstring>

#include "base/text_functions.h"
#include "engine/action_log_format.h"

namespace {

constexpr const char* kBothProtocols = "TCP;UDP";

}  // namespace

int FirewallTags::apply(InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const std::int32_t group = tags.firstOf("Firewall");
    // The description's first element is never a group.
    if (group <= 0 || !tags.conditionHolds(group)) {
        return 0;
    }
    int result = 0;
    for (const std::int32_t node : tags.childrenOf(group)) {
        if (applyChild(node, ui) == FirewallResult::kFailed) {
            result = -1;
        }
    }
    Report(ui, &context_.errors).flushLines();
    return result;
}

// kDone for what is skipped.
FirewallResult FirewallTags::applyChild(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    if (tags.textOf(node) == nullptr || !tags.conditionHolds(node)) {
        return FirewallResult::kDone;
    }
    if (std::strcmp(tags.nameOf(node), "Port") == 0 && tags.hasAttribute(node, "Port")) {
        return addPort(node, ui);
    }
    if (std::strcmp(tags.nameOf(node), "Application") == 0 && tags.hasAttribute(node, "Target")) {
        return addApplication(node, ui);
    }
    return FirewallResult::kDone;
}

FirewallResult FirewallTags::addPort(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const char* words = tags.attribute(node, "Protocol");
    const std::string protocols = words == nullptr ? kBothProtocols : words;
    FirewallPortRule rule;
    rule.port = OUtils::textToInteger(tags.attribute(node, "Port"));
    rule.name = tags.expand(tags.textOf(node)).substr(0, FirewallPortRule::kNameLimit);
    rule.protocols = readProtocols(protocols);

    const FirewallResult result = context_.modifications.firewallAddPort(rule);
    const std::string port = std::to_string(rule.port);
    report(result, "port " + port, ui);
    if (result == FirewallResult::kDone) {
        context_.log.writeRecord(ActionLogFormat::kFirewall,
                                 {ActionLogFormat::kPort, port, protocols, rule.name});
    } else if (result == FirewallResult::kFailed) {
        context_.debugLog.print("ERROR: Adding firewall port: %s (%s)", port.c_str(), rule.name.c_str());
    }
    return result;
}

FirewallResult FirewallTags::addApplication(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const std::string target = normalizedPath(tags.expandAttribute(node, "Target"));
    const std::string name = tags.expand(tags.textOf(node));
    const FirewallResult result = context_.modifications.firewallAddApplication(target.c_str(), name.c_str());
    report(result, "exception for application: " + target, ui);
    if (result == FirewallResult::kDone) {
        context_.log.writeRecord(ActionLogFormat::kFirewall, {ActionLogFormat::kApplication, target});
    } else if (result == FirewallResult::kFailed) {
        context_.debugLog.print("ERROR: Adding firewall app: %s (%s)", target.c_str(), name.c_str());
    }
    return result;
}

std::uint8_t FirewallTags::readProtocols(const std::string& words) {
    std::vector<std::string> list;
    OUtils::splitText(words.c_str(), ';', list);
    std::uint8_t protocols = 0;
    for (const std::string& word : list) {
        if (word == "TCP") {
            protocols |= kFirewallTcp;
        } else if (word == "UDP") {
            protocols |= kFirewallUdp;
        } else {
            context_.debugLog.print(
                "WARNING: (Firewall): Unrecognized attribute token for protocol specification");
        }
    }
    return protocols;
}

void FirewallTags::report(FirewallResult result, const std::string& text, InstallerUI* ui) {
    if (ui == nullptr) {
        return;
    }
    Report report(ui, &context_.errors);
    const std::string line = result == FirewallResult::kNotAvailable
                                 ? "Firewall: Service is NOT switched on and no exceptions can be added!"
                                 : std::string("Firewall: ") +
                                       (result == FirewallResult::kDone ? "Added " : "FAILED to add ") + text;
    report.addLine(line, false);
    if (result != FirewallResult::kDone) {
        report.addError(line);
    }
}
