#include "description/variables.h"

Variables::Variables(const std::int32_t& isGraphical, DefaultValueSources sources, DebugLog debugLog)
    : debugLog_(debugLog),
      predefined_(isGraphical, sources.environment, sources.files, debugLog),
      store_(predefined_, sources.environment, debugLog),
      expressions_(store_, debugLog),
      reader_(store_, expressions_, sources, debugLog),
      loader_(reader_, store_, exclusions_, sources.answers, debugLog) {}

std::optional<std::string> Variables::getDefault(std::string_view name) {
    std::optional<VariableReading> reading = store_.readDefault(name, VariableLookup::kTextLimit);
    return reading ? std::optional(std::move(reading->value)) : std::nullopt;
}

std::string Variables::expand(std::string_view text, bool stopOnMissing) {
    return expressions_.expandWhole(text, stopOnMissing);
}

void Variables::setControl(ControlVariable role, std::string_view value) {
    store_.set(controls_.nameOf(role), value);
}

std::optional<std::string> Variables::getControl(ControlVariable role) {
    return store_.get(controls_.nameOf(role));
}

void Variables::readExclusions(const PXML& description, const DialogModel& dialogs) {
    exclusions_.build(description, controls_, dialogs, store_);
}

DefaultsOutcome Variables::loadDefaults(const PXML& description, std::string_view configFile,
                                        const CommandLineArguments* arguments, std::string& outMessage) {
    return loader_.load(description, configFile, arguments, outMessage);
}
