#include "engine/changes/firewall_change.h"

#include <algorithm>
#include <vector>

#include "base/errors.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_record.h"
#include "engine/changes/record_text.h"
#include "engine/description_tags.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "platform/written_path.h"

namespace {

namespace Format = ActionLogFormat;

constexpr const char* kApplicationFamily = "App";
constexpr const char* kPortFamily = "Port";
constexpr std::string_view kBothProtocols = "TCP;UDP";
constexpr char kProtocolSeparator = ';';
constexpr std::int32_t kLastPort = 65535;

struct Protocol {
    std::uint8_t bit;
    vocabulary::WordName word;
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
bool canBeUndone(std::string_view path) {
    return RecordText::isLastField(path) &&
           RecordText::fits(Format::kFirewall, RecordText::join({Format::kApplication, path}));
}

// Two rules of one name could not be told apart.
std::string nameOf(const FirewallPortRule& rule, const Protocol& protocol) {
    const bool both = (rule.protocols & kAllProtocols) == kAllProtocols;
    return both ? rule.name + " " + std::string(protocol.word) : rule.name;
}

template <typename Action>
FirewallAttempt carryOut(const DebugLog& debugLog, const char* family, Action action) {
    try {
        action();
        return {};
    } catch (const NonFatalError& error) {
        debugLog.print("WARNING: (Firewall %s) %s", family, error.what());
        return {FirewallResult::kNotAvailable};
    } catch (const FirewallError& error) {
        debugLog.print("ERROR: (Firewall %s) %s", family, error.what());
        return {FirewallResult::kFailed, error.error()};
    } catch (const GenericError& error) {
        debugLog.print("ERROR: (Firewall %s) %s", family, error.what());
        return {FirewallResult::kFailed};
    }
}

const FirewallAttempt& worseOf(const FirewallAttempt& one, const FirewallAttempt& other) {
    return one.result < other.result ? other : one;
}

// A failed rule leaves no record, so what it has opened so far would stay open for good.
void openProtocols(FirewallOperations& firewall, const DebugLog& debugLog, const FirewallPortRule& rule) {
    std::uint8_t opened = 0;
    try {
        for (const Protocol& protocol : kProtocols) {
            if ((rule.protocols & protocol.bit) != 0 &&
                firewall.addPort(rule.port, protocol.bit, nameOf(rule, protocol))) {
                opened |= protocol.bit;
            }
        }
    } catch (const GenericError&) {
        if (opened != 0) {
            carryOut(debugLog, kPortFamily, [&] { firewall.removePort(rule.port, opened); });
        }
        throw;
    }
}

// Other words are logged, each, and skipped.
std::uint8_t protocolsOf(const std::string& words, const std::string& warning, const DebugLog& debugLog) {
    const std::vector<std::string> list = OUtils::splitText(words, kProtocolSeparator);
    std::uint8_t protocols = 0;
    for (const std::string& word : list) {
        const auto* found = std::ranges::find(kProtocols, std::string_view(word), &Protocol::word);
        if (found == std::end(kProtocols)) {
            debugLog.line(warning);
        } else {
            protocols |= found->bit;
        }
    }
    return protocols;
}

FirewallPortRule readRecord(std::string_view fields, const DebugLog& debugLog) {
    const std::vector<std::string_view> parts = RecordText::splitAll(fields);
    FirewallPortRule rule;
    rule.port = parts.empty() ? 0 : OUtils::textToInteger(parts[0]);
    if (parts.size() < 2 || parts[1].empty() || rule.port < 1 || rule.port > kLastPort) {
        throw GenericError("Invalid firewall port action log entry: \"%s\"", std::string(fields).c_str());
    }
    rule.protocols = protocolsOf(
        std::string(parts[1]),
        "WARNING: Malformed action log entry for firewall port: \"" + std::string(fields) + "\"", debugLog);
    requireProtocol(rule.protocols);
    return rule;
}

// One that can't be closed doesn't keep the other open.
FirewallAttempt closeProtocols(FirewallOperations& firewall, const DebugLog& debugLog,
                               const FirewallPortRule& rule) {
    FirewallAttempt worst;
    for (const Protocol& protocol : kProtocols) {
        if ((rule.protocols & protocol.bit) != 0) {
            worst = worseOf(worst, carryOut(debugLog, kPortFamily,
                                            [&] { firewall.removePort(rule.port, protocol.bit); }));
        }
    }
    return worst;
}

}  // namespace

bool FirewallChange::apply() {
    DescriptionTags& tags = context_.tags;
    const std::int32_t group = tags.firstOf("Firewall");
    // The description's first element is never a group.
    if (group <= 0 || !tags.conditionHolds(group)) {
        return true;
    }
    bool succeeded = true;
    for (const std::int32_t node : tags.childrenOf(group)) {
        succeeded = applyChild(node) != FirewallResult::kFailed && succeeded;
    }
    context_.report.flushLines();
    return succeeded;
}

// kDone for what is skipped.
FirewallResult FirewallChange::applyChild(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    if (!tags.requiredTextOf(node) || !tags.conditionHolds(node)) {
        return FirewallResult::kDone;
    }
    if (tags.nameOf(node) == vocabulary::ElementName("Port") && tags.hasAttribute(node, "Port")) {
        return applyPort(node);
    }
    if (tags.nameOf(node) == vocabulary::ElementName("Application") && tags.hasAttribute(node, "Target")) {
        return applyApplication(node);
    }
    return FirewallResult::kDone;
}

FirewallResult FirewallChange::applyPort(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const std::string protocols(tags.attribute(node, "Protocol").value_or(kBothProtocols));
    FirewallPortRule rule;
    rule.port = OUtils::textToInteger(tags.attribute(node, "Port").value_or(""));
    rule.name = tags.expand(tags.requiredTextOf(node)).substr(0, FirewallPortRule::kNameLimit);
    rule.protocols =
        protocolsOf(protocols, "WARNING: (Firewall): Unrecognized attribute token for protocol specification",
                    context_.debugLog);

    const std::string port = std::to_string(rule.port);
    ChangeRecord record(&context_.log);
    if (!record.write(Format::kFirewall, {Format::kPort, port, protocols, rule.name})) {
        return reportUnrecorded("port " + port);
    }
    const FirewallAttempt attempt = addPort(context_.machine.firewall, context_.debugLog, rule);
    if (!reportAdding(attempt, "port " + port)) {
        record.withdraw();
    }
    if (attempt.result == FirewallResult::kFailed) {
        context_.debugLog.line("ERROR: Adding firewall port: " + port + " (" + rule.name + ")");
    }
    return attempt.result;
}

FirewallResult FirewallChange::applyApplication(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const std::string target = normalizedPath(tags.expandAttribute(node, "Target"));
    const std::string name = tags.expand(tags.requiredTextOf(node));
    const std::string what = "exception for application: " + platform::writtenPath(target);
    // What can't be undone is refused.
    ChangeRecord record(canBeUndone(target) ? &context_.log : nullptr);
    if (!record.write(Format::kFirewall, {Format::kApplication, target})) {
        return reportUnrecorded(what);
    }
    const FirewallAttempt attempt =
        addApplication(context_.machine.firewall, context_.debugLog, target, name);
    if (!reportAdding(attempt, what)) {
        record.withdraw();
    }
    if (attempt.result == FirewallResult::kFailed) {
        context_.debugLog.line("ERROR: Adding firewall app: " + target + " (" + name + ")");
    }
    return attempt.result;
}

FirewallResult FirewallChange::reportUnrecorded(const std::string& what) {
    reportAdding({FirewallResult::kFailed}, what);
    context_.report.addReason(what, kUnrecordedReason);
    return FirewallResult::kFailed;
}

// True when the exception is there.
bool FirewallChange::reportAdding(const FirewallAttempt& attempt, const std::string& what) {
    const bool done = attempt.result == FirewallResult::kDone;
    reportResult(attempt, what,
                 attempt.result == FirewallResult::kNotAvailable
                     ? "Firewall: Service is NOT switched on and no exceptions can be added!"
                     : std::string("Firewall: ") + (done ? "Added " : "FAILED to add ") + what);
    return done;
}

void FirewallChange::reportResult(const FirewallAttempt& attempt, const std::string& what,
                                  const std::string& line) {
    context_.report.addOutcome(attempt.result == FirewallResult::kDone, line);
    context_.report.addReason(what, attempt.error);
}

bool FirewallChange::undo(const LogRecord& record) {
    const std::string_view kind = firstLogField(record.fields);
    const std::string_view rest = nextLogField(record.fields);
    FirewallAttempt attempt;
    if (kind == Format::kApplication) {
        attempt = removeApplication(context_.machine.firewall, context_.debugLog, rest);
        reportRemoval(attempt, "application from firewall: " + platform::writtenPath(rest));
    } else if (kind == Format::kPort) {
        attempt = removePort(context_.machine.firewall, context_.debugLog, rest);
        reportRemoval(attempt, "port from firewall: " + std::string(firstLogField(rest)));
    }
    if (attempt.result != FirewallResult::kFailed) {
        return true;
    }
    context_.debugLog.line("ERROR: Uninstall: Failed to undo a FirwallAction (" + std::string(record.fields) +
                           ")!");
    return false;
}

void FirewallChange::reportRemoval(const FirewallAttempt& attempt, const std::string& what) {
    const bool done = attempt.result == FirewallResult::kDone;
    reportResult(attempt, what,
                 attempt.result == FirewallResult::kNotAvailable
                     ? "Firewall: Service is NOT switched on and no exceptions can be removed!"
                     : (done ? "Removed " : "FAILED to remove ") + what);
}

FirewallAttempt FirewallChange::addApplication(platform::Firewall& firewall, const DebugLog& debugLog,
                                               std::string_view path, std::string_view name) {
    return carryOut(debugLog, kApplicationFamily, [&] {
        if (!canBeUndone(path)) {
            throw GenericError("The action log can not hold the application %s!", std::string(path).c_str());
        }
        FirewallOperations(firewall).addApplication(path, name);
    });
}

FirewallAttempt FirewallChange::removeApplication(platform::Firewall& firewall, const DebugLog& debugLog,
                                                  std::string_view path) {
    return carryOut(debugLog, kApplicationFamily,
                    [&] { FirewallOperations(firewall).removeApplication(path); });
}

FirewallAttempt FirewallChange::addPort(platform::Firewall& firewall, const DebugLog& debugLog,
                                        const FirewallPortRule& rule) {
    return carryOut(debugLog, kPortFamily, [&] {
        FirewallOperations operations(firewall);
        requireProtocol(rule.protocols);
        openProtocols(operations, debugLog, rule);
    });
}

FirewallAttempt FirewallChange::removePort(platform::Firewall& firewall, const DebugLog& debugLog,
                                           std::string_view fields) {
    FirewallAttempt ports;
    const FirewallAttempt attempt = carryOut(debugLog, kPortFamily, [&] {
        const FirewallPortRule rule = readRecord(fields, debugLog);
        FirewallOperations operations(firewall);
        ports = closeProtocols(operations, debugLog, rule);
    });
    return worseOf(attempt, ports);
}

std::optional<FirewallPortRule> FirewallChange::portIn(std::string_view fields) {
    try {
        return readRecord(fields, DebugLog());
    } catch (const GenericError&) {
        return std::nullopt;
    }
}
