#include "installer/installer_program.h"

#include <algorithm>

#include "installer/administrator_test.h"
#include "installer/console_control.h"
#include "installer/debug_log.h"
#include "installer/private_copy.h"
#include "installer/relaunch.h"
#include "installer/revision.h"
#include "installer/uninstallation_lock.h"
#include "package/package_checksum.h"
#include "package/package_offset.h"
#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "support/utilities.h"
#include "ui/console/console_ui.h"
#include "wini/uninstaller_events.h"
#include "wini/wini.h"

namespace {

constexpr char kCaption[] = "Tandrel Software installer";
constexpr int kFailed = -1;

// The results of a session that a script can tell from a failure; otherwise the usual code.
int exitCodeOf(int result, int usual) {
    return result == Installer::kAnotherRunIsAtWork || result == Installer::kNotRecovered ? result : usual;
}
// The wizard isn't part of the program yet: every run is a console run.
constexpr bool kHasGraphicalFrontEnd = false;

}  // namespace

InstallerProgram::InstallerProgram(platform::Platform& platform)
    : platform_(platform),
      log_(platform.files),
      services_(platform, debugLog_),
      answers_(platform.files),
      nestedSessions_(debugLog_) {}

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
    const int level =
        openDebugLog(log_, options_.debug, platform_.environment, platform_.files, platform_.console);
    debugLog_.setTarget(&log_, level);
    logStart();
    chooseFrontEnd();
    makeSession();
    if (!testRights()) {
        return kFailed;
    }
    if (options_.uninstallLog) {
        noteUnusedOptions();
        return UninstallRelaunch(platform_, debugLog_).run(*options_.uninstallLog, options_) ? 0 : kFailed;
    }
    return options_.uninstallFile ? uninstall() : install();
}

void InstallerProgram::makeSession() {
    wini_ = std::make_unique<Wini>(platform_, services_, answers_, nestedSessions_, debugLog_,
                                   WiniArguments{debugLog_.level(), options_.gui, options_.ignoreErrors});
    setActiveInstaller(wini_.get());
    wini_->setConfigFile(options_.configFile.value_or(""));
    wini_->setParameters(&parameters_, runOptionNames());
}

void InstallerProgram::logStart() {
    debugLog_.print("Installer version revision: %s", kBuildRevision);
    debugLog_.line("Parsing command line arguments");
    if (debugLog_.level() >= 2) {
        debugLog_.line("Insatllation was called with arguments:");
        for (int i = 0; i < parameters_.getCount(); ++i) {
            debugLog_.print("  [ARG %02d] -%s=\"%s\"", i, std::string(parameters_.name(i)).c_str(),
                            std::string(parameters_.value(i)).c_str());
        }
    }
    debugLog_.line("Installation started");
}

// The copy that uninstalls gets none but these.
void InstallerProgram::noteUnusedOptions() {
    const std::vector<std::string_view> used = runOptionNames();
    for (int i = 0; i < parameters_.getCount(); ++i) {
        if (std::find(used.begin(), used.end(), parameters_.name(i)) == used.end()) {
            note("-" + std::string(parameters_.name(i)) + ": this option has no effect on an uninstallation");
        }
    }
}

