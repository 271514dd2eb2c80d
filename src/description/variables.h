#pragma once

#include <string>
#include <string_view>

#include "description/control_variables.h"
#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

class AnswersFile;
class CommandLineArguments;
class DialogModel;
class InstallerUI;
class LogVariableSource;
class PXML;
class SystemOperations;
namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// The variables of a session with everything that belongs to them: the predefined ones, the store, the
// expressions over them, the roles that some of them play, and what they are kept out of.
class Variables {
public:
    // Where values come from beside the description. All of it is borrowed and outlives the variables.
    struct Sources {
        platform::Environment& environment;
        platform::FileSystem& files;
        SystemOperations& system;
        LogVariableSource& logs;
        AnswersFile& answers;
    };

    Variables(const Sources& sources, DebugLog debugLog);
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

    VariableStore& store() { return store_; }
    Expressions& expressions() { return expressions_; }
    const ControlVariables& controls() const { return controls_; }
    const VariableExclusions& exclusions() const { return exclusions_; }

    // For the variable GUI_INSTALL; false at first.
    void setGraphical(bool isGraphical) { isGraphical_ = isGraphical ? 1 : 0; }

    // Reads which variables play a role and which are kept out of log and configuration file. False when the
    // description names no roles at all; the rest is read all the same.
    bool readRoles(const PXML& description, const DialogModel& dialogs);

    // Lays the default values over the variables: the description's, then those of the file of answers (empty:
    // none), then those of the command line (null: none). False when the description has no default values,
    // or the file of answers can't be used, which is shown through `ui` (may be null) and logged.
    bool loadDefaults(const PXML& description, const std::string& answersFile,
                      const CommandLineArguments* arguments, InstallerUI* ui);

private:
    Sources sources_;
    DebugLog debugLog_;
    std::int32_t isGraphical_ = 0;
    PredefinedVariables predefined_;
    VariableStore store_;
    Expressions expressions_;
    ControlVariables controls_;
    VariableExclusions exclusions_;
};
