#include "session/installation_finish.h"

#include "base/errors.h"
#include "base/fixed_text.h"
#include "contracts/installer_ui.h"
#include "description/product_description.h"
#include "engine/action_log_rewriter.h"
#include "engine/additional_actions.h"
#include "engine/configuration_export.h"
#include "engine/logged_variables.h"
#include "session/session_paths.h"
#include "session/session_state.h"

namespace {

constexpr char kConfigFileName[] = "config.xml";
constexpr int kPathCapacity = static_cast<int>(PathText::capacity());

void tellOfConfigFile(InstallerUI& ui, const std::string& path) {
    ui.addFileLine(("Successfully created configuration file:\n\t\"" + path + "\"").c_str(), false);
    ui.addFileLine(
        "You can use the file to automatically install the same product on different machine with the same "
        "settings, by running the installer with the following arguments:",
        false);
    ui.addFileLine((" -configFile=\"" + path + "\" {-ignoreErrors=1}").c_str(), true);
}

}  // namespace

int InstallationFinish::finishInstallation(InstallerUI* ui) {
    if (state_.postInstallDone != 0) {
        return 0;
    }
    state_.postInstallDone = 1;
    parts_.actions.runAdditionalActions(ui, "PostInstall");
    rewriteActionLog();
    if (leavesConfigFile()) {
        exportConfiguration(ui);
    }
    return 0;
}

void InstallationFinish::rewriteActionLog() {
    PathText path;
    if (parts_.product.getInstallLogFile(path.data(), kPathCapacity) != 0) {
        throw InstallerError("ERROR: Obtaining install actionlog filename");
    }
    parts_.rewriter.rewriteActionLog(path.c_str(), parts_.variables.collect());
}

// Only answers that a person gave on the console are worth repeating from a file.
bool InstallationFinish::leavesConfigFile() {
    PathText given;
    parts_.paths.getConfigFile(given.data(), kPathCapacity);
    return state_.uiIsGraphical == 0 && !state_.isUnattended && given.isEmpty();
}

// Empty when the directory isn't known.
std::string InstallationFinish::configFilePath() {
    PathText directory;
    if (parts_.paths.getApplicationPath(directory.data(), kPathCapacity) != 0) {
        return {};
    }
    std::string path(directory.view());
    // The user will type this path on a command line, so the separator is the one that the system uses.
    const std::size_t separator = path.find_last_of("/\\");
    const char character = separator == std::string::npos ? '/' : path[separator];
    if (path.empty() || separator != path.size() - 1) {
        path += character;
    }
    return path + kConfigFileName;
}

void InstallationFinish::exportConfiguration(InstallerUI* ui) {
    const std::string path = configFilePath();
    const bool isWritten = !path.empty() && parts_.configuration.writeConfigFile(path.c_str()) == 0;
    if (ui == nullptr) {
        return;
    }
    if (isWritten) {
        tellOfConfigFile(*ui, path);
    } else {
        ui->addFileLine("The installer could not create configuration file!", true);
    }
}
