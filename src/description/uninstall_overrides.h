#pragma once

#include <cstdint>
#include <string_view>

#include "support/debug_log.h"

class Expressions;
class PXML;
class VariableStore;

// Carries values of this session over to the session that takes an earlier product away.
class UninstallOverrides {
public:
    UninstallOverrides(const PXML& description, VariableStore& source, Expressions& expressions,
                       DebugLog debugLog);

    // Copies what the elements UninstallOverrides name into `target`. `applicationName` is the product that
    // is taken away; where it is empty, lists of applications aren't looked at.
    void apply(VariableStore& target, std::string_view applicationName);

private:
    void applyElement(std::int32_t element, VariableStore& target, std::string_view applicationName);
    bool holds(std::int32_t node) const;
    bool isMeantFor(std::int32_t node, std::string_view applicationName) const;
    void copyVariable(std::int32_t node, VariableStore& target);

    const PXML& description_;
    VariableStore& source_;
    Expressions& expressions_;
    DebugLog debugLog_;
};
