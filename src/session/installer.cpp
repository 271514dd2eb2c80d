#include "session/installer.h"

#include <exception>

#include "base/errors.h"
#include "base/path_functions.h"
#include "base/shared_buffer.h"
#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "description/environment_access.h"
#include "description/theme_reader.h"
#include "engine/action_log_reader.h"
#include "session/collaborators.h"
#include "support/p_buf_stream.h"
#include "support/utilities.h"

namespace {

constexpr char kDescriptionAlias[] = "install.xml";
constexpr int kPathCapacity = static_cast<int>(PathText::capacity());
constexpr int kNameCapacity = 1024;

}  // namespace

Installer::Installer(platform::FileSystem& files, EnvironmentAccess& environment,
                     SystemModifications& modifications)
    : SessionState(files), files_(files), environment_(environment) {
    navigation.errorSummary = &errorList;
    SessionState& state = *this;
    parts_ = std::make_unique<Collaborators>(
        state, SessionServices{files, environment, *this, modifications, *this},
        [this](const std::string& path, const FileEntry& file) { afterFileInstalled(path, file); });
}

Installer::~Installer() = default;

void Installer::setConsole(PConsole* console, std::int32_t level) {
    debugLog.setTarget(console, level);
}

void Installer::setParameters(const CommandLineArguments* arguments) {
    parameters = arguments;
}

void Installer::log(const char* text) {
    debugLog.line(text);
}

int Installer::loadCabinet(const char* path, std::int64_t offset, std::uint32_t flags) {
    sessionFlags = flags;
    actionLogFile.reset();
    if ((flags & kSessionActionLog) == 0) {
        return static_cast<int>(cabinet.load(path == nullptr ? "" : path, offset));
    }
    auto file = std::make_unique<PFileStream>(files_);
    if (file->openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                       PFileStream::kOpenExisting) != 0) {
        debugLog.print("ERROR: Failed to open the installation log file (%s)", path);
        return -1;
    }
    actionLogFile = std::move(file);
    return 0;
}

int Installer::run(InstallerUI* ui, PConsole* console) {
    setConsole(console, debugLog.level());
    if (ui == nullptr) {
        log("ERROR: No installer UI handler specified");
        return -1;
    }
    int result = -1;
    try {
        result = prepare(*ui) ? runUI(*ui) : -1;
    } catch (const GenericError& error) {
        reportError(*ui, error.what());
    } catch (const std::exception& error) {
        reportError(*ui, error.what());
    }
    return result;
}

bool Installer::prepare(InstallerUI& ui) {
    uiIsGraphical = ui.isGraphical();
    if (!readDescription() || !readModels()) {
        return false;
    }
    findEarlierInstallations();
    if (!loadDefaultValues(ui)) {
        return false;
    }
    publishEarlierInstallations();
    scanExternalInstallations();
    return true;
}

bool Installer::readDescription() {
    SharedBuffer text;
    if (!(isActionLogSession() ? readDescriptionFromLog(text) : readDescriptionFromCabinet(text))) {
        return false;
    }
    log("Parsing installation file");
    PBufStream stream(text.data(), text.size());
    if (description.loadStream(stream) != 0) {
        log("ERROR: Parsing installation file. Exiting!");
        return false;
    }
    return true;
}

bool Installer::readDescriptionFromLog(SharedBuffer& outText) {
    log("Reading installation file name from action log");
    std::string path;
    if (!ActionLogReader(actionLogFile.get(), debugLog).readDescriptionPath(path)) {
        log("ERROR: Could not obtain installation file from action log. Exiting!");
        return false;
    }
    log("Reading previous installation variables");
    const int imported = importVariablesFromLog();
    if (imported != 0) {
        log("ERROR: Failed to read variables from log");
    }
    log("Reading installation file");
    const int status = OUtils::readWholeFile(path.c_str(), outText, files_);
    if (status != 0) {
        log("ERROR: Failed reading installation file");
    }
    // Single bad lines don't keep the user from uninstalling; a log without its variables does.
    if (status != 0 || imported < 0) {
        log("ERROR: Cannot continue due to error(s). Exiting!");
        return false;
    }
    return true;
}

// 0; 1 when there were bad lines; -1 when the variables can't be read.
int Installer::importVariablesFromLog() {
    try {
        const bool hasBadLines =
            ActionLogReader(actionLogFile.get(), debugLog)
                .readVariablesFromLog([this](const std::string& name, const std::string& value) {
                    setVariable(name.c_str(), value.c_str());
                });
        return hasBadLines ? 1 : 0;
    } catch (const GenericError& error) {
        log(error.what());
        return -1;
    }
}

bool Installer::readDescriptionFromCabinet(SharedBuffer& outText) {
    log("Decompressing installation file");
    if (readAlias(outText, kDescriptionAlias, nullptr) == 0) {
        return true;
    }
    log("ERROR: Decompressing installation file");
    log("ERROR: Cannot continue due to error(s). Exiting!");
    return false;
}

bool Installer::readModels() {
    log("Getting product description");
    if (parts_->product.readProductDescription() != 0) {
        return false;
    }
    log("Getting file sets");
    parts_->fileSets.readFileSets([this](const std::string& alias) {
        const std::optional<std::int32_t> index = cabinet.findAlias(alias);
        return index ? static_cast<std::int32_t>(cabinet.entry(*index).fileSize()) : 0;
    });
    if (uiIsGraphical != 0) {
        log("Getting GUI colour theme info");
        readColourTheme(description, parts_->expressions, debugLog, colourTheme);
    }
    if (!readDialogs()) {
        return false;
    }
    readControlVariables();
    if (uiIsGraphical != 0) {
        log("Initializing GUI colour theme");
        applyColourTheme(colourTheme, dialogs);
    }
    return true;
}

