#pragma once

#include <cstdint>

#include "support/debug_log.h"

class CommandLineArguments;
class DefaultValuesReader;
class InstallerUI;
class PXML;
class VariableExclusions;
class VariableStore;
namespace platform {
class FileSystem;
}

// Where values come from that are laid over the description's.
struct LaidOverSources {
    platform::FileSystem& files;  // holds the configuration file
    // Null when there is no parsed command line.
    const CommandLineArguments* const& arguments;
};

// Lays the default values over the variables: the description's, then a configuration file's, then those of
// the command line.
class DefaultValuesLoader {
public:
    // From level 2 of the log on the variables are listed in the log at the end.
    DefaultValuesLoader(DefaultValuesReader& reader, VariableStore& variables, VariableExclusions& exclusions,
                        LaidOverSources sources, DebugLog debugLog);

    // 0, or -1 when the description has no DefValues element or the configuration file can't be loaded, which
    // is shown through `ui` (may be null) and logged. `configFile` is null or empty when there is none, and
    // also in a session that starts from an action log. The command line and the listing come in any case
    // but that of the configuration file.
    int loadDefaultValues(const PXML& description, const char* configFile, InstallerUI* ui);

    // The arguments VARIABLE_<name>, in any case: the first of a name counts, an empty value counts as "1".
    // An unknown variable comes into being and is excluded from log and configuration file; a predefined one
    // stays.
    void applyCommandLine();

private:
    int readConfigFile(const char* configFile, InstallerUI* ui);
    void listVariables();

    DefaultValuesReader& reader_;
    VariableStore& variables_;
    VariableExclusions& exclusions_;
    LaidOverSources sources_;
    DebugLog debugLog_;
};
