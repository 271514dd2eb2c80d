#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "description/install_variable.h"
#include "description/variable_lookup.h"
#include "support/debug_log.h"

class PredefinedVariables;
namespace platform {
class Environment;
}

// How a reset derives the value.
enum ResetMode : int {
    kResetToExpression = 0,           // from the expression, which isn't followed any more
    kResetToExpressionAndFollow = 1,  // from the expression, which is followed from now on
    kResetToDefault = 2,
};

// The texts of a variable that a store changes.
struct VariableTexts {
    std::optional<std::string_view> value;
    std::optional<std::string_view> expression;
    std::optional<std::string_view> defaultValue;
};

// All variables of the session, in the order of their creation. Names ignore ASCII case and count up to 1,023
// bytes; a store under another spelling rewrites the name. Runs of separators in stored texts shrink to their
// last character, whatever the text means. One thread at a time.
class VariableStore : public VariableLookup {
public:
    VariableStore(PredefinedVariables& predefined, platform::Environment& environment, DebugLog debugLog);

    std::optional<VariableReading> read(std::string_view name, std::size_t limit) override;
    // The same look-up, with the default value of a stored variable.
    std::optional<VariableReading> readDefault(std::string_view name, std::size_t limit);

    // Stores the value, or the default value, alone; the variable stops following its expression. Results as
    // store.
    bool set(std::string_view name, std::string_view value);
    bool setDefault(std::string_view name, std::string_view value);
    // Stores the texts that are given; a record keeps the others, and a new record takes its default for a
    // missing value. False when no record was stored: for an empty name, a predefined name, and a name that
    // begins with `$`, which sets the environment (to the value, else the default, else nothing). A text
    // "NAME=VALUE" of more than 2,047 bytes isn't set, and that is logged. A change of an existing record
    // recalculates the others.
    bool store(std::string_view name, const VariableTexts& texts, bool recalculate);
    // Derives the value anew. False when no stored variable has that name. Where the expression can't be
    // expanded, the part before the fault becomes the value.
    bool reset(std::string_view name, ResetMode mode);
    // Carries out "[NAME]='value'": name and value each up to 1,024 bytes. False when either is missing, else
    // the result of set.
    bool assign(std::string_view text);

    // Notes where the value of a stored variable comes from, and what it is there. Later stores keep that.
    void noteOrigin(std::string_view name, VariableOrigin origin, std::string_view originValue);
    // Whether the value is still the one that its origin gives: then a run elsewhere finds its own, and needs
    // no copy. Paths count as equal in both forms. Never for kGiven.
    bool isFromItsOrigin(std::int32_t index);

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
    // The place of a stored variable; predefined and environment names aren't looked at.
    std::optional<std::int32_t> find(std::string_view name) const;

private:
    // Cut and collapsed copies of the texts of a store; what wasn't given is missing.
    struct StoredTexts {
        std::optional<std::string> value;
        std::optional<std::string> expression;
        std::optional<std::string> defaultValue;
    };

    std::optional<VariableReading> readText(std::string_view name, std::string InstallVariable::*text,
                                            std::size_t limit);
    static bool isOutside(std::string_view name);
    std::optional<std::string> readOutside(std::string_view name, std::size_t limit);
    std::optional<std::string> readEnvironment(std::string_view name, std::size_t limit);
    void storeEnvironment(std::string_view name, std::string_view value);
    void addRecord(std::string name, StoredTexts texts, bool recalculate);
    void changeRecord(std::int32_t index, std::string name, StoredTexts texts, bool recalculate);
    void setRecalculate(std::int32_t index, bool recalculate);
    void derive(InstallVariable& record, std::size_t limit);
    InstallVariable& recordAt(std::int32_t index) { return variables_[static_cast<std::size_t>(index)]; }

    PredefinedVariables& predefined_;
    platform::Environment& environment_;
    DebugLog debugLog_;
    std::vector<InstallVariable> variables_;
    std::unordered_map<std::string, std::int32_t> byName_;  // by the name in lower case
    std::set<std::int32_t> recalculated_;
    bool initializingDefaults_ = false;
};
