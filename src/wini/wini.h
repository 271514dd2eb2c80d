#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/text_functions.h"
#include "engine/changes/environment_change.h"
#include "engine/changes/firewall_change.h"
#include "engine/changes/ini_change.h"
#include "engine/changes/program_run.h"
#include "engine/changes/shortcut_change.h"
#include "platform/platform.h"
#include "session/installer.h"
#include "wini/system_services.h"

// What the command line asks for, kept for a second session in the same process.
struct WiniArguments {
    int debugLevel = 0;
    int gui = 0;
    int ignoreErrors = 0;
};

// A session on a machine, with its operations on the operating system: each hands its texts to the class that
// the change or the service belongs to. Texts are UTF-8; a text that may be null counts as missing then, and
// so does `ui`. An undo text is what the operation reads that takes the change back.
class Wini : public Installer {
public:
    // What the platform refers to, the services, the answers and the maker of second sessions are borrowed
    // and outlive the session.
    Wini(const platform::Platform& machine, SystemServices& services, AnswersFile& answers,
         NestedSessionFactory& nestedSessions, DebugLog log, const WiniArguments& arguments);

    // Cut to 1,559 bytes; empty: none.
    void setConfigFile(std::string_view path) { configFile = path.substr(0, kConfigFileLimit); }
    int getDebugLevelArgument() const { return arguments_.debugLevel; }
    int getGuiArgument() const { return arguments_.gui; }
    int getIgnoreErrorsArgument() const { return arguments_.ignoreErrors; }
    const std::string& getConfigFile() const { return configFile; }

    // Services of the system, as in SystemOperations.
    bool findUninstallEntry(const char* applicationName, std::uint32_t flags);
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                const char* publisher, std::uint32_t flags);
    std::optional<std::string> getApplicationLogFile(const char* applicationName);
    bool registerApplication();
    bool removeUninstallEntry(const char* applicationName);
    bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                              InstallerUI* ui);
    bool isApplicationRunning(const char* name, const char* directory);
    bool closeApplication(const char* name, bool isService, const char* directory);
    bool copyFile(const char* from, const char* to);

    // As ProgramRun::run; null for `path` fails.
    bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                              const char* workDir, InstallerUI* ui, std::uint32_t delay);

    // Changes with an undo text, which is also filled when only the writing failed.
    bool addEnvironmentEntry(const char* name, const char* value, EnvironmentChange::Mode mode,
                             std::string& outUndo, InstallerUI* ui, bool isPath);
    bool removeEnvironmentEntry(const char* undoText, InstallerUI* ui);
    bool broadcastEnvironmentChange();
    bool writeIniValue(const char* file, const char* section, const char* key, const char* value,
                       IniChange::Mode mode, const char* beforeKey);
    bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                     std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey);
    bool removeIniEntry(const char* undoText, InstallerUI* ui);
    bool modifyFile(const char* path, const char* description, std::string& outUndo, InstallerUI* ui);
    bool undoFileModification(const char* undoText, InstallerUI* ui);
    bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui);
    bool removeShortcut(const char* undoText, InstallerUI* ui);

    // Null arguments give kFailed. `logText` is the record after "PORT".
    FirewallResult firewallAddApplication(const char* path, const char* name);
    FirewallResult firewallRemoveApplication(const char* path);
    FirewallResult firewallAddPort(const FirewallPortRule& rule);
    FirewallResult firewallRemovePort(const char* logText);

    // 0 or the system's error; -1 for a missing argument or another root than the four. `type` may be null.
    int writeRegistryValue(const char* place, const char* path, const char* type, const char* valueName,
                           const char* data, int& outCreated);
    // The number of key levels that were made; after a failure they are taken back and the result is 0.
    int createRegistryKey(const char* place, const char* path);
    int deleteRegistryValue(const char* place, const char* path, const char* valueName);
    // Deletes up to `levels` keys from the deepest on, each only without subkeys. How many were deleted.
    int deleteRegistryKeys(const char* place, const char* path, int levels);

private:
    static constexpr std::size_t kConfigFileLimit = OUtils::kPathCapacity - 1;

    platform::Platform machine_;
    SystemServices& services_;
    ProgramRun programs_;
    WiniArguments arguments_;
};
