#include "engine/changes/settings_looks.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/environment_change.h"
#include "engine/changes/firewall_change.h"
#include "engine/changes/former_state.h"
#include "engine/changes/record_text.h"
#include "engine/changes/registry_change.h"
#include "engine/line_reader.h"
#include "platform/error_text.h"
#include "platform/registry.h"
#include "platform/written_path.h"

namespace {

namespace Format = ActionLogFormat;
using platform::RegistryRoot;

constexpr auto kView = platform::RegistryView::kNative;

void setUnreadable(RecordLook& look, std::string note) {
    look.state = PlaceState::kUnreadable;
    look.note = std::move(note);
}

class EnvironmentLooker : public RecordLooker {
public:
    explicit EnvironmentLooker(const LookContext& context) : registry_(context.machine.registry) {}

    void beginWalk() override { variables_.clear(); }

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        std::vector<std::string_view> fields = RecordText::split(record.fields, 3);
        fields.resize(3);
        const std::string_view kind = fields[0];
        const std::string_view name = fields[1];
        if (name.empty() || (kind != Format::kCreate && kind != Format::kReplace && kind != Format::kAdd)) {
            return;
        }
        const auto [variable, isFirst] = variables_.try_emplace(OUtils::toLowerAscii(name));
        if (isFirst) {
            variable->second = read(name);
        }
        RecordLook look;
        look.name = kind == Format::kAdd ? std::string(name) + ": " + std::string(fields[2]) : name;
        if (variable->second.state == EnvironmentChange::State::kUnreadable) {
            setUnreadable(look, variable->second.reason);
        } else if (variable->second.state == EnvironmentChange::State::kFound && kind == Format::kAdd) {
            look.rule = UndoRule::kTakesOne;
            look.content = std::to_string(countOf(variable->second.text, fields[2]));
            look.state = stateOfAdded(variable->second, fields[2], record.former);
        } else if (variable->second.state == EnvironmentChange::State::kFound) {
            look.state = stateOfValue(variable->second, kind, fields[2]);
        }
        outLooks.push_back(std::move(look));
    }

private:
    // As it would be when the records so far are undone.
    struct Variable {
        EnvironmentChange::State state;
        std::string text;
        std::string reason;
        std::vector<std::string> joinedTexts;
        std::optional<PlaceState> decided;  // by the first record that says what was there
    };

    Variable read(std::string_view name) {
        EnvironmentChange::Value value;
        const EnvironmentChange::State state = EnvironmentChange::read(registry_, name, value);
        const std::string reason =
            value.status == platform::kRegOk ? "it isn't a text" : platform::registryErrorText(value.status);
        return {state, value.text, reason, {}, {}};
    }

    // The earlier value may be of a time when the product had joined its texts already.
    static PlaceState stateOfValue(Variable& variable, std::string_view kind, std::string_view former) {
        if (!variable.decided) {
            std::string restored(former);
            for (const std::string& joined : variable.joinedTexts) {
                EnvironmentChange::takeOut(restored, joined);
            }
            const bool isFormer = kind == Format::kReplace && variable.text == restored;
            variable.decided = isFormer ? PlaceState::kFormer : PlaceState::kAsMade;
        }
        return *variable.decided;
    }

    // The user may have an equal entry.
    static int countOf(std::string list, std::string_view added) {
        int count = 0;
        while (!added.empty() && EnvironmentChange::takeOut(list, std::string(added))) {
            ++count;
        }
        return count;
    }

    static PlaceState stateOfAdded(Variable& variable, std::string_view added, std::string_view former) {
        const bool isOthers =
            variable.joinedTexts.empty() && !former.empty() && FormerState::ofBytes(variable.text) == former;
        if (isOthers) {
            return PlaceState::kOthers;
        }
        variable.joinedTexts.emplace_back(added);
        return added.empty() || EnvironmentChange::takeOut(variable.text, variable.joinedTexts.back())
                   ? PlaceState::kAsMade
                   : PlaceState::kAbsent;
    }

    platform::Registry& registry_;
    std::map<std::string, Variable> variables_;  // by the name in lower case
};

std::string identityOf(std::string_view place, std::string_view path) {
    return OUtils::toLowerAscii(std::string(place) + '\\' + std::string(path));
}

class RegistryKeyLooker : public RecordLooker {
public:
    explicit RegistryKeyLooker(const LookContext& context) : registry_(context.machine.registry) {}

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::vector<std::string_view> fields = RecordText::splitAll(record.fields);
        const auto root = fields.size() == 3 ? registryRootOf(fields[1]) : std::nullopt;
        if (!root) {
            return;
        }
        const std::vector<std::string> paths = RegistryChange::levelsOf({fields[1], fields[2]});
        const auto levels = static_cast<std::size_t>(std::max(OUtils::textToInteger(fields[0]), 0));
        for (std::size_t i = 0; i < levels && i < paths.size(); ++i) {
            outLooks.push_back(lookAt(*root, fields[1], paths[paths.size() - 1 - i]));
        }
    }

