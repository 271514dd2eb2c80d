#include "installer/run_options.h"

#include <iterator>

#include "base/text_functions.h"
#include "session/command_line_parameters.h"

namespace {

enum class Option {
    kDebug,
    kGui,
    kIgnoreErrors,
    kBackup,
    kAuto,
    kConfigFile,
    kQuiet,
    kBin,
    kUninstall,
    kUninstallApp,
    kUninstallFile,
    kVerify,
    kReceipt,
    kReceiptLog,
    kCount,
};

// Indexed by option number.
constexpr const char* kNames[] = {"debug",         "gui",    "ignoreErrors", "backup",    "auto",
                                  "configFile",    "quiet",  "bin",          "uninstall", "uninstallApp",
                                  "uninstallFile", "verify", "receipt",      "receiptLog"};
static_assert(std::size(kNames) == static_cast<std::size_t>(Option::kCount));

std::optional<std::string> find(const CommandLineParameters& parameters, Option option) {
    const auto value = parameters.find(kNames[static_cast<std::size_t>(option)]);
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

int readInteger(const CommandLineParameters& parameters, Option option, int absent) {
    const auto value = find(parameters, option);
    return value ? OUtils::textToInteger(*value) : absent;
}

}  // namespace

RunOptions readRunOptions(const CommandLineParameters& parameters) {
    RunOptions options;
    options.debug = readInteger(parameters, Option::kDebug, 0);
    options.gui = readInteger(parameters, Option::kGui, 1);
    options.ignoreErrors = readInteger(parameters, Option::kIgnoreErrors, 0);
    if (readInteger(parameters, Option::kBackup, 1) != 0) {
        options.sessionFlags |= kSessionBackup;
    }
    if (find(parameters, Option::kAuto)) {
        options.autoMode = true;
        options.gui = 0;
    }
    options.configFile = find(parameters, Option::kConfigFile);
    if (options.configFile) {
        options.gui = 0;
        options.quiet = 1;
    }
    options.quiet = readInteger(parameters, Option::kQuiet, options.quiet);
    options.binFile = find(parameters, Option::kBin);
    options.uninstallLog = find(parameters, Option::kUninstall);
    options.uninstallApp = find(parameters, Option::kUninstallApp).value_or("");
    options.uninstallFile = find(parameters, Option::kUninstallFile);
    if (options.uninstallFile) {
        options.sessionFlags |= kSessionActionLog;
    }
    options.verifyLog = find(parameters, Option::kVerify);
    options.receipt = find(parameters, Option::kReceipt);
    options.receiptLog = find(parameters, Option::kReceiptLog).value_or("");
    return options;
}

std::vector<std::string_view> runOptionNames() {
    return {std::begin(kNames), std::end(kNames)};
}
