#include "description/default_values_loader.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "description/command_line_arguments.h"
#include "description/default_values_reader.h"
#include "description/pxml.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

namespace {

constexpr std::string_view kVariablePrefix = "VARIABLE_";
constexpr int kListingLevel = 2;
constexpr int kUnknown = -1;
constexpr int kPredefined = -2;

}  // namespace

DefaultValuesLoader::DefaultValuesLoader(DefaultValuesReader& reader, VariableStore& variables,
                                         VariableExclusions& exclusions, LaidOverSources sources,
                                         DebugLog debugLog)
    : reader_(reader),
      variables_(variables),
      exclusions_(exclusions),
      sources_(sources),
      debugLog_(debugLog) {}

int DefaultValuesLoader::loadDefaultValues(const PXML& description, const char* configFile, InstallerUI* ui) {
    const int result = reader_.readDefValues(description);
    if (result == 0 && configFile != nullptr && *configFile != '\0' && readConfigFile(configFile, ui) != 0) {
        return -1;
    }
    applyCommandLine();
    listVariables();
    return result;
}

int DefaultValuesLoader::readConfigFile(const char* configFile, InstallerUI* ui) {
    PXML document;
    const int status = document.loadFile(configFile, sources_.files);
    if (status == 0) {
        // A file without values has been told of when the input was set up.
        reader_.readDefValues(document);
        return 0;
    }
    const std::string message = OUtils::formatText(
        "Error loading configuration file \"%s\" (%i). Installation can not continue.", configFile, status);
    debugLog_.print("ERROR: %s", message.c_str());
    if (ui != nullptr) {
        ui->messageBox(message.c_str(), MessageKind::kInformation);
    }
    return -1;
}

void DefaultValuesLoader::applyCommandLine() {
    const CommandLineArguments* arguments = sources_.arguments;
    if (arguments == nullptr) {
        return;
    }
    std::unordered_set<std::string> seen;
    for (int i = 0; i < arguments->getArgumentCount(); ++i) {
        const std::string_view argument = arguments->getArgumentName(i);
        if (!OUtils::startsWithIgnoreCase(argument, kVariablePrefix) ||
            argument.size() == kVariablePrefix.size()) {
            continue;
        }
        const std::string name(argument.substr(kVariablePrefix.size()));
        if (!seen.insert(OUtils::toLowerAscii(name)).second) {
            continue;
        }
        const int found = variables_.getVariable(name.c_str(), nullptr, 0);
        if (found == kUnknown) {
            exclusions_.add(name.c_str(), kExcludeFromAll);
        }
        if (found != kPredefined) {
            const char* value = arguments->getArgumentValue(i);
            variables_.setVariable(name.c_str(), *value == '\0' ? "1" : value);
        }
    }
}

void DefaultValuesLoader::listVariables() {
    if (debugLog_.level() < kListingLevel) {
        return;
    }
    debugLog_.print("Installation variables used (%d):", static_cast<int>(variables_.getCount()));
    for (std::int32_t i = 0; i < variables_.getCount(); ++i) {
        const InstallVariable& variable = variables_.at(i);
        if (variable.value == variable.defaultValue) {
            debugLog_.print("  [%s] = \"%s\"", variable.name.c_str(), variable.value.c_str());
        } else {
            debugLog_.print("  [%s] = \"%s\" (%s)", variable.name.c_str(), variable.value.c_str(),
                            variable.defaultValue.c_str());
        }
    }
}
