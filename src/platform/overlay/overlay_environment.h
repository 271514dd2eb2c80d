#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/environment.h"
#include "platform/variable_rules.h"

// An environment over another one, the base, whose variables stay as they are. For one thread.
class OverlayEnvironment : public platform::Environment {
public:
    // The base is borrowed; the rules are its own.
    OverlayEnvironment(platform::Environment& base, platform::VariableRules rules)
        : base_(base), rules_(rules) {}

    // The variables that were set, by name; none where one was taken away.
    const std::map<std::string, std::optional<std::string>>& changes() const { return changes_; }

    std::optional<std::string> get(std::string_view name) override;
    bool set(std::string_view name, std::string_view value) override;
    bool programPath(std::string& outPath) override { return base_.programPath(outPath); }
    bool currentDirectory(std::string& outPath) override { return base_.currentDirectory(outPath); }
    bool stateDirectory(std::string& outPath) override { return base_.stateDirectory(outPath); }

private:
    std::string keyOf(std::string_view name) const;

    platform::Environment& base_;
    platform::VariableRules rules_;
    std::map<std::string, std::optional<std::string>> changes_;
};
