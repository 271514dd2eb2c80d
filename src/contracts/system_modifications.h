#pragma once

#include <cstdint>
#include <string>

class InstallerUI;

// How a text joins a variable of the system environment.
enum class EnvironmentMode : std::int32_t { kReplace = 1, kAppend = 2, kInsert = 3 };

struct ShortcutRequest;
struct FirewallPortRule;
enum class FirewallResult : std::int32_t;

// The changes to the operating system that a description asks for, each with its undo: answered by Wini. An
// operation that makes a change hands back an undo text, which goes into the action log behind the record's
// tag and is what the operation that takes the change back reads. Texts are UTF-8; null counts as missing;
// `ui` may be null. Failures are results, and lines of the front end and the session's list of errors where
// the operation has such; nothing is thrown but std::bad_alloc. Session thread only.
//
// An earlier value that a record of the action log can't hold whole is never lost: that change fails and
// nothing is written.
class SystemModifications {
public:
    virtual ~SystemModifications() = default;

    // True on success. With `isPath` a text that names the directory of an entry isn't added a second time.
    // `outUndo` is the undo text also after a failure of the writing.
    virtual bool addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode,
                                     std::string& outUndo, InstallerUI* ui, bool isPath) = 0;
    virtual bool removeEnvironmentEntry(const char* undoText, InstallerUI* ui) = 0;
    // Tells the programs that run, and those to come, about the system's environment.
    virtual bool broadcastEnvironmentChange() = 0;

    // As above. A new key is put in front of `beforeKey` unless that is null or absent from the file.
    virtual bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                             std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey) = 0;
    virtual bool removeIniEntry(const char* undoText, InstallerUI* ui) = 0;

    // Adds lines behind others, as the file `description` tells.
    virtual bool modifyFile(const char* path, const char* description, std::string& outUndo,
                            InstallerUI* ui) = 0;
    virtual bool undoFileModification(const char* undoText, InstallerUI* ui) = 0;

    virtual bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) = 0;
    virtual bool removeShortcut(const char* undoText, InstallerUI* ui) = 0;

    virtual FirewallResult firewallAddApplication(const char* path, const char* name) = 0;
    virtual FirewallResult firewallRemoveApplication(const char* path) = 0;
    virtual FirewallResult firewallAddPort(const FirewallPortRule& rule) = 0;
    // `logText` is the record behind "PORT": port, protocols and name, separated by TABs.
    virtual FirewallResult firewallRemovePort(const char* logText) = 0;

    // A key or value whose record the action log would cut isn't written, since the undo would hit another.
    // `place` is one of the four root names, `path` may hold `/`. 0 or the system's error; -1 for a missing
    // argument or another root. `type` may be null; `outCreated` is the number of key levels that were made.
    virtual int writeRegistryValue(const char* place, const char* path, const char* type,
                                   const char* valueName, const char* data, int& outCreated) = 0;
    // The number of key levels that were made; after a failure they are taken back and the result is 0.
    virtual int createRegistryKey(const char* place, const char* path) = 0;
    // 0 or the system's error; -1 for a missing argument or another root.
    virtual int deleteRegistryValue(const char* place, const char* path, const char* valueName) = 0;
    // Deletes up to `levels` keys from the deepest on, each only without subkeys. How many were deleted.
    virtual int deleteRegistryKeys(const char* place, const char* path, int levels) = 0;

    // The product's own entry in the system's list of installed applications.
    virtual bool registerApplication() = 0;
    virtual bool removeUninstallEntry(const char* applicationName) = 0;
    // Runs the registered uninstaller of another application; `flags` is a set of UninstallEntryFlag.
    virtual bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                                      InstallerUI* ui) = 0;

    // `flags` is a set of RunProgramFlag; `arguments` and `workDir` may be null; `delay` is the pause between
    // two looks at an asynchronous program, in milliseconds. True when the document was opened, the program
    // was started, or, where its end is waited for, ended with 0.
    virtual bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                                      const char* workDir, InstallerUI* ui, std::uint32_t delay) = 0;
};
