#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "support/debug_log.h"

class Expressions;
class PXML;
class VariableStore;

// Carries values of this session over to the session that takes an earlier product away.
class UninstallOverrides {
public:
    // Sets a variable of that session.
    using Setter = std::function<void(std::string_view name, std::string_view value)>;

    UninstallOverrides(const PXML& description, VariableStore& source, Expressions& expressions,
                       DebugLog debugLog);

    // Gives what the elements UninstallOverrides name to `set`. `applicationName` is the product that is
    // taken away; where it is empty, lists of applications aren't looked at.
    void apply(const Setter& set, std::string_view applicationName);

private:
    void applyElement(std::int32_t element, const Setter& set, std::string_view applicationName);
    bool holds(std::int32_t node) const;
    bool isMeantFor(std::int32_t node, std::string_view applicationName) const;
    void copyVariable(std::int32_t node, const Setter& set);

    const PXML& description_;
    VariableStore& source_;
    Expressions& expressions_;
    DebugLog debugLog_;
};
