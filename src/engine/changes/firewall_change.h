#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/changes/change.h"
#include "engine/changes/firewall_operations.h"

struct FirewallPortRule {
    static constexpr std::size_t kNameLimit = 511;  // bytes

    std::int32_t port = 0;
    std::string name;
    std::uint8_t protocols = 0;  // a set of FirewallProtocol
};

// The worse a result is, the higher its number, which is fixed.
enum class FirewallResult : std::int32_t {
    kDone = 0,
    kNotAvailable = 1,  // the machine has no working firewall service, or it is switched off
    kFailed = 2,
};

// What became of a single change.
struct FirewallAttempt {
    FirewallResult result = FirewallResult::kDone;
    int error = 0;  // the system's number where its call failed, otherwise 0
};

// Ports and programs that may be reached from outside: the group `Firewall`, of which only the first in the
// description counts. A machine without a working firewall is no failure: nothing is changed and recorded.
// What was open already is recorded like any other, so undoing closes it.
class FirewallChange : public Change {
public:
    explicit FirewallChange(const ChangeContext& context) : context_(context) {}

    // A change that fails doesn't stop the others.
    bool apply() override;
    // False when an exception could not be removed. Not when it has gone, and not where no firewall works,
    // which is reported.
    bool undo(const LogRecord& record) override;

    // The single changes, without a record and with failures in the debug log alone. A path that the action
    // log can't hold as it is fails, since the exception could not be taken back.
    static FirewallAttempt addApplication(platform::Firewall& firewall, const DebugLog& debugLog,
                                          std::string_view path, std::string_view name);
    static FirewallAttempt removeApplication(platform::Firewall& firewall, const DebugLog& debugLog,
                                             std::string_view path);
    // All protocols of the rule; after a failure only those stay open that were before.
    static FirewallAttempt addPort(platform::Firewall& firewall, const DebugLog& debugLog,
                                   const FirewallPortRule& rule);
    // `fields`: port, protocols separated by ";", name; separated by TABs. A damaged text fails.
    static FirewallAttempt removePort(platform::Firewall& firewall, const DebugLog& debugLog,
                                      std::string_view fields);
    // What those fields say, without the name; none for a damaged text.
    static std::optional<FirewallPortRule> portIn(std::string_view fields);

private:
    FirewallResult applyChild(std::int32_t node);
    FirewallResult applyPort(std::int32_t node);
    FirewallResult applyApplication(std::int32_t node);
    FirewallResult reportUnrecorded(const std::string& what);
    bool reportAdding(const FirewallAttempt& attempt, const std::string& what);
    void reportRemoval(const FirewallAttempt& attempt, const std::string& what);
    void reportResult(const FirewallAttempt& attempt, const std::string& what, const std::string& line);

    ChangeContext context_;
};
