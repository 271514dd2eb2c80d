#include "installer/installer_program.h"

#include "installer/administrator_test.h"
#include "installer/console_control.h"
#include "installer/debug_log.h"
#include "installer/relaunch.h"
#include "installer/revision.h"
#include "package/package_checksum.h"
#include "package/package_offset.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "ui/console/console_ui.h"
#include "wini/uninstaller_events.h"
#include "wini/wini.h"

namespace {

constexpr char kCaption[] = "Tandrel Software installer";
constexpr int kFailed = -1;
// The wizard isn't part of the program yet: every run is a console run.
constexpr bool kHasGraphicalFrontEnd = false;

}  // namespace

InstallerProgram::InstallerProgram(platform::Platform& platform)
    : platform_(platform), terminal_(platform.console), log_(platform.files) {}

InstallerProgram::~InstallerProgram() {
    setActiveUI(nullptr);
    setActiveInstaller(nullptr);
}

int InstallerProgram::run(const std::vector<std::string>& arguments) {
    if (parameters_.parse({arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end()}) != 0) {
        print("ERROR: Command line couldn't be parsed. Exiting!\n");
        return kFailed;
    }
    options_ = readRunOptions(parameters_);
    debugLevel_ =
        openDebugLog(log_, options_.debug, platform_.environment, platform_.files, platform_.console);
    logStart();
    chooseFrontEnd();
    wini_ = std::make_unique<Wini>(platform_, debugLevel_, options_.gui, options_.ignoreErrors);
    setActiveInstaller(wini_.get());
    wini_->setConsole(&log_, debugLevel_);
    if (options_.configFile != nullptr) {
        wini_->setConfigFile(options_.configFile);
    }
    wini_->setParameters(&parameters_);
    if (!testRights()) {
        return kFailed;
    }
    if (options_.uninstallLog != nullptr) {
        return UninstallRelaunch(platform_, log_).run(options_, debugLevel_);
    }
    return options_.uninstallFile != nullptr ? uninstall() : install();
}

void InstallerProgram::logStart() {
    log_.print("Installer version revision: %s", kBuildRevision);
    log_.print("Parsing command line arguments");
    if (debugLevel_ >= 2) {
        log_.print("Insatllation was called with arguments:");
        for (int i = 0; i < parameters_.getCount(); ++i) {
            log_.print("  [ARG %02d] -%s=\"%s\"", i, parameters_.name(i), parameters_.value(i));
        }
    }
    log_.print("Installation started");
}

void InstallerProgram::chooseFrontEnd() {
    if (options_.gui != 0 && !kHasGraphicalFrontEnd) {
        log_.print("WARNING: This build has no graphical front end; the console is used");
        options_.gui = 0;
    }
}

bool InstallerProgram::testRights() {
    if (hasAdministrativePrivileges(platform_.files,
                                    platform::administratorDirectories(platform_.registry))) {
        return true;
    }
    if (options_.gui != 0) {
        platform::showMessage(
            "This program requires Administrative privileges.\nPlease right-click the installer and select "
            "\"Run as Administrator...\"",
            kCaption, platform::MessageIcon::kWarning);
    } else {
        print("This program requires administrative privileges.\n");
    }
    return false;
}

int InstallerProgram::install() {
    int result = options_.binFile != nullptr ? loadBinFile() : loadOwnPackage();
    if (result == 0) {
        result = runConsoleInstallation();
    }
    log_.print("Installation finished (res=%i)", result);
    endSession();
    return 0;
}

int InstallerProgram::loadOwnPackage() {
    const std::uint32_t offset = readStampedPackageOffset();
    std::string path;
    if (!platform::ownImagePath(path)) {
        log_.print("ERROR: Failed to obtain module file name");
        return kFailed;
    }
    log_.print("Initializing with file=\"%s\", offset=%i", path.c_str(), static_cast<int>(offset));
    if (!verifyInstallerChecksum(path, platform_.files)) {
        showError(
            "The checksum of the installer doesn't match. This could indicate a broken download.\nPlease, "
            "try "
            "downloading again!");
        log_.print("ERROR: The installer checksum failed!");
        return kFailed;
    }
    log_.print("Checksum successfuly verified");
    return wini_->loadCabinet(path.c_str(), offset, options_.sessionFlags);
}

int InstallerProgram::loadBinFile() {
    log_.print("Initializing with bin file: %s", options_.binFile);
    const int result = wini_->loadCabinet(options_.binFile, 0, options_.sessionFlags);
    if (result != 0) {
        log_.print("ERROR: Initialization with bin file failed with result: %d", result);
        showError("The installer failed to initialize with the supplied binary file!");
    }
    return result;
}

int InstallerProgram::runConsoleInstallation() {
    ui_ = std::make_unique<ConsoleUI>(false, options_.ignoreErrors != 0, options_.quiet != 0, terminal_);
    const char* input = options_.configFile != nullptr ? options_.configFile
                        : options_.autoMode            ? "autoInstall"
                                                       : "";
    log_.print("Initializing with input: \"%s\"", input);
    bool automated = false;
    if (ui_->createInputProvider(input, automated) != 0) {
        log_.print("ERROR: Unable to initialize Console installation");
        return kFailed;
    }
    wini_->setUnattended(automated);
    return runSession(*ui_, "Running uninstallation");
}

int InstallerProgram::uninstall() {
    log_.print("Real uninstall");
    platform_.events.signal(kUninstallerStartEvent);
    int result = wini_->loadCabinet(options_.uninstallFile, 0, options_.sessionFlags);
    if (result == 0) {
        result = runConsoleUninstallation();
    }
    const bool failed = result != 0 || wini_->hasErrors();
    endSession();
    if (debugLevel_ == 0) {
        removeRelaunchCopies();
    }
    platform_.events.signal(kUninstallerEndEvent);
    return failed ? kFailed : 0;
}

// Windows keeps the image of a running program; there its copy stays until the next one takes its place.
void InstallerProgram::removeRelaunchCopies() {
    platform_.files.removeFile(options_.uninstallFile);
    std::string image;
    if (platform::ownImagePath(image) && UninstallRelaunch::isCopy(image)) {
        platform_.files.removeFile(image.c_str());
    }
}

int InstallerProgram::runConsoleUninstallation() {
    ui_ = std::make_unique<ConsoleUI>(true, options_.ignoreErrors != 0, options_.quiet != 0, terminal_);
    bool automated = false;
    ui_->createInputProvider("autoUninstall", automated);
    wini_->setUnattended(automated);
    return runSession(*ui_, "Running uninstallation");
}

int InstallerProgram::runSession(ConsoleUI& ui, const char* announcement) {
    ui.setEngine(wini_.get());
    ui.setLog(&log_);
    setActiveUI(&ui);
    log_.print("%s", announcement);
    return wini_->run(&ui, &log_);
}

void InstallerProgram::endSession() {
    wini_->releaseSession();
    setActiveUI(nullptr);
    ui_.reset();
}

void InstallerProgram::showError(const char* text) {
    if (options_.gui != 0) {
        platform::showMessage(text, kCaption, platform::MessageIcon::kError);
    } else {
        print(std::string(text) + "\n");
    }
}

void InstallerProgram::print(const std::string& text) {
    terminal_.write(text);
    terminal_.flush();
}
