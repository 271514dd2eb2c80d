// The operations that a session leaves to its parts. Buffers with a size and the contract's fixed numbers are
// used here and nowhere below.

#include <algorithm>
#include <array>

#include "base/shared_buffer.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/predefined_variables.h"
#include "session/installer.h"

namespace {

constexpr std::size_t kPathLimit = OUtils::kPathCapacity - 1;

std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

int numberOf(bool succeeded) {
    return succeeded ? 0 : -1;
}

// How many bytes the caller has room for; without a buffer the whole text is measured.
std::size_t limitOf(const char* buffer, int size) {
    return buffer == nullptr ? std::string::npos : static_cast<std::size_t>(std::max(size, 1)) - 1;
}

// 0; -1 with the buffer emptied when there is no text, and without a buffer.
int give(const std::optional<std::string>& text, char* buffer, int size) {
    OUtils::copyText(buffer, text ? text->c_str() : "", size);
    return text && buffer != nullptr ? 0 : -1;
}

// Like give, but 1 for a path that the description has and whose expansion is empty.
int givePath(const std::optional<std::string>& path, bool isGiven, char* buffer, int size) {
    const int result = give(path, buffer, size);
    return result != 0 && isGiven && buffer != nullptr ? 1 : result;
}

// The variable's index, -2 for one that isn't stored. Without such a variable -1, and the buffer is left
// unchanged unless the name is one of those that are never stored.
int giveVariable(const char* name, const std::optional<VariableReading>& reading, char* buffer, int size) {
    if (reading) {
        OUtils::copyText(buffer, reading->value.c_str(), size);
        return reading->index.value_or(-2);
    }
    if (viewOf(name).starts_with('$') || PredefinedVariables::isPredefined(viewOf(name))) {
        OUtils::copyText(buffer, "", size);
    }
    return -1;
}

}  // namespace

int Installer::getFullName(char* buffer, int size) {
    return give(model_.product.fullName(), buffer, size);
}
// A product without a name still has a title.
int Installer::getTitle(char* buffer, int size) {
    const auto title = model_.product.title();
    give(title.value_or(std::string(ProductDescription::kUnknownTitle)), buffer, size);
    return title && buffer != nullptr && size > 0 ? 0 : -1;
}
int Installer::getMajorVersion(char* buffer, int size) {
    return give(model_.product.majorVersion(), buffer, size);
}
// An incomplete version is returned as far as it goes, but is still a failure.
int Installer::getVersion(char* buffer, int size) {
    give(model_.product.versionSoFar(), buffer, size);
    return model_.product.version() && buffer != nullptr && size > 0 ? 0 : -1;
}
int Installer::getWebsite(char* buffer, int size) {
    return give(model_.product.website(), buffer, size);
}
int Installer::getSupportEmail(char* buffer, int size) {
    return give(model_.product.supportEmail(), buffer, size);
}
int Installer::getInstallHelpUrl(char* buffer, int size) {
    return give(model_.product.installHelpUrl(), buffer, size);
}
int Installer::getBanner(char* buffer, int size) {
    return give(isUninstalling() ? model_.product.uninstallBanner() : model_.product.banner(), buffer, size);
}
const WizardWords& Installer::getWords() {
    return model_.product.words();
}
int Installer::getInstallLogFile(char* buffer, int size) {
    return givePath(model_.product.installLogFile(), model_.product.givesPath("InstallLogFile"), buffer,
                    size);
}
int Installer::getInstallBackupFile(char* buffer, int size) {
    return givePath(model_.product.installBackupFile(), model_.product.givesPath("InstallBackupFile"), buffer,
                    size);
}
int Installer::getUninstallCmd(char* buffer, int size) {
    return givePath(model_.product.uninstallCommand(), model_.product.givesPath("UninstallCmd"), buffer,
                    size);
}
int Installer::getUninstallXmlFile(char* buffer, int size) {
    return givePath(model_.product.uninstallXmlFile(), model_.product.givesPath("UninstallXmlFile"), buffer,
                    size);
}
int Installer::getTemporaryFileName(char* buffer, int size) {
    const auto path = system_.temporaryFileName();
    // A path that was cut would name another file.
    const bool fits = path && static_cast<std::int64_t>(path->size()) < size;
    return give(fits ? path : std::nullopt, buffer, size);
}

