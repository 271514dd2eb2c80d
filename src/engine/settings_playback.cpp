#include "engine/settings_playback.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "engine/journaled_firewall.h"
#include "engine/report.h"
#include "platform/error_text.h"

using platform::FirewallException;
using platform::FirewallOutcome;
using platform::RegistryRoot;
using platform::RegistryView;

namespace {

constexpr std::string_view kChanged = "stays as it is, because it has changed since the removal";
constexpr std::string_view kUnreadable = "can't be brought back, because it could not be read before";

RegistryRoot rootOf(const RemovalRecord& record) {
    return static_cast<RegistryRoot>(record.root);
}

RegistryView viewOf(const RemovalRecord& record) {
    return static_cast<RegistryView>(record.view);
}

std::string_view nameOf(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::kClassesRoot:
            return "HKEY_CLASSES_ROOT";
        case RegistryRoot::kCurrentUser:
            return "HKEY_CURRENT_USER";
        case RegistryRoot::kLocalMachine:
            return "HKEY_LOCAL_MACHINE";
        case RegistryRoot::kUsers:
            return "HKEY_USERS";
    }
    return "";
}

std::string protocolName(const RemovalRecord& record) {
    return record.root == static_cast<std::uint8_t>(platform::FirewallProtocol::kTcp) ? " TCP" : " UDP";
}

// What a message calls it.
std::string subjectOf(const RemovalRecord& record) {
    switch (record.step) {
        case RemovalStep::kFirewallApplication:
            return "The firewall's exception for " + record.path;
        case RemovalStep::kFirewallPort:
            return "The firewall's exception for port " + std::to_string(record.subject) +
                   protocolName(record);
        case RemovalStep::kFirewallSwitchOn:
            return "The firewall";
        default:
            return std::string(nameOf(rootOf(record))) + "\\" + record.path +
                   (record.other.empty() ? "" : "\\" + record.other);
    }
}

std::string_view parentOf(std::string_view path) {
    const std::size_t separator = path.find_last_of('\\');
    return path.substr(0, separator == std::string_view::npos ? 0 : separator);
}

std::optional<KeptValue> onlyOf(const std::vector<KeptValue>& values) {
    return values.empty() ? std::nullopt : std::optional(values.front());
}

// Names of values don't count when one of them is compared.
bool isSameValue(const std::optional<KeptValue>& one, const std::optional<KeptValue>& other) {
    return one.has_value() == other.has_value() &&
           (!one || (one->type == other->type && one->data == other->data));
}

int readValue(platform::Registry& registry, const RemovalRecord& record, std::string_view name,
              std::optional<KeptValue>& outValue) {
    platform::RegistryValue value;
    const int status = registry.readValue(rootOf(record), record.path, viewOf(record), name, value);
    outValue.reset();
    if (status == platform::kRegOk) {
        outValue = KeptValue{std::string(name), value.type, value.data};
    }
    return status == platform::kRegNotFound ? static_cast<int>(platform::kRegOk) : status;
}

int writeValue(platform::Registry& registry, const RemovalRecord& record, const KeptValue& value) {
    return registry.writeValue(rootOf(record), record.path, viewOf(record), value.name,
                               {value.type, value.data});
}

int readValues(platform::Registry& registry, const RemovalRecord& record, std::vector<KeptValue>& outValues) {
    std::vector<std::string> names;
    int status = registry.listValues(rootOf(record), record.path, viewOf(record), names);
    for (std::size_t i = 0; status == platform::kRegOk && i < names.size(); ++i) {
        std::optional<KeptValue> value;
        status = readValue(registry, record, names[i], value);
        if (value) {
            outValues.push_back(std::move(*value));
        }
    }
    return status;
}

bool isPartOf(const std::vector<KeptValue>& part, const std::vector<KeptValue>& whole) {
    return std::ranges::all_of(
        part, [&whole](const KeptValue& value) { return std::ranges::find(whole, value) != whole.end(); });
}

}  // namespace

bool SettingsPlayback::takeBack(const RemovalRecord& record) {
    switch (record.step) {
        case RemovalStep::kWriteValue:
        case RemovalStep::kDeleteValue:
            return takeBackValue(record);
        case RemovalStep::kDeleteKey:
            return takeBackDeletedKey(record);
        case RemovalStep::kCreateKey:
            return takeBackNewKey(record);
        case RemovalStep::kFirewallSwitchOn:
            return left(record, "was switched on and stays so");
        default:
            return takeBackException(record);
    }
}