void InstallerProgram::chooseFrontEnd() {
    if (options_.gui != 0 && !kHasGraphicalFrontEnd) {
        debugLog_.line("WARNING: This build has no graphical front end; the console is used");
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
    int result = options_.binFile ? loadBinFile() : loadOwnPackage();
    if (result == 0) {
        result = runConsoleInstallation();
    }
    debugLog_.print("Installation finished (res=%i)", result);
    endSession();
    return exitCodeOf(result, 0);
}

int InstallerProgram::loadOwnPackage() {
    const std::uint32_t offset = readStampedPackageOffset();
    std::string path;
    if (!platform_.environment.programPath(path)) {
        debugLog_.line("ERROR: Failed to obtain module file name");
        note("The installation can't start: the system doesn't say where this program is");
        return kFailed;
    }
    debugLog_.line("Initializing with file=\"" + path +
                   "\", offset=" + std::to_string(static_cast<std::int32_t>(offset)));
    if (!verifyInstallerChecksum(path, platform_.files)) {
        showError(
            "The checksum of the installer doesn't match. This could indicate a broken download.\n"
            "Please, try downloading again!");
        debugLog_.line("ERROR: The installer checksum failed!");
        return kFailed;
    }
    debugLog_.line("Checksum successfuly verified");
    const int result = wini_->loadCabinet(path.c_str(), offset, options_.sessionFlags);
    if (result != 0) {
        note("The installation can't start: " + path + ": " + wini_->loadError());
    }
    return result;
}

int InstallerProgram::loadBinFile() {
    debugLog_.line("Initializing with bin file: " + *options_.binFile);
    const int result = wini_->loadCabinet(options_.binFile->c_str(), 0, options_.sessionFlags);
    if (result != 0) {
        debugLog_.print("ERROR: Initialization with bin file failed with result: %d", result);
        showError("The installer failed to initialize with the supplied binary file!");
        note(*options_.binFile + ": " + wini_->loadError());
    }
    return result;
}

int InstallerProgram::runConsoleInstallation() {
    ui_ = std::make_unique<ConsoleUI>(false, options_.ignoreErrors != 0, options_.quiet != 0,
                                      platform_.console, answers_, debugLog_);
    const std::string input = options_.configFile.value_or(options_.autoMode ? "autoInstall" : "");
    debugLog_.line("Initializing with input: \"" + input + "\"");
    bool automated = false;
    if (ui_->createInputProvider(input.c_str(), automated) != 0) {
        debugLog_.line("ERROR: Unable to initialize Console installation");
        note("The installation can't start: nobody can be asked");
        return kFailed;
    }
    wini_->setUnattended(automated);
    return runSession(*ui_);
}

int InstallerProgram::uninstall() {
    debugLog_.line("Real uninstall");
    platform_.events.signal(kUninstallerStartEvent);
    UninstallationLock lock(platform_, debugLog_);
    const int result = lock.take() ? uninstallFromLog() : kFailed;
    endSession();
    if (debugLog_.level() == 0) {
        removeRelaunchCopies();
    }
    lock.release();  // before whoever waits starts the next one
    platform_.events.signal(kUninstallerEndEvent);
    return result;
}

int InstallerProgram::uninstallFromLog() {
    int result = runUninstallation();
    if (result == Installer::kStartAgain) {
        const std::string log = wini_->productLog();
        if (log.empty()) {
            debugLog_.line("Nothing is left to be uninstalled");
            return 0;
        }
        result = uninstallRecovered(log);
    }
    return exitCodeOf(result, result == 0 && !wini_->hasErrors() ? 0 : kFailed);
}

// By the action log that the product has again, as before an interrupted run.
int InstallerProgram::uninstallRecovered(const std::string& log) {
    endSession();
    if (!OUtils::copyFile(log, *options_.uninstallFile, platform_.files, platform::FileRights::kPrivate)) {
        note("The uninstallation can't start: " + log + " can't be copied");
        return kFailed;
    }
    makeSession();
    return runUninstallation();
}

int InstallerProgram::runUninstallation() {
    int result = wini_->loadCabinet(options_.uninstallFile->c_str(), 0, options_.sessionFlags);
    if (result == 0) {
        result = runConsoleUninstallation();
    } else {
        note("The uninstallation can't start: " + *options_.uninstallFile + ": " + wini_->loadError());
    }
    return result;
}

void InstallerProgram::removeRelaunchCopies() {
    std::string image;
    const bool isCopy = platform_.environment.programPath(image) &&
                        PrivateCopy::isCopy(image, *options_.uninstallFile, platform_.files);
    platform_.files.removeFile(*options_.uninstallFile);
    if (isCopy) {
        PrivateCopy::removeImage(image, platform_.files);
    }
}

int InstallerProgram::runConsoleUninstallation() {
    ui_ = std::make_unique<ConsoleUI>(true, options_.ignoreErrors != 0, options_.quiet != 0,
                                      platform_.console, answers_, debugLog_);
    bool automated = false;
    ui_->createInputProvider("autoUninstall", automated);
    wini_->setUnattended(automated);
    return runSession(*ui_);
}

// The log says "uninstallation" for both kinds of session.
int InstallerProgram::runSession(ConsoleUI& ui) {
    ui.setEngine(wini_.get());
    setActiveUI(&ui);
    debugLog_.line("Running uninstallation");
    return wini_->run(&ui, &log_);
}

void InstallerProgram::endSession() {
    wini_->releaseSession();
    setActiveUI(nullptr);
    ui_.reset();
}

void InstallerProgram::showError(std::string_view text) {
    if (options_.gui != 0) {
        platform::showMessage(text, kCaption, platform::MessageIcon::kError);
    } else {
        print(std::string(text) + "\n");
    }
}

// Without a session there is no front end that could show it.
void InstallerProgram::note(std::string_view text) {
    debugLog_.line("ERROR: " + std::string(text));
    if (options_.gui != 0) {
        platform::showMessage(text, kCaption, platform::MessageIcon::kError);
    } else {
        platform_.console.writeError(std::string(text) + "\n");
    }
}

void InstallerProgram::print(std::string_view text) {
    platform_.console.write(text);
    platform_.console.flush();
}
