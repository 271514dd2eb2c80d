#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "description/install_variable.h"
#include "description/variable_lookup.h"
#include "support/debug_log.h"

class EnvironmentAccess;
class PredefinedVariables;

// How resetVariable derives the value.
enum ResetMode : int {
    kResetToExpression = 0,           // from the expression, which isn't followed any more
    kResetToExpressionAndFollow = 1,  // from the expression, which is followed from now on
    kResetToDefault = 2,
};

// All variables of the session, in the order of their creation. Names ignore ASCII case and count up to 1,023
// bytes; a store under another spelling rewrites the name. Runs of separators in stored texts shrink to their
// last character, whatever the text means. One thread at a time.
class VariableStore : public VariableLookup {
public:
    //
    VariableStore(PredefinedVariables& predefined, EnvironmentAccess& environment, DebugLog debugLog);

    int getVariable(const char* name, char* buffer, int size) override;
    // The same lookup, with the default value of a stored variable. -1 for a null name or buffer.
    int getDefaultValue(const char* name, char* buffer, int size);

    // storeVariable with the value, or the default value, alone: `recalculate` ends.
    int setVariable(const char* name, const char* value);
    int setDefaultValue(const char* name, const char* value);
    // Null texts leave a record's texts as they are. A new record takes its default for a missing value.
    // 0 on success; -1 for a null or empty name, for a predefined name, and for a name that begins with `$`,
    // which sets the environment (to the value, else the default, else nothing) and makes no record. A text
    // "NAME=VALUE" of more than 2,047 bytes isn't set, and that is logged. A change of an existing record
    // recalculates the others.
    int storeVariable(const char* name, const char* value, const char* expression, bool recalculate,
                      const char* defaultValue);
    // -1 when no stored variable has that name, otherwise 0. `mode` is a ResetMode; other numbers count as
    // kResetToExpression. Where the expression can't be expanded, the part in front of the fault stands.
    int resetVariable(const char* name, int mode);
    // Carries out "[NAME]='value'": name and value each up to 1,024 bytes. -1 when either is missing, else
    // the result of setVariable.
    int applyAssignment(const char* text);

    // Derives the values of all records with `recalculate` again, except `changedIndex`, in an order that one
    // sorting pass over their references gives; a chain may need more than one change to settle.
    // Nothing happens while defaults are initialised.
    void recalculateVariables(std::int32_t changedIndex);
    void setInitializingDefaults(bool initializing) { initializingDefaults_ = initializing; }
    bool isInitializingDefaults() const { return initializingDefaults_; }

    std::int32_t getCount() const { return static_cast<std::int32_t>(variables_.size()); }
    // 0 <= index < getCount(); good until a variable is added.
    const InstallVariable& at(std::int32_t index) const {
        return variables_[static_cast<std::size_t>(index)];
    }
    // The index of a stored variable, -1 when there is none; predefined and environment names aren't looked
    // at.
    std::int32_t findStored(const char* name) const;

private:
    // Cut and collapsed copies of the texts of a store; what wasn't given is missing.
    struct StoredTexts {
        std::optional<std::string> value;
        std::optional<std::string> expression;
        std::optional<std::string> defaultValue;
    };

    static bool isOutside(const char* name);
    int readOutside(const char* name, char* buffer, int size);
    int readEnvironment(const char* name, char* buffer, int size);
    void storeEnvironment(const char* name, const char* text);
    void addRecord(const std::string& name, StoredTexts texts, bool recalculate);
    void changeRecord(std::int32_t index, const std::string& name, StoredTexts texts, bool recalculate);
    void setRecalculate(std::int32_t index, bool recalculate);
    void derive(InstallVariable& record, int size);
    InstallVariable& recordAt(std::int32_t index) { return variables_[static_cast<std::size_t>(index)]; }

    PredefinedVariables& predefined_;
    EnvironmentAccess& environment_;
    DebugLog debugLog_;
    std::vector<InstallVariable> variables_;
    std::unordered_map<std::string, std::int32_t> byName_;  // by the name in lower case
    std::set<std::int32_t> recalculated_;
    bool initializingDefaults_ = false;
};
