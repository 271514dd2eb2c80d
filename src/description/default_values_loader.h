#pragma once

#include <string>
#include <string_view>

#include "support/debug_log.h"

class AnswersFile;
class CommandLineArguments;
class DefaultValuesReader;
class PXML;
class VariableExclusions;
class VariableStore;

enum class DefaultsOutcome {
    kLoaded,
    kNoDefaults,        // the description has no DefValues element
    kBadConfiguration,  // the configuration file can't be loaded; a session can't go on
};

// Gives the variables their default values: first the description's, then a configuration file's, then those
// of the command line.
class DefaultValuesLoader {
public:
    // All outlive this object. From level 2 of the log on, the variables are listed in it at the end.
    DefaultValuesLoader(DefaultValuesReader& reader, VariableStore& variables, VariableExclusions& exclusions,
                        AnswersFile& answers, DebugLog debugLog);

    // `configFile` is empty when there is none, and also in a session that starts from an action log;
    // `arguments` is null without a command line. After kBadConfiguration, `outMessage` says what to show to
    // the user, and neither the command line nor the listing comes; the message is logged.
    DefaultsOutcome load(const PXML& description, std::string_view configFile,
                         const CommandLineArguments* arguments, std::string& outMessage);

    // The arguments VARIABLE_<name>, in any case: the first of a name counts, an empty value counts as "1".
    // An unknown variable is created and excluded from log and configuration file; a predefined one keeps its
    // value.
    void applyCommandLine(const CommandLineArguments& arguments);

private:
    bool readConfigFile(std::string_view configFile, const CommandLineArguments* arguments,
                        std::string& outMessage);
    void listVariables();

    DefaultValuesReader& reader_;
    VariableStore& variables_;
    VariableExclusions& exclusions_;
    AnswersFile& answers_;
    DebugLog debugLog_;
};
