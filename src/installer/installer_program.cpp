#include "installer/installer_program.h"

#include <algorithm>
#include <array>
#include <future>
#include <utility>

#include "base/revision.h"
#include "description/pxml.h"
#include "engine/run_records.h"
#include "installer/administrator_test.h"
#include "installer/console_control.h"
#include "installer/debug_log.h"
#include "installer/help_text.h"
#include "installer/own_window.h"
#include "installer/private_copy.h"
#include "installer/relaunch.h"
#include "installer/removal_receipt.h"
#include "installer/uninstallation_lock.h"
#include "installer/verify_option.h"
#include "installer/version_option.h"
#include "package/package_checksum.h"
#include "package/package_offset.h"
#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "support/utilities.h"
#include "ui/console/console_ui.h"
#include "ui/console/progress_line.h"
#include "ui/graphical_front_ends.h"
#include "wini/uninstaller_events.h"
#include "wini/wini.h"

namespace {

constexpr int kFailed = -1;

// The end of the second stage is waited for, however long that takes.
constexpr std::uint32_t kOneTurn = 60000;  // milliseconds
constexpr int kLargestExitCode = 125;

constexpr int kProductCapacity = 1560;

// The results of a session that a script can tell from a failure; otherwise the usual code.
int exitCodeOf(int result, int usual) {
    return result == Installer::kAnotherRunIsAtWork || result == Installer::kNotRecovered ? result : usual;
}

}  // namespace

InstallerProgram::InstallerProgram(platform::Platform& platform, GraphicalFrontEnds& windows,
                                   StartMessages::Box box)
    : platform_(platform),
      windows_(windows),
      messages_(platform.console, std::move(box)),
      log_(platform.files),
      services_(platform, debugLog_),
      answers_(platform.files),
      nestedSessions_(debugLog_) {}

InstallerProgram::~InstallerProgram() {
    setActiveUI(nullptr);
    setActiveInstaller(nullptr);
}

int InstallerProgram::run(const std::vector<std::string>& arguments) {
    const int result = runAsAsked(arguments);
    if (isRun_ && !isHandedOver_) {
        record(result);
    }
    keepMessages();
    if (!options_.exitCodes || options_.verifyLog) {
        return result;
    }
    return secondStageCode_.value_or(outcome_.exitCode(result));
}

// Where somebody may be reading them.
void InstallerProgram::keepMessages() {
    const bool isUnattended = options_.autoMode || options_.configFile || options_.quiet != 0;
    const bool isOnConsole = options_.gui == 0 || !isRun_;
    if (isOnConsole && !isUnattended && !isHandedOver_) {
        keepOwnWindow(platform_.console);
    }
}

// Whoever wants to know what happened yesterday finds it there; a run that can't be recorded is none the
// worse.
void InstallerProgram::record(int result) {
    RunRecord record;
    if (!platform::localTime(record.time)) {
        return;
    }
    record.isUninstallation = options_.uninstallFile || options_.uninstallLog;
    record.end = static_cast<RunEnd>(outcome_.exitCode(result));
    record.product = options_.uninstallApp;
    std::array<char, kProductCapacity> product{};
    if (wini_ != nullptr && wini_->getFullName(product.data(), kProductCapacity) == 0) {
        record.product = product.data();
    }
    record.why = outcome_.why();
    if (!RunRecords(platform_).add(record)) {
        debugLog_.line("The run isn't recorded: there is no state directory, or it can't be written");
    }
}

int InstallerProgram::runAsAsked(const std::vector<std::string>& arguments) {
    const bool isParsed =
        parameters_.parse({arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end()}) == 0;
    options_ = readRunOptions(parameters_);
    if (!isParsed) {
        outcome_.note(RunEnd::kBadCommandLine);
        messages_.print("ERROR: Command line couldn't be parsed. Exiting!\n");
        return kFailed;
    }
    if (asksForHelp(parameters_)) {
        PXML description;
        const PackageKind package =
            readPackageDescription(options_.binFile.value_or(""), platform_, description);
        messages_.print(helpText(package, description));
        return 0;
    }
    if (asksForVersion(parameters_, options_.binFile.value_or(""), platform_)) {
        messages_.print(versionLine());
        return 0;
    }
    if (options_.verifyLog) {
        return verifyInstallation({*options_.verifyLog, options_.receipt, options_.quiet != 0}, platform_,
                                  messages_);
    }
    completeReceiptOptions(options_, platform_.environment);
    isRun_ = true;
    const int level =
        openDebugLog(log_, options_.debug, platform_.environment, platform_.files, platform_.console);
    debugLog_.setTarget(&log_, level);
    logStart();
    if (!chooseFrontEndDuringPackageTest()) {
        return kFailed;
    }
    makeSession();
    if (!testRights()) {
        return kFailed;
    }
    if (options_.uninstallLog) {
        return relaunch();
    }
    return options_.uninstallFile ? uninstall() : install();
}

