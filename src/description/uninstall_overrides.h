#pragma once

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
    // is taken away; null or empty counts as none, and then lists of applications aren't looked at.
    void apply(VariableStore& target, const char* applicationName);

private:
    void applyElement(int element, VariableStore& target, const char* applicationName);
    bool isMeantFor(int node, const char* applicationName) const;
    void copyVariable(int node, VariableStore& target);

    const PXML& description_;
    VariableStore& source_;
    Expressions& expressions_;
    DebugLog debugLog_;
};
