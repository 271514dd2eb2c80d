#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class InstallerUI;

// A value of the registry, in the form that the description reads.
struct SystemRegistryValue {
    // The number of the value's type as Windows defines it (1 text, 2, 3 binary, 4 ...).
    std::uint32_t type = 0;
    // Texts as UTF-8 without terminator, a double word as 4 bytes little-endian.
    std::string data;
};

// Flags of the operations on the list of installed applications.
enum UninstallEntryFlag : std::uint32_t {
    kEntryIn32BitView = 1,
    kEntryWait = 2,
};

// A product, as the list of installed applications shows it.
struct ApplicationEntry {
    std::string name;
    std::string version;
    std::string website;
    std::string command;         // in double quotes
    std::string arguments;       // of the command
    std::string publisher = {};  // empty: this system's own
};

// What the description and the engine ask of the operating system's services. Texts are UTF-8. Session thread
// only.
class SystemOperations {
public:
    virtual ~SystemOperations() = default;

    // The path of a new temporary file; no two calls return the same, and no file is created. None when the
    // system refuses or the path becomes too long.
    virtual std::optional<std::string> temporaryFileName() = 0;

    // Is `applicationName` in the system's list of installed applications? Here and below, `flags` is a set
    // of UninstallEntryFlag. Throws InstallerError, which names the entry and the reason, when the list can't
    // be read: an installation that counts as missing would be lost.
    virtual bool findUninstallEntry(std::string_view applicationName, std::uint32_t flags) = 0;
    // The entries whose name contains `nameFilter` and, unless `publisher` is empty, whose publisher contains
    // `publisher`.
    virtual std::vector<std::string> findEntriesByPublisher(std::string_view nameFilter,
                                                            std::string_view publisher,
                                                            std::uint32_t flags) = 0;
    // The action log that the application's registered uninstall command names; none when there is no such
    // path or it is longer than a path may be. Throws InstallerError when the command can't be read.
    virtual std::optional<std::string> applicationLogFile(std::string_view applicationName) = 0;
    // Creates or updates an entry. True when all of it was written; failures are logged.
    virtual bool registerApplication(const ApplicationEntry& entry) = 0;
    // False when there is no such entry or it can't be removed.
    virtual bool removeUninstallEntry(std::string_view applicationName) = 0;
    // Why the last of these two failed, in the system's words; empty when it didn't, or not by the system.
    virtual std::string entryFault() = 0;
    // Whoever made the key at `path` below the machine's root, and `levels` levels of it, goes, and can't
    // take it along while the list of applications is in it: it will go with the list. False unless this
    // system made the list right below that key; the key is the caller's then.
    virtual bool leaveKeysToList(std::string_view path, int levels) = 0;
    // Runs the registered uninstaller of another application and waits for it; why it fails is shown. With
    // kEntryWait it may take as long as it needs and the user has patience, or until `isToEnd`, which is
    // asked all the time, becomes true; the result is true when it ended with 0. Without, the waiting has a
    // limit, and true means that it started. An uninstaller that isn't waited for any longer goes on by
    // itself. `ui` may be null.
    virtual bool uninstallApplication(std::string_view applicationName, std::string_view arguments,
                                      std::uint32_t flags, InstallerUI* ui,
                                      const std::function<bool()>& isToEnd) = 0;

    // Is a process of that base name running, from `directory` unless that is empty?
    virtual bool isApplicationRunning(std::string_view name, std::string_view directory) = 0;
    // Stops every process that isApplicationRunning would find. True if one was found and stopped.
    virtual bool closeApplication(std::string_view name, bool isService, std::string_view directory) = 0;
    // The same two for the processes that run from the very file at `path`, whatever it is called there.
    virtual bool isProgramRunning(std::string_view path) = 0;
    virtual bool closeProgram(std::string_view path) = 0;

    // Copies a whole file over what is at `to`. False when not every byte arrived.
    virtual bool copyFile(std::string_view from, std::string_view to) = 0;

    // Reads the registry for the look-ups of default values. `place` is one of the four hive names
    // ("HKEY_LOCAL_MACHINE", ...), `path` is separated by `\`. None when there is no such key or value.
    virtual std::optional<SystemRegistryValue> readRegistryValue(std::string_view place,
                                                                 std::string_view path,
                                                                 std::string_view valueName) = 0;
    // The names of the direct subkeys.
    virtual std::optional<std::vector<std::string>> listRegistryKeys(std::string_view place,
                                                                     std::string_view path) = 0;

    // Opens a web page in the system's default browser. False, with a line in the log, on failure.
    virtual bool openInDefaultBrowser(std::string_view url) = 0;

    // Blocks; the front end processes no events meanwhile.
    virtual void sleepMilliseconds(std::uint32_t milliseconds) = 0;
};
