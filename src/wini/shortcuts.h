#pragma once

#include <string>

#include "contracts/system_modifications.h"
#include "engine/report.h"

class ApplicationRegistration;

namespace platform {
class FileSystem;
class ShellObjects;
struct LinkDescription;
}  // namespace platform

// Makes shortcuts and takes them away again. Nothing is thrown but std::bad_alloc.
class Shortcuts {
public:
    // All are borrowed and outlive this object.
    Shortcuts(platform::ShellObjects& shell, platform::FileSystem& files, ApplicationRegistration& product,
              ErrorList& errors)
        : shell_(shell), files_(files), product_(product), errors_(errors) {}

    // True on success; only then `outUndo` isn't empty. A path that the action log can't hold as it is makes
    // the operation fail, since what it would make could not be taken away again. `ui` may be null.
    bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui);
    // Deletes the file that the undo text names, and never a directory; a text of another kind is true
    // without any action.
    bool removeShortcut(const char* undoText, InstallerUI* ui);

    bool createFileShortcut(const char* linkPath, const platform::LinkDescription& link);
    bool createUrlShortcut(const char* linkPath, const char* url);

private:
    bool create(const ShortcutRequest& shortcut);
    bool createUninstallShortcut(const ShortcutRequest& shortcut);

    platform::ShellObjects& shell_;
    platform::FileSystem& files_;
    ApplicationRegistration& product_;
    ErrorList& errors_;
};
