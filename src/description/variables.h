#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "description/control_variables.h"
#include "description/default_values_loader.h"
#include "description/default_values_reader.h"
#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

class CommandLineArguments;
class DialogModel;
class PXML;

// The variables of a session, with all that belongs to them: the predefined ones, the store, both expansions
// and the conditions, the roles that variables play, what they are kept out of, and their default values. One
// thread at a time.
class Variables {
public:
    // All that is referred to outlives this object. `isGraphical` is the session's flag, non-zero with the
    // graphical front end.
    Variables(const std::int32_t& isGraphical, DefaultValueSources sources, DebugLog debugLog);
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

    // As the functions of VariableStore.
    std::optional<std::string> get(std::string_view name) { return store_.get(name); }
    std::optional<std::string> getDefault(std::string_view name);
    bool set(std::string_view name, std::string_view value) { return store_.set(name, value); }
    bool reset(std::string_view name, ResetMode mode) { return store_.reset(name, mode); }
    bool assign(std::string_view text) { return store_.assign(text); }

    // As the functions of Expressions.
    std::string expand(std::string_view text, bool stopOnMissing = false);
    bool holds(std::optional<std::string_view> condition) { return expressions_.holds(condition); }

    // Sets the variable that plays the role; nothing happens where none does.
    void setControl(ControlVariable role, std::string_view value);
    // The value of that variable; nothing where none plays the role or it doesn't exist.
    std::optional<std::string> getControl(ControlVariable role);

    // Reads which variables play the roles. False when the description doesn't say so.
    bool readControls(const PXML& description) { return controls_.read(description, debugLog_); }
    // Collects what is kept out of log and configuration file. After readControls and the reading of the
    // dialogs.
    void readExclusions(const PXML& description, const DialogModel& dialogs);
    // As DefaultValuesLoader::load.
    DefaultsOutcome loadDefaults(const PXML& description, std::string_view configFile,
                                 const CommandLineArguments* arguments, std::string& outMessage);

    // The parts, for those who work on one of them. They live as long as this object.
    VariableStore& store() { return store_; }
    Expressions& expressions() { return expressions_; }
    const ControlVariables& controls() const { return controls_; }
    VariableExclusions& exclusions() { return exclusions_; }

private:
    DebugLog debugLog_;
    PredefinedVariables predefined_;
    VariableStore store_;
    Expressions expressions_;
    ControlVariables controls_;
    VariableExclusions exclusions_;
    DefaultValuesReader reader_;
    DefaultValuesLoader loader_;
};
