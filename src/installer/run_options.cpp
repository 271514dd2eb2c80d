#include "installer/run_options.h"

#include <algorithm>

#include "base/text_functions.h"
#include "description/run_option_table.h"
#include "session/command_line_parameters.h"

namespace {

using run_options::Name;

std::optional<std::string> find(const CommandLineParameters& parameters, Name option) {
    const auto value = parameters.find(option.view());
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

int readInteger(const CommandLineParameters& parameters, Name option, int absent) {
    const auto value = find(parameters, option);
    return value ? OUtils::textToInteger(*value) : absent;
}

}  // namespace

RunOptions readRunOptions(const CommandLineParameters& parameters) {
    RunOptions options;
    options.debug = readInteger(parameters, "debug", 0);
    options.gui = readInteger(parameters, "gui", 1);
    options.ignoreErrors = readInteger(parameters, "ignoreErrors", 0);
    if (readInteger(parameters, "backup", 1) != 0) {
        options.sessionFlags |= kSessionBackup;
    }
    if (find(parameters, "auto")) {
        options.autoMode = true;
        options.gui = 0;
    }
    options.configFile = find(parameters, "configFile");
    if (options.configFile) {
        options.gui = 0;
        options.quiet = 1;
    }
    options.quiet = readInteger(parameters, "quiet", options.quiet);
    options.exitCodes = readInteger(parameters, "exitCodes", 0) != 0;
    options.binFile = find(parameters, "bin");
    options.uninstallLog = find(parameters, "uninstall");
    options.uninstallApp = find(parameters, "uninstallApp").value_or("");
    options.uninstallFile = find(parameters, "uninstallFile");
    if (options.uninstallFile) {
        options.sessionFlags |= kSessionActionLog;
    }
    options.verifyLog = find(parameters, "verify");
    options.receipt = find(parameters, "receipt");
    options.receiptLog = find(parameters, "receiptLog").value_or("");
    return options;
}

bool asksForHelp(const CommandLineParameters& parameters) {
    constexpr std::string_view kWithoutValue;
    const auto isAsked = [&](std::string_view name) { return parameters.find(name) == kWithoutValue; };
    return isAsked(Name("help").view()) || std::ranges::any_of(run_options::kOtherHelpNames, isAsked);
}

std::vector<std::string_view> runOptionNames() {
    std::vector<std::string_view> names;
    for (const RunOptionRow& row : run_options::kTable) {
        if (row.kind == RunOptionKind::kSetting) {
            names.push_back(row.name);
        }
    }
    return names;
}