int InstallerProgram::relaunch() {
    noteUnusedOptions();
    if (!acceptsReceipt(*options_.uninstallLog)) {
        platform_.events.signal(kUninstallerEndEvent);
        return kFailed;
    }
    if (UninstallRelaunch::isNothingThere(platform_, *options_.uninstallLog)) {
        outcome_.note(RunEnd::kNothingToDo);
    }
    UninstallRelaunch relaunch(platform_, messages_, debugLog_);
    if (options_.exitCodes && platform::keepsRunningPrograms()) {
        relaunch.moveImageAside();
    }
    if (!relaunch.run(*options_.uninstallLog, options_)) {
        return kFailed;
    }
    isHandedOver_ = true;
    if (options_.exitCodes) {
        waitForSecondStage(*relaunch.takeSecondStage());
    }
    return 0;
}

// Its codes are those of this one. With any other it didn't come to its end.
void InstallerProgram::waitForSecondStage(platform::ChildProcess& stage) {
    while (!stage.wait(kOneTurn)) {
    }
    const int code = stage.exitCode();
    if (code >= 0 && code <= kLargestExitCode) {
        secondStageCode_ = code;
    } else {
        outcome_.note(RunEnd::kFailed, "the second stage ended with " + std::to_string(code));
    }
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
            debugLog_.line("  [ARG " + std::string(i < 10 ? "0" : "") + std::to_string(i) + "] -" +
                           std::string(parameters_.name(i)) + "=\"" + std::string(parameters_.value(i)) +
                           "\"");
        }
    }
    debugLog_.line("Installation started");
}

// The copy that uninstalls gets none but these.
void InstallerProgram::noteUnusedOptions() {
    const std::vector<std::string_view> used = runOptionNames();
    std::string lines;
    for (int i = 0; i < parameters_.getCount(); ++i) {
        if (std::find(used.begin(), used.end(), parameters_.name(i)) == used.end()) {
            const std::string line =
                "-" + std::string(parameters_.name(i)) + ": this option has no effect on an uninstallation";
            debugLog_.line("ERROR: " + line);
            lines += (lines.empty() ? "" : "\n") + line;
        }
    }
    if (!lines.empty()) {
        messages_.note(lines, platform::MessageIcon::kWarning);
    }
}

// Reading the package and opening a toolkit don't wait for each other.
bool InstallerProgram::chooseFrontEndDuringPackageTest() {
    const bool installsOwnPackage = !options_.uninstallLog && !options_.uninstallFile && !options_.binFile;
    std::string path;
    if (options_.gui == 0 || !installsOwnPackage || !platform_.environment.programPath(path)) {
        return chooseFrontEnd();
    }
    // Where there is no thread to be had it is done by get().
    std::future<bool> test =
        std::async([this, &path] { return verifyInstallerChecksum(path, platform_.files); });
    const bool isChosen = chooseFrontEnd();
    isPackageWhole_ = test.get();
    return isChosen;
}

// Where no window can be shown, a person at a terminal is asked there instead. Without one nobody could
// answer, and nobody has said that nobody is to be asked.
bool InstallerProgram::chooseFrontEnd() {
    std::string reason;
    if (options_.gui != 0 && !windows_.isAvailable(reason)) {
        options_.gui = 0;
        if (!platform_.console.isInputTerminal()) {
            refuseWithoutFrontEnd(reason);
            return false;
        }
        debugLog_.line("WARNING: No window can be shown, so the console is used: " + reason);
        messages_.remark("No window can be shown, so the console is used: " + reason);
    }
    messages_.setGraphical(options_.gui != 0);
    return true;
}

