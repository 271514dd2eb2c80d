#include "session/nested_uninstallation.h"

#include <optional>

#include "base/errors.h"
#include "contracts/installer_ui.h"
#include "engine/action_log_reader.h"
#include "engine/overall_progress.h"
#include "engine/product_records.h"
#include "session/logged_variables.h"
#include "support/p_mem_stream.h"
#include "support/utilities.h"

NestedUninstallation::NestedUninstallation(const platform::Platform& machine, SystemOperations& system,
                                           InstallerUI* ui, ErrorList& errors, DebugLog debugLog)
    : files_(machine.files),
      ui_(ui),
      errors_(errors),
      debugLog_(debugLog),
      cabinet_(machine.files, debugLog),
      answers_(machine.files),
      model_(machine, system, answers_, debugLog),
      uninstallation_({model_.view(), cabinet_, machine, system, debugLog}) {
    model_.setGraphical(ui != nullptr && ui->isGraphical() != 0);
}

void NestedUninstallation::load(const std::string& logPath) {
    openLog(logPath);
    readProduct(readDescription());
    readVariables();
}

void NestedUninstallation::openLog(const std::string& path) {
    std::string content;
    const int status = OUtils::readWholeFile(path, content, files_);
    if (status != 0) {
        debugLog_.line("ERROR: Failed to open the installation log file (" + path + ")");
        sayWhy(path, status);
        throw InstallerError("ERROR: Unable to initialize uninstaller object");
    }
    log_ = std::make_unique<PMemStream>(content);
}

void NestedUninstallation::sayWhy(const std::string& path, int status) {
    Report(ui_, &errors_).addReason(path, OUtils::readingErrorText(status));
}

std::string NestedUninstallation::readDescription() {
    debugLog_.line("Uninstall: Reading installation file name from action log");
    const std::optional<std::string> path = ActionLogReader(log_.get(), debugLog_).readDescriptionPath();
    if (!path) {
        debugLog_.line("Could not obtain installation file from action log");
        throw InstallerError("ERROR: Unable to obtain installation file from action log");
    }
    debugLog_.line("Uninstall: Reading installation file");
    std::string text;
    const int status = OUtils::readWholeFile(*path, text, files_);
    if (status != 0) {
        sayWhy(*path, status);
        throw InstallerError("ERROR: Unable to read installation file (%s)", path->c_str());
    }
    return text;
}

void NestedUninstallation::readProduct(std::string_view description) {
    debugLog_.line("Uninstall: Parsing installation file");
    model_.description.parseText(description);
    if (model_.description.getNodeCount() == 0) {
        throw InstallerError("ERROR: Error parsing installation file");
    }
    debugLog_.line("Uninstall: Getting product description");
    if (!model_.product.exists()) {
        throw InstallerError("ERROR: Unable to get product description");
    }
    model_.variables.expressions().setPathVariables(PathVariables(model_.description));
    debugLog_.line("Uninstall: Getting file sets");
    model_.fileSets.readFileSets([](std::string_view) { return 0; });
    model_.variables.readControls(model_.description);
}

// The default values come last, so that they can build on what the product knew of itself.
void NestedUninstallation::readVariables() {
    debugLog_.line("Uninstall: Initializing values from previous log");
    importLoggedVariables(*log_, model_.variables.store(), debugLog_);
    debugLog_.line("Uninstall: Initializing default values");
    std::string message;
    if (model_.variables.loadDefaults(model_.description, "", nullptr, message) != DefaultsOutcome::kLoaded) {
        throw InstallerError("ERROR: Unable to initialize default values");
    }
}

std::string NestedUninstallation::productName() {
    return model_.product.fullName().value_or("");
}

ProductRecords NestedUninstallation::records() {
    return productRecordsOf(*log_, model_.view(), debugLog_);
}

void NestedUninstallation::setVariable(std::string_view name, std::string_view value) {
    model_.variables.set(name, value);
}

bool NestedUninstallation::uninstall(const std::function<void(int percent)>& onProgress) {
    Report report(ui_, &errors_);
    report.setWords(&model_.product.words());
    OverallProgress progress;
    progress.showOn(onProgress);
    if (onProgress) {
        report.setOverall(&progress);
    }
    return uninstallation_.run(log_.get(), std::nullopt, report);
}
