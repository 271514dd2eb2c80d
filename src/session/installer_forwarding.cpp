// The operations of a session that its parts carry out.

#include "base/shared_buffer.h"
#include "session/collaborators.h"
#include "session/installer.h"
#include "ui/refresh_flags.h"

int Installer::getFullName(char* buffer, int size) {
    return parts_->product.getFullName(buffer, size);
}
int Installer::getTitle(char* buffer, int size) {
    return parts_->product.getTitle(buffer, size);
}
int Installer::getMajorVersion(char* buffer, int size) {
    return parts_->product.getMajorVersion(buffer, size);
}
int Installer::getVersion(char* buffer, int size) {
    return parts_->product.getVersion(buffer, size);
}
int Installer::getWebsite(char* buffer, int size) {
    return parts_->product.getWebsite(buffer, size);
}
int Installer::getSupportEmail(char* buffer, int size) {
    return parts_->product.getSupportEmail(buffer, size);
}
int Installer::getInstallLogFile(char* buffer, int size) {
    return parts_->product.getInstallLogFile(buffer, size);
}
int Installer::getInstallBackupFile(char* buffer, int size) {
    return parts_->product.getInstallBackupFile(buffer, size);
}
int Installer::getUninstallCmd(char* buffer, int size) {
    return parts_->product.getUninstallCmd(buffer, size);
}
int Installer::getUninstallXmlFile(char* buffer, int size) {
    return parts_->product.getUninstallXmlFile(buffer, size);
}
int Installer::getInstallHelpUrl(char* buffer, int size) {
    return parts_->product.getInstallHelpUrl(buffer, size);
}

int Installer::getPreviousInstallationKind() {
    return earlier.previousInstallationKind;
}
bool Installer::isUninstalling() {
    return (sessionFlags & kSessionActionLog) != 0;
}
int Installer::readAlias(SharedBuffer& outBuffer, const char* alias,
                         std::array<std::uint8_t, 16>* outDigest) {
    std::optional<CabinetFile> file = cabinet.readAlias(alias);
    if (!file) {
        return -1;
    }
    outBuffer = std::move(file->content);
    if (outDigest != nullptr) {
        *outDigest = file->digest;
    }
    return 0;
}
int Installer::getFilePathByAlias(const char* alias, char* buffer, int size) {
    return parts_->fileSets.getFilePathByAlias(alias, buffer, size);
}

DialogDesc* Installer::getDialog(int dialog, int sub) {
    return dialogs.getDialog(dialog, sub);
}
int Installer::getDialogCount() {
    return dialogs.getDialogCount();
}
int Installer::getDialogWidth(int dialog) {
    return dialogs.getDialogWidth(dialog);
}
int Installer::getDialogHeight(int dialog) {
    return dialogs.getDialogHeight(dialog);
}
int Installer::getSubDialogCount(int dialog) {
    return dialogs.getSubDialogCount(dialog);
}
int Installer::getCurrentDialog() {
    return navigation.currentDialog;
}
int Installer::getCurrentSubDialog() {
    return navigation.currentSubdialog;
}
std::uint32_t Installer::getRefreshFlags(const char* variable, int dialog, int sub) {
    return ::getRefreshFlags(dialogs, variable, dialog, sub);
}
DialogElementDesc* Installer::getElement(int dialog, int index, int sub) {
    return dialogs.getElement(dialog, index, sub);
}
int Installer::getElementCount(int dialog, int sub) {
    return dialogs.getElementCount(dialog, sub);
}
DialogButtonDesc* Installer::getDialogItem(int dialog, int index, int sub) {
    return dialogs.getDialogItem(dialog, index, sub);
}
int Installer::getDialogItemCount(int dialog, int sub) {
    return dialogs.getDialogItemCount(dialog, sub);
}
DialogFieldDesc* Installer::getField(int dialog, int index, int sub) {
    return dialogs.getField(dialog, index, sub);
}
int Installer::getTaskCount(int dialog) {
    return dialogs.getTaskCount(dialog);
}
TaskDesc* Installer::getTask(int dialog, int index) {
    return dialogs.getTask(dialog, index);
}
const ColourTheme& Installer::getColourTheme() {
    return colourTheme;
}
void Installer::setColourTheme(const ColourTheme& theme) {
    colourTheme = theme;
}
int Installer::getFieldCount(int dialog, int sub) {
    return dialogs.getFieldCount(dialog, sub);
}

bool Installer::isCancelled() {
    return navigation.cancelled != 0;
}
bool Installer::isFinished() {
    return navigation.finished != 0;
}
bool Installer::hasErrors() {
    return navigation.lastResult != 0;
}
int Installer::checkDialogCondition(InstallerUI* ui) {
    return parts_->conditionCheck.check(ui);
}
void Installer::setUiState(std::int32_t state) {
    navigation.uiState = state;
}
std::int32_t Installer::getUiState() {
    return navigation.uiState;
}

int Installer::expandVariables(const char* source, char* destination, int size, bool stopOnMissing) {
    return parts_->expressions.expandVariables(source, destination, size, stopOnMissing);
}
int Installer::getDefaultValue(const char* name, char* buffer, int size) {
    return parts_->variables.getDefaultValue(name, buffer, size);
}
int Installer::getVariable(const char* name, char* buffer, int size) {
    return parts_->variables.getVariable(name, buffer, size);
}
int Installer::setVariable(const char* name, const char* value) {
    return parts_->variables.setVariable(name, value);
}
int Installer::evaluateCondition(const char* text) {
    return parts_->expressions.evaluateCondition(text);
}
int Installer::applyAssignment(const char* text) {
    return parts_->variables.applyAssignment(text);
}
int Installer::resetVariable(const char* name, int mode) {
    return parts_->variables.resetVariable(name, mode);
}

void Installer::performAction(InstallerUI* ui, const char* text) {
    parts_->buttons.perform(ui, text);
}
int Installer::shift(InstallerUI* ui, int count) {
    return parts_->navigator.shift(ui, count);
}
int Installer::dialogBack(InstallerUI* ui, int count) {
    return parts_->navigator.dialogBack(ui, count);
}
int Installer::dialogNext(InstallerUI* ui, int count) {
    return parts_->navigator.dialogNext(ui, count);
}
int Installer::goToDialog(int dialog, InstallerUI* ui) {
    return parts_->pages.goToDialog(dialog, ui);
}
int Installer::goToSubdialog(int dialog, int sub, InstallerUI* ui) {
    return parts_->pages.goToSubdialog(dialog, sub, ui);
}
void Installer::runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub) {
    parts_->triggers.run(ui, when, dialog, sub);
}
void Installer::refreshTaskStates(InstallerUI* ui) {
    parts_->tasks.refresh(ui);
}
void Installer::updateTaskState(InstallerUI* ui, int dialog, int task, std::int32_t state) {
    parts_->tasks.update(ui, dialog, task, state);
}
void Installer::showHelp(InstallerUI* ui) {
    parts_->buttons.showHelp(ui);
}

bool Installer::isThemed() {
    return colourTheme.isThemed();
}
std::int32_t Installer::getThemeColour(int index) {
    return colourTheme.getThemeColour(index);
}
void Installer::getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                                 std::int32_t& outForeground) {
    dialogs.getDialogColours(dialog, sub, outBackground, outForeground);
}

std::string Installer::extractAlias(const char* alias, const char* destinationDirectory,
                                    bool expandVariablesInFile, bool stripExeExtension, int) {
    return parts_->aliasExtractor.extractAlias(alias, destinationDirectory, expandVariablesInFile,
                                               stripExeExtension);
}