void InstallerProgram::refuseWithoutFrontEnd(const std::string& reason) {
    outcome_.note(RunEnd::kNoFrontEnd, reason);
    note("No window can be shown (" + reason +
         "), and standard input is no terminal: nothing was done. The option -gui=0 uses the console all the "
         "same.");
    if (options_.uninstallFile && !options_.uninstallLog && debugLog_.level() == 0) {
        removeRelaunchCopies();
    }
    if (options_.uninstallFile || options_.uninstallLog) {
        platform_.events.signal(kUninstallerEndEvent);
    }
}

bool InstallerProgram::testRights() {
    if (hasAdministrativePrivileges(platform_.files,
                                    platform::administratorDirectories(platform_.registry))) {
        return true;
    }
    outcome_.note(RunEnd::kNoRights);
    if (options_.gui != 0) {
        messages_.show(
            "This program requires Administrative privileges.\nPlease right-click the installer and select "
            "\"Run as Administrator...\"",
            platform::MessageIcon::kWarning);
    } else {
        messages_.print("This program requires administrative privileges.\n");
    }
    return false;
}

int InstallerProgram::install() {
    int result = options_.binFile ? loadBinFile() : loadOwnPackage();
    if (result == 0) {
        result = runInstallation();
    }
    debugLog_.print("Installation finished (res=%i)", result);
    endSession();
    return exitCodeOf(result, 0);
}

// Nothing where the console isn't what the user looks at.
ByteProgress InstallerProgram::progressOn(ProgressLine& line) const {
    if (options_.gui != 0 || options_.quiet != 0) {
        return {};
    }
    return [&line](std::int64_t done, std::int64_t total) { line.show(done, total); };
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
    ProgressLine line(platform_.console);
    const ByteProgress progress = progressOn(line);
    if (!isPackageWhole_) {
        line.begin("Checking the package");
        isPackageWhole_ = verifyInstallerChecksum(path, platform_.files, progress);
    }
    if (!*isPackageWhole_ && offset == kUnstampedPackageOffset) {
        showError(noPackageText());
        debugLog_.line("ERROR: This program has no package");
        outcome_.note(RunEnd::kPackageDamaged, "there is none");
        return kFailed;
    }
    if (!*isPackageWhole_) {
        showError(
            "The checksum of the installer doesn't match. This could indicate a broken download.\n"
            "Please, try downloading again!");
        debugLog_.line("ERROR: The installer checksum failed!");
        outcome_.note(RunEnd::kPackageDamaged, path);
        return kFailed;
    }
    debugLog_.line("Checksum successfuly verified");
    line.begin("Unpacking the package");
    wini_->showLoadingOn(progress);
    const int result = wini_->loadCabinet(path.c_str(), offset, options_.sessionFlags);
    wini_->showLoadingOn({});
    if (result != 0) {
        outcome_.note(RunEnd::kPackageDamaged, path);
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
        outcome_.note(RunEnd::kPackageDamaged, *options_.binFile);
        note(*options_.binFile + ": " + wini_->loadError());
    }
    return result;
}

// The log says "uninstallation" for a console installation as well.
int InstallerProgram::runInstallation() {
    if (options_.gui != 0) {
        if (!makeWindow(false)) {
            debugLog_.line("ERROR: Unable to initialize GUI installation");
            note("The installation can't start: the window can't be made");
            return kFailed;
        }
        debugLog_.line("Running installation");
    } else {
        if (!openConsoleDialogue()) {
            return kFailed;
        }
        debugLog_.line("Running uninstallation");
    }
    return runSession();
}

bool InstallerProgram::openConsoleDialogue() {
    makeConsole(false);
    const std::string input = options_.configFile.value_or(options_.autoMode ? "autoInstall" : "");
    debugLog_.line("Initializing with input: \"" + input + "\"");
    bool automated = false;
    if (ui_->createInputProvider(input.c_str(), automated) != 0) {
        debugLog_.line("ERROR: Unable to initialize Console installation");
        note("The installation can't start: nobody can be asked");
        return false;
    }
    wini_->setUnattended(automated);
    return true;
}