bool Installer::readDialogs() {
    log("Getting UI dialogs");
    if (parts_->dialogReader.readDialogs(isActionLogSession()) != 0) {
        log("ERROR: Getting dialogs info. Aborting!");
        return false;
    }
    return true;
}

void Installer::readControlVariables() {
    log("Getting control variables names");
    if (controlVariables.read(description, debugLog) != 0) {
        log("WARNING: There are no control variable names provided in the installation xml!");
    }
    exclusions.build(description, controlVariables, dialogs, parts_->variables);
}

void Installer::findEarlierInstallations() {
    log("Checking for previous and legacy installations for this product");
    parts_->scan.scanForEarlierInstallations(isActionLogSession());
    if (earlier.previousInstallationKind != kNoPreviousInstallation || earlier.legacyInstallationCount >= 1) {
        setControl(ControlVariable::kShouldUninstall, "1");
    }
    if (earlier.previousInstallationKind != kNoPreviousInstallation) {
        importEarlierVariables();
    }
}

void Installer::importEarlierVariables() {
    log("Initializing previous install's variable values from log");
    try {
        readEarlierLog();
    } catch (const GenericError& error) {
        log(error.what());
    }
}

void Installer::readEarlierLog() {
    char name[kNameCapacity] = "";
    if (getFullName(name, kNameCapacity) != 0) {
        throw InstallerError("ERROR: Obtaining app name");
    }
    PathText path;
    if (!getApplicationLogFile(name, path.data(), kPathCapacity)) {
        throw InstallerError("ERROR: Obtaining actionlog filename (%s)", name);
    }
    PFileStream file(files_);
    if (file.openFile(path.c_str(), PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting) != 0) {
        throw InstallerError("ERROR: Opening action file (%s)", path.c_str());
    }
    ActionLogReader(&file, debugLog)
        .readVariablesFromLog([this](const std::string& key, const std::string& value) {
            setVariable(key.c_str(), value.c_str());
        });
}

bool Installer::loadDefaultValues(InstallerUI& ui) {
    log("Initializing default values");
    PathText configFile;
    if (!isActionLogSession()) {
        getConfigFile(configFile.data(), kPathCapacity);
    }
    if (parts_->defaultsLoader.loadDefaultValues(description, configFile.c_str(), &ui) != 0) {
        log("ERROR: Parsing XML Default values (This may indicate wrong configuration file format)");
        return false;
    }
    return true;
}

// Behind the default values, so that a default can't hide an earlier installation.
void Installer::publishEarlierInstallations() {
    parts_->scan.scanLegacyLogFiles(isActionLogSession());
    if (earlier.legacyInstallationCount >= 1 || earlier.externalLegacyCount >= 1) {
        setControl(ControlVariable::kLegacyInstallation, "1");
    }
    if (earlier.previousInstallationKind != kNoPreviousInstallation) {
        const char digit[] = {static_cast<char>('0' + earlier.previousInstallationKind), '\0'};
        setControl(ControlVariable::kPreviousInstallation, digit);
        setControl(ControlVariable::kShouldUninstall, "1");
    }
}

void Installer::scanExternalInstallations() {
    parts_->scan.scanExternalLegacy();
    const std::string count = std::to_string(earlier.externalLegacyCount);
    if (controlVariables.nameOf(ControlVariable::kExternalLegacyInstallation)[0] != '\0') {
        setControl(ControlVariable::kExternalLegacyInstallation, count.c_str());
    } else if (earlier.externalLegacyCount > 0) {
        log("WARNING: External legacy installation variable is not specified and installations were found!");
    }
}

int Installer::runUI(InstallerUI& ui) {
    log("Starting installation UI");
    navigation.currentDialog = 0;
    int result = -1;
    try {
        result = ui.run();
    } catch (const GenericError& error) {
        reportError(ui, error.what());
        navigation.lastResult = 1;  // the front end is about to tell how the run ended
    }
    log("Ending installation UI");
    ui.finish();
    if (result != 0) {
        log("ERROR: There were errors during the installation");
    }
    return result;
}

void Installer::reportError(InstallerUI& ui, const char* text) {
    log(text);
    // A console goes on printing where the text ends, and would wipe its line.
    ui.messageBox((std::string(text) + "\n").c_str(), MessageKind::kInformation);
}

void Installer::setControl(ControlVariable role, const char* value) {
    parts_->controls.set(role, value);
}

int Installer::releaseSession() {
    cabinet.clear();
    actionLogFile.reset();
    for (const UninstallBackup& backup : uninstallBackups) {
        removeIfNamed(backup.archivePath);
        removeIfNamed(backup.directoriesPath);
    }
    uninstallBackups.clear();
    for (const NestedBackup& backup : nestedBackups) {
        removeIfNamed(backup.copyPath);
    }
    return 0;
}

void Installer::removeIfNamed(const std::string& path) {
    if (!path.empty()) {
        OUtils::removeFile(path.c_str(), files_);
    }
}

void Installer::setApplicationPath(const char* path) {
    applicationPath.assign(path);
}

int Installer::getApplicationPath(char* buffer, int size) {
    if (!applicationPath.isEmpty()) {
        OUtils::copyText(buffer, applicationPath.c_str(), size);
        return 0;
    }
    std::string program;
    const bool known = environment_.getProgramPath(program);
    const std::size_t separator = program.find_last_of("/\\");
    program.resize(separator == std::string::npos ? 0 : separator);
    OUtils::copyText(buffer, program.c_str(), size);
    return known ? 0 : -1;
}

int Installer::cancel(InstallerUI* ui) {
    return parts_->buttons.cancel(ui);
}
