#include "installer/run_options.h"

#include "base/text_functions.h"
#include "session/command_line_parameters.h"

namespace {

int readInteger(const CommandLineParameters& parameters, const char* name, int absent) {
    const char* value = parameters.find(name);
    return value == nullptr ? absent : OUtils::textToInteger(value);
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
    if (parameters.find("auto") != nullptr) {
        options.autoMode = true;
        options.gui = 0;
    }
    options.configFile = parameters.find("configFile");
    if (options.configFile != nullptr) {
        options.gui = 0;
        options.quiet = 1;
    }
    options.quiet = readInteger(parameters, "quiet", options.quiet);
    options.binFile = parameters.find("bin");
    options.uninstallLog = parameters.find("uninstall");
    options.uninstallApp = parameters.find("uninstallApp");
    options.uninstallFile = parameters.find("uninstallFile");
    if (options.uninstallFile != nullptr) {
        options.sessionFlags |= kSessionActionLog;
    }
    return options;
}
