#pragma once

#include <cstdint>
#include <string>

class InstallerUI;

// How a text is added to a variable of the system environment.
enum class EnvironmentMode : std::int32_t { kReplace = 1, kAppend = 2, kInsert = 3 };

struct ShortcutRequest;
struct FirewallPortRule;
enum class FirewallResult : std::int32_t;

// The changes to the operating system that a description asks for, each with its undo; Wini carries them out.
// An operation that makes a change returns an undo text, which goes into the action log after the record's
// tag and is read by the operation that takes the change back. Texts are UTF-8; null counts as missing;
// `ui` may be null. Failures are reported by the result and, for some operations, also by lines in the front
// end and in the session's list of errors; nothing is thrown but std::bad_alloc. Session thread only.
//
// An earlier value that a record of the action log can't hold whole is never lost: that change fails and
// nothing is written.
class SystemModifications {
public:
    virtual ~SystemModifications() = default;

    // True on success. With `isPath` a text that names the directory of an entry isn't added a second time.
    // `outUndo` holds the undo text even when writing fails.
    virtual bool addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode,
                                     std::string& outUndo, InstallerUI* ui, bool isPath) = 0;
    virtual bool removeEnvironmentEntry(const char* undoText, InstallerUI* ui) = 0;
    // Makes the system's environment known to running programs and to those started later.
    virtual bool broadcastEnvironmentChange() = 0;

    // As above. A new key is put in front of `beforeKey` unless that is null or absent from the file.
    virtual bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                             std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey) = 0;
    virtual bool removeIniEntry(const char* undoText, InstallerUI* ui) = 0;

    // Adds lines after others, as the file `description` says.
    virtual bool modifyFile(const char* path, const char* description, std::string& outUndo,
                            InstallerUI* ui) = 0;
    virtual bool undoFileModification(const char* undoText, InstallerUI* ui) = 0;

    virtual bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) = 0;
    virtual bool removeShortcut(const char* undoText, InstallerUI* ui) = 0;

    virtual FirewallResult firewallAddApplication(const char* path, const char* name) = 0;
    virtual FirewallResult firewallRemoveApplication(const char* path) = 0;
    virtual FirewallResult firewallAddPort(const FirewallPortRule& rule) = 0;
    // `logText` is the record after "PORT": port, protocols and name, separated by TABs.
    virtual FirewallResult firewallRemovePort(const char* logText) = 0;

    // A key or value whose record the action log would cut isn't written: its undo would change another one.
    // `place` is one of the four root names, `path` may hold `/`. 0 or the system's error; -1 for a missing
    // argument or another root. `type` may be null; `outCreated` is the number of key levels that were made.
    virtual int writeRegistryValue(const char* place, const char* path, const char* type,
                                   const char* valueName, const char* data, int& outCreated) = 0;
    // The number of key levels that were made; after a failure they are taken back and the result is 0.
    virtual int createRegistryKey(const char* place, const char* path) = 0;
    // 0 or the system's error; -1 for a missing argument or another root.
    virtual int deleteRegistryValue(const char* place, const char* path, const char* valueName) = 0;
    // Deletes up to `levels` keys deepest first, each only if it has no subkeys. Returns how many.
    virtual int deleteRegistryKeys(const char* place, const char* path, int levels) = 0;

    // The product's own entry in the system's list of installed applications.
    virtual bool registerApplication() = 0;
    virtual bool removeUninstallEntry(const char* applicationName) = 0;
    // Runs the registered uninstaller of another application; `flags` is a set of UninstallEntryFlag.
    virtual bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                                      InstallerUI* ui) = 0;

    // `flags` is a set of RunProgramFlag; `arguments` and `workDir` may be null; `delay` is the pause between
    // two checks of an asynchronous program, in milliseconds. True when the document was opened, the program
    // was started or, where the call waits for its end, ended with 0.
    virtual bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                                      const char* workDir, InstallerUI* ui, std::uint32_t delay) = 0;
};
