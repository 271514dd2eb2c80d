#pragma once

#include <memory>

#include "contracts/system_modifications.h"
#include "engine/report.h"
#include "platform/platform.h"
#include "support/debug_log.h"

class InstallExchangeInfo;

// The changes to the system, for one session: each family of operations has a class of its own, and this one
// only hands on.
class WiniModifications : public SystemModifications {
public:
    // The platform is borrowed and outlives this object.
    explicit WiniModifications(const platform::Platform& platform);
    ~WiniModifications() override;

    // Ahead of any operation: the session's product texts, its errors and its log. All are borrowed and
    // outlive the operations.
    void attach(InstallExchangeInfo& product, ErrorList& errors, DebugLog debugLog);

    bool addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode, std::string& outUndo,
                             InstallerUI* ui, bool isPath) override;
    bool removeEnvironmentEntry(const char* undoText, InstallerUI* ui) override;
    bool broadcastEnvironmentChange() override;
    bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                     std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey) override;
    bool removeIniEntry(const char* undoText, InstallerUI* ui) override;
    bool modifyFile(const char* path, const char* description, std::string& outUndo,
                    InstallerUI* ui) override;
    bool undoFileModification(const char* undoText, InstallerUI* ui) override;
    bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) override;
    bool removeShortcut(const char* undoText, InstallerUI* ui) override;
    FirewallResult firewallAddApplication(const char* path, const char* name) override;
    FirewallResult firewallRemoveApplication(const char* path) override;
    FirewallResult firewallAddPort(const FirewallPortRule& rule) override;
    FirewallResult firewallRemovePort(const char* logText) override;
    int writeRegistryValue(const char* place, const char* path, const char* type, const char* valueName,
                           const char* data, int& outCreated) override;
    int createRegistryKey(const char* place, const char* path) override;
    int deleteRegistryValue(const char* place, const char* path, const char* valueName) override;
    int deleteRegistryKeys(const char* place, const char* path, int levels) override;
    bool registerApplication() override;
    bool removeUninstallEntry(const char* applicationName) override;
    bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                              InstallerUI* ui) override;
    bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                              const char* workDir, InstallerUI* ui, std::uint32_t delay) override;

private:
    struct Families;

    Families& families();

    platform::Platform platform_;
    std::unique_ptr<Families> families_;
};