int InstallerProgram::uninstall() {
    debugLog_.line("Real uninstall");
    platform_.events.signal(kUninstallerStartEvent);
    UninstallationLock lock(platform_, messages_, debugLog_);
    const bool isTurn = lock.take();
    int result = kFailed;
    if (!isTurn) {
        outcome_.note(RunEnd::kAnotherRun);
    }
    if (options_.receipt) {
        result = uninstallWithReceipt(isTurn);
    } else if (isTurn) {
        result = uninstallFromLog();
    }
    endSession();
    if (debugLog_.level() == 0) {
        removeRelaunchCopies();
    }
    lock.release();  // before whoever waits starts the next one
    platform_.events.signal(kUninstallerEndEvent);
    return result;
}

// What can't be is said before anything is done.
bool InstallerProgram::acceptsReceipt(const std::string& log) {
    const auto problem =
        options_.receipt ? RemovalReceipt::problemOf(*options_.receipt, log, platform_) : std::nullopt;
    if (problem) {
        note("The uninstallation can't start: " + *problem);
    }
    return !problem;
}

// Also of an uninstallation that can't be done.
int InstallerProgram::uninstallWithReceipt(bool isTurn) {
    if (!acceptsReceipt(*options_.uninstallFile)) {
        return kFailed;
    }
    receipt_ = std::make_unique<RemovalReceipt>(platform_, messages_, *options_.receipt);
    receipt_->begin(*options_.uninstallFile, options_.receiptLog);
    const int result = isTurn ? uninstallFromLog() : kFailed;
    endSession();
    const bool isWritten = receipt_->finish(result == 0, options_.quiet != 0);
    if (!isWritten) {
        outcome_.note(RunEnd::kFailed, "the receipt");
    }
    return result == 0 && !isWritten ? kFailed : result;
}

int InstallerProgram::uninstallFromLog() {
    int result = runUninstallation();
    if (result == Installer::kStartAgain) {
        const std::string log = wini_->productLog();
        if (log.empty()) {
            debugLog_.line("Nothing is left to be uninstalled");
            outcome_.note(RunEnd::kNothingToDo);
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
    if (receipt_) {
        receipt_->begin(*options_.uninstallFile, log);
    }
    makeSession();
    return runUninstallation();
}

int InstallerProgram::runUninstallation() {
    int result = wini_->loadCabinet(options_.uninstallFile->c_str(), 0, options_.sessionFlags);
    if (result == 0) {
        result = runUninstallationUI();
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

int InstallerProgram::runUninstallationUI() {
    if (options_.gui == 0) {
        makeConsole(true);
        bool automated = false;
        ui_->createInputProvider("autoUninstall", automated);
        wini_->setUnattended(automated);
    } else if (!makeWindow(true)) {
        debugLog_.line("ERROR: Unable to start GUI uninstall");
        note("The uninstallation can't start: the window can't be made");
        return kFailed;
    }
    debugLog_.line("Running uninstallation");
    return runSession();
}

bool InstallerProgram::makeWindow(bool uninstall) {
    ui_ = windows_.make(uninstall, answers_, debugLog_);
    return ui_ != nullptr;
}

void InstallerProgram::makeConsole(bool uninstall) {
    auto console = std::make_unique<ConsoleUI>(uninstall, options_.ignoreErrors != 0, options_.quiet != 0,
                                               platform_.console, answers_, debugLog_);
    console->understandDirectories(platform_.environment);
    ui_ = std::move(console);
}

int InstallerProgram::runSession() {
    ui_->setEngine(wini_.get());
    setActiveUI(ui_.get());
    services_.setFrontEnd(ui_.get());
    const int result = wini_->run(ui_.get(), &log_);
    outcome_.add(wini_->endOfRun());
    return result;
}

void InstallerProgram::endSession() {
    wini_->releaseSession();
    setActiveUI(nullptr);
    services_.setFrontEnd(nullptr);
    ui_.reset();
}

void InstallerProgram::showError(std::string_view text) {
    messages_.show(text, platform::MessageIcon::kError);
}

void InstallerProgram::note(std::string_view text) {
    debugLog_.line("ERROR: " + std::string(text));
    messages_.note(text);
}
