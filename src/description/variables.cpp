#include "description/variables.h"

#include "description/default_values_loader.h"
#include "description/default_values_reader.h"

Variables::Variables(const Sources& sources, DebugLog debugLog)
    : sources_(sources),
      debugLog_(debugLog),
      predefined_(isGraphical_, sources.environment, sources.files, debugLog),
      store_(predefined_, sources.environment, debugLog),
      expressions_(store_, debugLog) {}

bool Variables::readRoles(const PXML& description, const DialogModel& dialogs) {
    const bool hasRoles = controls_.read(description, debugLog_);
    exclusions_.build(description, controls_, dialogs, store_);
    return hasRoles;
}

bool Variables::loadDefaults(const PXML& description, const std::string& answersFile,
                             const CommandLineArguments* arguments, InstallerUI* ui) {
    DefaultValuesReader reader(
        store_, expressions_,
        {sources_.system, sources_.environment, sources_.files, sources_.logs, arguments}, debugLog_);
    DefaultValuesLoader loader(reader, store_, exclusions_, {sources_.answers, arguments}, debugLog_);
    return loader.loadDefaultValues(description, answersFile, ui);
}
