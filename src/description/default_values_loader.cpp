#include "description/default_values_loader.h"

#include <optional>
#include <string>
#include <unordered_set>

#include "base/text_functions.h"
#include "description/answers_file.h"
#include "description/command_line_arguments.h"
#include "description/default_values_reader.h"
#include "description/pxml.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"

namespace {

constexpr std::string_view kVariablePrefix = "VARIABLE_";
constexpr int kListingLevel = 2;

}  // namespace

DefaultValuesLoader::DefaultValuesLoader(DefaultValuesReader& reader, VariableStore& variables,
                                         VariableExclusions& exclusions, AnswersFile& answers,
                                         DebugLog debugLog)
    : reader_(reader),
      variables_(variables),
      exclusions_(exclusions),
      answers_(answers),
      debugLog_(debugLog) {}

DefaultsOutcome DefaultValuesLoader::load(const PXML& description, std::string_view configFile,
                                          const CommandLineArguments* arguments, std::string& outMessage) {
    const bool isRead = reader_.readDefValues(description, arguments);
    if (isRead && !configFile.empty() && !readConfigFile(configFile, arguments, outMessage)) {
        return DefaultsOutcome::kBadConfiguration;
    }
    if (arguments != nullptr) {
        applyCommandLine(*arguments);
    }
    listVariables();
    return isRead ? DefaultsOutcome::kLoaded : DefaultsOutcome::kNoDefaults;
}

bool DefaultValuesLoader::readConfigFile(std::string_view configFile, const CommandLineArguments* arguments,
                                         std::string& outMessage) {
    const int status = answers_.load(configFile);
    if (status == 0) {
        // A file without values was reported when the input was set up.
        reader_.readDefValues(answers_.document(), arguments);
        // What follows others, and isn't answered itself, follows the answers.
        variables_.recalculateVariables(-1);
        return true;
    }
    outMessage = "Error loading configuration file \"" + std::string(configFile) + "\" (" +
                 std::to_string(status) + "). Installation can not continue.";
    debugLog_.line("ERROR: " + outMessage);
    return false;
}

void DefaultValuesLoader::applyCommandLine(const CommandLineArguments& arguments) {
    std::unordered_set<std::string> seen;
    for (int i = 0; i < arguments.getArgumentCount(); ++i) {
        std::string_view name = arguments.getArgumentName(i);
        if (!OUtils::startsWithIgnoreCase(name, kVariablePrefix) || name.size() == kVariablePrefix.size()) {
            continue;
        }
        name.remove_prefix(kVariablePrefix.size());
        if (!seen.insert(OUtils::toLowerAscii(name)).second) {
            continue;
        }
        const std::optional<VariableReading> found = variables_.read(name, std::string::npos);
        if (!found) {
            exclusions_.add(name, kExcludeFromAll);
        }
        if (!found || found->isStored()) {
            const std::string_view value = arguments.getArgumentValue(i);
            variables_.set(name, value.empty() ? "1" : value);
        }
    }
}

void DefaultValuesLoader::listVariables() {
    if (debugLog_.level() < kListingLevel) {
        return;
    }
    debugLog_.line("Installation variables used (" + std::to_string(variables_.getCount()) + "):");
    for (std::int32_t i = 0; i < variables_.getCount(); ++i) {
        const InstallVariable& variable = variables_.at(i);
        const bool isDefault = variable.value == variable.defaultValue;
        debugLog_.line("  [" + variable.name + "] = \"" + variable.value + "\"" +
                       (isDefault ? "" : " (" + variable.defaultValue + ")"));
    }
}
