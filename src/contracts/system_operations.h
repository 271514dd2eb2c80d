#pragma once

#include <cstdint>
#include <string>
#include <vector>

class InstallerUI;

// A value of the registry, as the description asks for it.
struct SystemRegistryValue {
    std::uint32_t type =
        0;             // the number of the value's type as Windows defines it (1 text, 2, 3 binary, 4 ...)
    std::string data;  // texts as UTF-8 without terminator, a double word as 4 bytes little-endian
};

// Flags of the operations on the list of installed applications.
enum UninstallEntryFlag : std::uint32_t {
    kEntryIn32BitView = 1,
    kEntryWait = 2,
};

// What the description and the engine ask of the operating system: the session's own words for it, answered
// by Wini. Texts are UTF-8; buffer sizes are in bytes with the terminator. Session thread only.
class SystemOperations {
public:
    virtual ~SystemOperations() = default;

    // The path of a new temporary file; no file is made. 0, or -1 when the system refuses.
    virtual int getTemporaryFileName(char* buffer, int size) = 0;

    // Is `applicationName` in the system's list of installed applications?
    virtual bool findUninstallEntry(const char* applicationName, std::uint32_t flags) = 0;
    // Appends the entries whose name contains `nameFilter` and, with a non-empty `publisher`, whose publisher
    // contains that.
    virtual void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                        const char* publisher, std::uint32_t flags) = 0;
    // The action log that the application's registered uninstall command names.
    virtual bool getApplicationLogFile(const char* applicationName, char* buffer, int size) = 0;

    // Runs the registered uninstaller of another application; `flags` is a set of UninstallEntryFlag.
    virtual bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                                      InstallerUI* ui) = 0;

    // Does a process of that base name run, from that directory if one is given (null or empty: any)?
    virtual bool isApplicationRunning(const char* name, const char* directory) = 0;
    // Stops every process that isApplicationRunning would find. True if one was found and stopped.
    virtual bool closeApplication(const char* name, bool isService, const char* directory) = 0;

    // Copies a whole file over what is at `to`. False when not every byte arrived.
    virtual bool copyFile(const char* from, const char* to) = 0;

    // Raw reading of the registry for the look-ups of default values. `place` is one of the four hive names
    // ("HKEY_LOCAL_MACHINE", ...), `path` is separated by `\`. False when there is no such key or value.
    virtual bool readRegistryValue(const char* place, const char* path, const char* valueName,
                                   SystemRegistryValue& outValue) = 0;
    virtual bool listRegistryKeys(const char* place, const char* path,
                                  std::vector<std::string>& outNames) = 0;

    // Lets the system's default program show a web page. False when it can't.
    virtual bool openInDefaultBrowser(const char* url) = 0;

    // Waits; the front end isn't served meanwhile.
    virtual void sleepMilliseconds(std::uint32_t milliseconds) = 0;
};
