#include "wini/shortcuts.h"

#include <algorithm>
#include <string_view>

#include "engine/action_log_format.h"
#include "platform/file_system.h"
#include "platform/shell_objects.h"
#include "wini/application_registration.h"
#include "wini/undo_text.h"

namespace {

std::string undoTextOf(const std::string& linkPath) {
    return UndoText::of({ActionLogFormat::kCreate, linkPath});
}

bool canBeUndone(const std::string& linkPath) {
    return UndoText::isField(linkPath) &&
           UndoText::fitsRecord(ActionLogFormat::kShortcut, undoTextOf(linkPath));
}

// The words bring a blank along, so that two of them stand behind it.
std::string lineOf(const char* word, std::string_view linkPath) {
    return std::string(word) + " shortcut " + std::string(linkPath);
}

}  // namespace

bool Shortcuts::addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) {
    const bool done = canBeUndone(shortcut.linkPath) && create(shortcut);
    outUndo = done ? undoTextOf(shortcut.linkPath) : std::string();
    const std::string line = lineOf(done ? "Create " : "FAILED to create ", shortcut.linkPath);
    Report report(ui, &errors_);
    report.addLine(line, false);
    if (!done) {
        report.addError(line);
    }
    return done;
}

bool Shortcuts::create(const ShortcutRequest& shortcut) {
    switch (shortcut.type) {
        case ShortcutType::kFile:
            return createFileShortcut(shortcut.linkPath.c_str(),
                                      {shortcut.target, shortcut.description, shortcut.arguments,
                                       shortcut.startPath, shortcut.iconPath});
        case ShortcutType::kUrl:
            return createUrlShortcut(shortcut.linkPath.c_str(), shortcut.target.c_str());
        case ShortcutType::kUninstall:
            return createUninstallShortcut(shortcut);
        case ShortcutType::kSymlink:
            break;
    }
    return false;
}

bool Shortcuts::createUninstallShortcut(const ShortcutRequest& shortcut) {
    platform::LinkDescription link;
    if (!product_.buildUninstallCommand(link.target, link.arguments, false)) {
        return false;
    }
    link.description = shortcut.description;
    return createFileShortcut(shortcut.linkPath.c_str(), link);
}

bool Shortcuts::createFileShortcut(const char* linkPath, const platform::LinkDescription& link) {
    return shell_.createLink(linkPath, link) == 0;
}

bool Shortcuts::createUrlShortcut(const char* linkPath, const char* url) {
    return shell_.createUrlLink(linkPath, url) == 0;
}

bool Shortcuts::removeShortcut(const char* undoText, InstallerUI* ui) {
    const std::string_view text = undoText == nullptr ? "" : undoText;
    const std::size_t end = std::min(text.find(ActionLogFormat::kSeparator), text.size());
    if (text.substr(0, end) != ActionLogFormat::kCreate) {
        return true;
    }
    const std::string linkPath(text.substr(std::min(end + 1, text.size())));
    const bool done = !linkPath.empty() && files_.removeFile(linkPath.c_str()) == 0;
    Report(ui, nullptr).addLine(lineOf(done ? "Remove " : "FAILED to remove ", linkPath), false);
    return done;
}