int Installer::getPreviousInstallationKind() {
    return work_.earlier().kind();
}
bool Installer::isUninstalling() {
    return (sessionFlags & kSessionActionLog) != 0;
}
int Installer::readAlias(SharedBuffer& outBuffer, const char* alias,
                         std::array<std::uint8_t, 16>* outDigest) {
    auto file = cabinet.readAlias(viewOf(alias));
    if (!file) {
        return -1;
    }
    outBuffer = std::move(file->content);
    if (outDigest != nullptr) {
        *outDigest = file->digest;
    }
    return 0;
}
// The result is -1 even for a path that was found: callers look at the buffer.
int Installer::getFilePathByAlias(const char* alias, char* buffer, int size) {
    if (const auto path = model_.fileSets.pathOfAlias(viewOf(alias))) {
        give(path, buffer, size);
    }
    return -1;
}

DialogDesc* Installer::getDialog(int dialog, int sub) {
    return model_.dialogs.getDialog(dialog, sub);
}
int Installer::getDialogCount() {
    return model_.dialogs.getDialogCount();
}
int Installer::getDialogWidth(int dialog) {
    return model_.dialogs.getDialogWidth(dialog);
}
int Installer::getDialogHeight(int dialog) {
    return model_.dialogs.getDialogHeight(dialog);
}
int Installer::getSubDialogCount(int dialog) {
    return model_.dialogs.getSubDialogCount(dialog);
}
int Installer::getCurrentDialog() {
    return walk_.state().currentDialog;
}
int Installer::getCurrentSubDialog() {
    return walk_.state().currentSubdialog;
}
std::string Installer::getShownText(const DialogElementDesc& element) {
    return element.expandsVariables ? model_.variables.expressions().expandWholeForSystem(element.text)
                                    : element.text;
}
std::uint32_t Installer::getRefreshFlags(const char* variable, int dialog, int sub) {
    return walk_.refreshFlags(viewOf(variable), dialog, sub);
}
DialogElementDesc* Installer::getElement(int dialog, int index, int sub) {
    return model_.dialogs.getElement(dialog, index, sub);
}
int Installer::getElementCount(int dialog, int sub) {
    return model_.dialogs.getElementCount(dialog, sub);
}
DialogButtonDesc* Installer::getDialogItem(int dialog, int index, int sub) {
    return model_.dialogs.getDialogItem(dialog, index, sub);
}
int Installer::getDialogItemCount(int dialog, int sub) {
    return model_.dialogs.getDialogItemCount(dialog, sub);
}
DialogFieldDesc* Installer::getField(int dialog, int index, int sub) {
    return model_.dialogs.getField(dialog, index, sub);
}
int Installer::getTaskCount(int dialog) {
    return model_.dialogs.getTaskCount(dialog);
}
TaskDesc* Installer::getTask(int dialog, int index) {
    return model_.dialogs.getTask(dialog, index);
}
const ColourTheme& Installer::getColourTheme() {
    return model_.theme;
}
void Installer::setColourTheme(const ColourTheme& theme) {
    model_.theme = theme;
}
int Installer::getFieldCount(int dialog, int sub) {
    return model_.dialogs.getFieldCount(dialog, sub);
}

bool Installer::isCancelled() {
    return walk_.state().cancelled;
}
bool Installer::isFinished() {
    return walk_.state().finished;
}
bool Installer::hasErrors() {
    return !walk_.state().hasSucceeded();
}
int Installer::checkDialogCondition(InstallerUI* ui) {
    return walk_.checkCondition(ui);
}
void Installer::setUiState(std::int32_t state) {
    if (!walk_.isAtWork()) {
        walk_.state().uiState = state;
    }
}
std::int32_t Installer::getUiState() {
    return walk_.state().uiState;
}