bool SettingsPlayback::takeBackValue(const RemovalRecord& record) {
    const std::optional<KeptValue> before = onlyOf(record.before);
    std::optional<KeptValue> present;
    const int status = readValue(registry_, record, record.other, present);
    if (status != platform::kRegOk || isSameValue(present, before)) {
        return done(record, status);
    }
    if (!isSameValue(present, onlyOf(record.after))) {
        return left(record, kChanged);
    }
    return done(record,
                before ? writeValue(registry_, record, *before)
                       : registry_.deleteValue(rootOf(record), record.path, viewOf(record), record.other));
}

// A key that is there again with some of its values is one that was being brought back.
bool SettingsPlayback::takeBackDeletedKey(const RemovalRecord& record) {
    std::vector<KeptValue> present;
    int status = registry_.testKey(rootOf(record), record.path, viewOf(record));
    if (status == platform::kRegNotFound) {
        int created = 0;
        status = registry_.createKey(rootOf(record), record.path, viewOf(record), created);
    } else if (status == platform::kRegOk) {
        status = readValues(registry_, record, present);
    }
    if (status == platform::kRegOk && !isPartOf(present, record.before)) {
        return left(record, kChanged);
    }
    return done(record, status != platform::kRegOk ? status : writeMissing(record, present));
}

int SettingsPlayback::writeMissing(const RemovalRecord& record, const std::vector<KeptValue>& present) {
    int status = platform::kRegOk;
    for (const KeptValue& value : record.before) {
        if (std::ranges::find(present, value) == present.end()) {
            const int written = writeValue(registry_, record, value);
            status = status != platform::kRegOk ? status : written;
        }
    }
    return status;
}

bool SettingsPlayback::takeBackNewKey(const RemovalRecord& record) {
    std::string_view level = record.path;
    for (std::uint32_t i = 0; i < record.subject && !level.empty(); ++i, level = parentOf(level)) {
        if (!removeLevel(record, level)) {
            return false;
        }
    }
    return true;
}

// Only an empty key: the system would delete its values with it.
bool SettingsPlayback::removeLevel(const RemovalRecord& record, std::string_view path) {
    std::vector<std::string> keys;
    std::vector<std::string> values;
    int status = registry_.listKeys(rootOf(record), path, viewOf(record), keys);
    if (status == platform::kRegNotFound) {
        return true;
    }
    status = status != platform::kRegOk ? status
                                        : registry_.listValues(rootOf(record), path, viewOf(record), values);
    if (status == platform::kRegOk && (!keys.empty() || !values.empty())) {
        return left(record, kChanged);
    }
    return done(record, status != platform::kRegOk
                            ? status
                            : registry_.deleteKey(rootOf(record), path, viewOf(record)));
}

bool SettingsPlayback::takeBackException(const RemovalRecord& record) {
    std::unique_ptr<platform::FirewallProfile> profile;
    const FirewallOutcome outcome = firewall_.connect(profile);
    if (!outcome.done() || profile == nullptr) {
        return done(record, outcome) && left(record, kUnreadable);
    }
    return record.has(RemovalRecord::kWasUnreadable) ? left(record, kUnreadable)
                                                     : replaceException(record, *profile);
}

bool SettingsPlayback::replaceException(const RemovalRecord& record, platform::FirewallProfile& profile) {
    const bool isPort = record.step == RemovalStep::kFirewallPort;
    const auto port = static_cast<std::int32_t>(record.subject);
    const auto protocol =
        record.root == 0 ? platform::FirewallProtocol::kTcp : platform::FirewallProtocol::kUdp;
    std::optional<FirewallException> present;
    FirewallOutcome outcome =
        isPort ? profile.readPort(port, protocol, present) : profile.readApplication(record.path, present);
    const std::vector<KeptValue> now =
        present ? std::vector<KeptValue>{keptException(*present)} : std::vector<KeptValue>();
    if (!outcome.done() || now == record.before) {
        return done(record, outcome);
    }
    if (now != record.after) {
        return left(record, kChanged);
    }
    if (record.before.empty()) {
        outcome = isPort ? profile.removePort(port, protocol) : profile.removeApplication(record.path);
    } else {
        const FirewallException exception = exceptionOf(record.before.front());
        outcome = isPort ? profile.restorePort(port, protocol, exception)
                         : profile.restoreApplication(record.path, exception);
    }
    return done(record, outcome);
}

bool SettingsPlayback::done(const RemovalRecord& record, int status) {
    return status == platform::kRegOk ||
           left(record, "can't be brought back: " + platform::registryErrorText(status));
}

bool SettingsPlayback::done(const RemovalRecord& record, const FirewallOutcome& outcome) {
    return outcome.done() || left(record, "can't be brought back: " + platform::errorText(outcome.error));
}

bool SettingsPlayback::left(const RemovalRecord& record, std::string_view reason) {
    report_.note(subjectOf(record) + ": " + std::string(reason));
    return false;
}