private:
    RecordLook lookAt(RegistryRoot root, std::string_view place, const std::string& path) {
        RecordLook look;
        look.name = std::string(place) + '\\' + path;
        look.identity = identityOf(place, path);
        look.rule = UndoRule::kRemovesIfUnused;
        const int status = registry_.testKey(root, path, kView);
        if (status == platform::kRegOk) {
            look.state = PlaceState::kAsMade;
            addSubkeys(root, place, path, look);
        } else if (status != platform::kRegNotFound) {
            setUnreadable(look, platform::registryErrorText(status));
        }
        return look;
    }

    void addSubkeys(RegistryRoot root, std::string_view place, const std::string& path, RecordLook& look) {
        std::vector<std::string> names;
        registry_.listKeys(root, path, kView, names);
        for (const std::string& name : names) {
            look.holds.push_back(identityOf(place, std::string(path).append("\\").append(name)));
        }
    }

    platform::Registry& registry_;
};

class RegistryValueLooker : public RecordLooker {
public:
    explicit RegistryValueLooker(const LookContext& context) : registry_(context.machine.registry) {}

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::vector<std::string_view> fields = RecordText::splitAll(record.fields);
        const auto root = fields.size() >= 3 ? registryRootOf(fields[0]) : std::nullopt;
        if (!root || fields.size() > 4) {
            return;
        }
        RecordLook look;
        look.name = std::string(fields[0]) + '\\' + std::string(fields[1]) + ": " +
                    (fields[2].empty() ? "(default)" : std::string(fields[2]));
        platform::RegistryValue value;
        const int status = registry_.readValue(*root, fields[1], kView, fields[2], value);
        if (status == platform::kRegOk) {
            const bool isOthers =
                !record.former.empty() && RegistryChange::formerStateOf(value) == record.former;
            look.state = isOthers ? PlaceState::kOthers : PlaceState::kAsMade;
        } else if (status != platform::kRegNotFound) {
            setUnreadable(look, platform::registryErrorText(status));
        }
        outLooks.push_back(std::move(look));
    }

private:
    platform::Registry& registry_;
};

class FirewallLooker : public RecordLooker {
public:
    explicit FirewallLooker(const LookContext& context) : firewall_(context.machine.firewall) {}

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::string_view kind = firstLogField(record.fields);
        const std::string_view rest = nextLogField(record.fields);
        if (kind == Format::kApplication && !rest.empty()) {
            outLooks.push_back(lookAt(platform::writtenPath(rest), [&](FirewallOperations& firewall) {
                return firewall.appIsEnabled(rest);
            }));
        } else if (kind == Format::kPort) {
            lookAtPort(rest, outLooks);
        }
    }

private:
    void lookAtPort(std::string_view fields, std::vector<RecordLook>& outLooks) {
        const std::optional<FirewallPortRule> rule = FirewallChange::portIn(fields);
        for (const auto& [bit, word] : {std::pair(kFirewallTcp, "TCP"), std::pair(kFirewallUdp, "UDP")}) {
            if (rule && (rule->protocols & bit) != 0) {
                const std::string name = "port " + std::to_string(rule->port) + " " + word;
                outLooks.push_back(lookAt(name, [&, protocol = bit](FirewallOperations& firewall) {
                    return firewall.portIsEnabled(rule->port, protocol);
                }));
            }
        }
    }

    template <typename Question>
    RecordLook lookAt(std::string name, Question isEnabled) {
        RecordLook look;
        look.name = std::move(name);
        try {
            FirewallOperations operations(firewall_);
            look.state = isEnabled(operations) ? PlaceState::kAsMade : PlaceState::kAbsent;
        } catch (const GenericError& error) {
            setUnreadable(look, error.what());
        }
        return look;
    }

    platform::Firewall& firewall_;
};

}  // namespace

std::unique_ptr<RecordLooker> makeEnvironmentLooker(const LookContext& context) {
    return std::make_unique<EnvironmentLooker>(context);
}

std::unique_ptr<RecordLooker> makeRegistryKeyLooker(const LookContext& context) {
    return std::make_unique<RegistryKeyLooker>(context);
}

std::unique_ptr<RecordLooker> makeRegistryValueLooker(const LookContext& context) {
    return std::make_unique<RegistryValueLooker>(context);
}

std::unique_ptr<RecordLooker> makeFirewallLooker(const LookContext& context) {
    return std::make_unique<FirewallLooker>(context);
}