int Installer::expandVariables(const char* source, char* destination, int size, bool stopOnMissing) {
    const auto result = model_.variables.expressions().expandMeasured(
        viewOf(source), limitOf(destination, size), stopOnMissing);
    give(result ? std::optional(result->text) : std::nullopt, destination, size);
    return result ? static_cast<int>(result->length) + 1 : 0;
}
int Installer::getDefaultValue(const char* name, char* buffer, int size) {
    if (buffer == nullptr) {
        return -1;
    }
    return giveVariable(name, model_.variables.store().readDefault(viewOf(name), limitOf(buffer, size)),
                        buffer, size);
}
int Installer::getVariable(const char* name, char* buffer, int size) {
    return giveVariable(name, model_.variables.store().read(viewOf(name), limitOf(buffer, size)), buffer,
                        size);
}
int Installer::setVariable(const char* name, const char* value) {
    if (walk_.isAtWork()) {
        return -1;
    }
    const auto text = value == nullptr ? std::nullopt : std::optional<std::string_view>(value);
    return numberOf(model_.variables.store().store(viewOf(name), {text, std::nullopt, std::nullopt}, false));
}
int Installer::evaluateCondition(const char* text) {
    const auto truth = model_.variables.expressions().evaluate(viewOf(text));
    return truth ? static_cast<int>(*truth) : -1;
}
int Installer::applyAssignment(const char* text) {
    return numberOf(model_.variables.store().assign(viewOf(text)));
}
int Installer::resetVariable(const char* name, int mode) {
    return numberOf(model_.variables.store().reset(viewOf(name), static_cast<ResetMode>(mode)));
}

void Installer::performAction(InstallerUI* ui, const char* text) {
    walk_.performAction(ui, viewOf(text));
}
int Installer::shift(InstallerUI* ui, int count) {
    return walk_.shift(ui, count);
}
int Installer::dialogBack(InstallerUI* ui, int count) {
    return walk_.back(ui, count);
}
int Installer::dialogNext(InstallerUI* ui, int count) {
    return walk_.next(ui, count);
}
int Installer::goToDialog(int dialog, InstallerUI* ui) {
    return walk_.goToDialog(dialog, ui);
}
int Installer::goToSubdialog(int dialog, int sub, InstallerUI* ui) {
    return walk_.goToSubdialog(dialog, sub, ui);
}
void Installer::runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub) {
    walk_.runTriggers(ui, when, dialog, sub);
}
void Installer::refreshTaskStates(InstallerUI* ui) {
    walk_.refreshTasks(ui);
}
void Installer::updateTaskState(InstallerUI* ui, int dialog, int task, std::int32_t state) {
    walk_.updateTask(ui, dialog, task, state);
}
void Installer::showHelp(InstallerUI* ui) {
    walk_.showHelp(ui);
}

bool Installer::isThemed() {
    return model_.theme.isThemed();
}
std::int32_t Installer::getThemeColour(int index) {
    return model_.theme.getThemeColour(index);
}
void Installer::getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                                 std::int32_t& outForeground) {
    model_.dialogs.getDialogColours(dialog, sub, outBackground, outForeground);
}

bool Installer::openInDefaultBrowser(const char* url) {
    return system_.openInDefaultBrowser(viewOf(url));
}
int Installer::cancel(InstallerUI* ui) {
    return walk_.cancel(ui);
}

void Installer::setApplicationPath(const char* path) {
    applicationPath = viewOf(path).substr(0, kPathLimit);
}
int Installer::getApplicationPath(char* buffer, int size) {
    return give(work_.applicationDirectory(), buffer, size);
}

std::string Installer::extractAlias(const char* alias, const char* destinationDirectory,
                                    bool expandVariablesInFile, bool stripExeExtension, int) {
    return work_.installation().extractAlias(viewOf(alias), viewOf(destinationDirectory),
                                             expandVariablesInFile, stripExeExtension);
}
