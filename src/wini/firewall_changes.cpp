#include "wini/firewall_changes.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "wini/firewall_operations.h"
#include "wini/undo_text.h"

namespace {

constexpr const char* kApplication = "App";
constexpr const char* kPort = "Port";
constexpr char kProtocolSeparator = ';';
constexpr std::int32_t kLastPort = 65535;

struct Protocol {
    std::uint8_t bit;
    const char* word;
};
// In the order of their handling.
constexpr Protocol kProtocols[] = {{kFirewallTcp, "TCP"}, {kFirewallUdp, "UDP"}};
constexpr std::uint8_t kAllProtocols = kFirewallTcp | kFirewallUdp;

void requireProtocol(std::uint8_t protocols) {
    if ((protocols & kAllProtocols) == 0) {
        throw GenericError("Invalid firewall protocol or none specified!");
    }
}

// An empty path is refused by what would have to add it.
bool canBeUndone(const char* path) {
    return UndoText::isLastField(path) &&
           UndoText::fitsRecord(ActionLogFormat::kFirewall,
                                UndoText::of({ActionLogFormat::kApplication, path}));
}

// Two rules of one name could not be told apart.
std::string nameOf(const FirewallPortRule& rule, const Protocol& protocol) {
    const bool both = (rule.protocols & kAllProtocols) == kAllProtocols;
    return both ? rule.name + " " + protocol.word : rule.name;
}

}  // namespace

template <typename Action>
FirewallResult FirewallChanges::carryOut(const char* family, Action action) {
    try {
        action();
        return FirewallResult::kDone;
    } catch (const NonFatalError& error) {
        debugLog_.print("WARNING: (Firewall %s) %s", family, error.what());
        return FirewallResult::kNotAvailable;
    } catch (const GenericError& error) {
        debugLog_.print("ERROR: (Firewall %s) %s", family, error.what());
        return FirewallResult::kFailed;
    }
}

FirewallResult FirewallChanges::addApplication(const char* path, const char* name) {
    if (path == nullptr || name == nullptr) {
        return FirewallResult::kFailed;
    }
    return carryOut(kApplication, [&] {
        if (!canBeUndone(path)) {
            throw GenericError("The action log can not hold the application %s!", path);
        }
        FirewallOperations(firewall_).addApplication(path, name);
    });
}

FirewallResult FirewallChanges::removeApplication(const char* path) {
    if (path == nullptr) {
        return FirewallResult::kFailed;
    }
    return carryOut(kApplication, [&] { FirewallOperations(firewall_).removeApplication(path); });
}

FirewallResult FirewallChanges::addPort(const FirewallPortRule& rule) {
    return carryOut(kPort, [&] {
        FirewallOperations firewall(firewall_);
        requireProtocol(rule.protocols);
        addPorts(firewall, rule);
    });
}

// A failed rule leaves no record, so what it has opened so far would stay open for good.
void FirewallChanges::addPorts(FirewallOperations& firewall, const FirewallPortRule& rule) {
    std::uint8_t opened = 0;
    try {
        for (const Protocol& protocol : kProtocols) {
            if ((rule.protocols & protocol.bit) != 0 &&
                firewall.addPort(rule.port, protocol.bit, nameOf(rule, protocol).c_str())) {
                opened |= protocol.bit;
            }
        }
    } catch (const GenericError&) {
        if (opened != 0) {
            carryOut(kPort, [&] { firewall.removePort(rule.port, opened); });
        }
        throw;
    }
}

std::uint8_t FirewallChanges::protocolsOf(const char* words, const char* logText) {
    std::vector<std::string> list;
    OUtils::splitText(words, kProtocolSeparator, list);
    std::uint8_t protocols = 0;
    for (const std::string& word : list) {
        std::uint8_t bit = 0;
        for (const Protocol& protocol : kProtocols) {
            bit = word == protocol.word ? protocol.bit : bit;
        }
        if (bit == 0) {
            debugLog_.print("WARNING: Malformed action log entry for firewall port: \"%s\"", logText);
        }
        protocols |= bit;
    }
    return protocols;
}

FirewallResult FirewallChanges::removePort(const char* logText) {
    if (logText == nullptr) {
        return FirewallResult::kFailed;
    }
    FirewallResult ports = FirewallResult::kDone;
    const FirewallResult result = carryOut(kPort, [&] {
        FirewallPortRule rule = readRecord(logText);
        FirewallOperations firewall(firewall_);
        ports = removePorts(firewall, rule);
    });
    return std::max(result, ports);
}

FirewallPortRule FirewallChanges::readRecord(const char* logText) {
    std::vector<std::string> fields;
    OUtils::splitText(logText, ActionLogFormat::kSeparator, fields);
    FirewallPortRule rule;
    rule.port = fields.empty() ? 0 : OUtils::textToInteger(fields[0].c_str());
    if (fields.size() < 2 || fields[1].empty() || rule.port < 1 || rule.port > kLastPort) {
        throw GenericError("Invalid firewall port action log entry: \"%s\"", logText);
    }
    rule.protocols = protocolsOf(fields[1].c_str(), logText);
    requireProtocol(rule.protocols);
    return rule;
}

// One that can't be closed doesn't keep the other open.
FirewallResult FirewallChanges::removePorts(FirewallOperations& firewall, const FirewallPortRule& rule) {
    FirewallResult result = FirewallResult::kDone;
    for (const Protocol& protocol : kProtocols) {
        if ((rule.protocols & protocol.bit) != 0) {
            result = std::max(result, carryOut(kPort, [&] { firewall.removePort(rule.port, protocol.bit); }));
        }
    }
    return result;
}
