#pragma once

#include <set>
#include <string>
#include <vector>

#include "contracts/system_modifications.h"
#include "engine/changes/firewall_change.h"
#include "engine/changes/shortcut_change.h"

// Changes to a system that exists on paper only: each call is written down as "operation(argument, ...)", a
// missing argument as "null", and succeeds unless a test says otherwise.
class FakeSystemModifications : public SystemModifications {
public:
    std::vector<std::string> calls;
    std::set<std::string> failing;  // operations that fail, or "operation(first argument)"
    std::string undo = "UNDO";      // of every change that has one
    FirewallResult firewall = FirewallResult::kDone;
    int createdKeys = 0;  // of the next registry changes
    int deletedKeys = 1;

    bool addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode, std::string& outUndo,
                             InstallerUI*, bool isPath) override {
        outUndo = undo;
        return note("addEnvironmentEntry",
                    {text(name), text(value), number(static_cast<int>(mode)), isPath ? "path" : "text"});
    }
    bool removeEnvironmentEntry(const char* undoText, InstallerUI*) override {
        return note("removeEnvironmentEntry", {text(undoText)});
    }
    bool broadcastEnvironmentChange() override { return note("broadcastEnvironmentChange", {}); }
    bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                     std::string& outUndo, InstallerUI*, bool isPath, const char* beforeKey) override {
        outUndo = undo;
        return note("addIniEntry", {text(file), text(section), text(key), text(value),
                                    isPath ? "path" : "text", text(beforeKey)});
    }
    bool removeIniEntry(const char* undoText, InstallerUI*) override {
        return note("removeIniEntry", {text(undoText)});
    }
    bool modifyFile(const char* path, const char* description, std::string& outUndo, InstallerUI*) override {
        outUndo = undo;
        return note("modifyFile", {text(path), text(description)});
    }
    bool undoFileModification(const char* undoText, InstallerUI*) override {
        return note("undoFileModification", {text(undoText)});
    }
    bool addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI*) override {
        outUndo = undo;
        return note("addShortcut",
                    {number(static_cast<int>(shortcut.type)), shortcut.linkPath, shortcut.target,
                     shortcut.description, shortcut.arguments, shortcut.startPath, shortcut.iconPath});
    }
    bool removeShortcut(const char* undoText, InstallerUI*) override {
        return note("removeShortcut", {text(undoText)});
    }
    FirewallResult firewallAddApplication(const char* path, const char* name) override {
        return noteFirewall("firewallAddApplication", {text(path), text(name)});
    }
    FirewallResult firewallRemoveApplication(const char* path) override {
        return noteFirewall("firewallRemoveApplication", {text(path)});
    }
    FirewallResult firewallAddPort(const FirewallPortRule& rule) override {
        return noteFirewall("firewallAddPort", {number(rule.port), rule.name, number(rule.protocols)});
    }
    FirewallResult firewallRemovePort(const char* logText) override {
        return noteFirewall("firewallRemovePort", {text(logText)});
    }
    int writeRegistryValue(const char* place, const char* path, const char* type, const char* valueName,
                           const char* data, int& outCreated) override {
        const bool done =
            note("writeRegistryValue", {text(place), text(path), text(type), text(valueName), text(data)});
        outCreated = done ? createdKeys : 0;
        return done ? 0 : 5;
    }
    int createRegistryKey(const char* place, const char* path) override {
        return note("createRegistryKey", {text(place), text(path)}) ? createdKeys : 0;
    }
    int deleteRegistryValue(const char* place, const char* path, const char* valueName) override {
        return note("deleteRegistryValue", {text(place), text(path), text(valueName)}) ? 0 : 2;
    }
    int deleteRegistryKeys(const char* place, const char* path, int levels) override {
        return note("deleteRegistryKeys", {text(place), text(path), number(levels)}) ? deletedKeys : 0;
    }
    bool registerApplication() override { return note("registerApplication", {}); }
    bool removeUninstallEntry(const char* applicationName) override {
        return note("removeUninstallEntry", {text(applicationName)});
    }
    bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                              InstallerUI*) override {
        return note("uninstallApplication",
                    {text(applicationName), text(arguments), number(static_cast<int>(flags))});
    }
    bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                              const char* workDir, InstallerUI*, std::uint32_t delay) override {
        return note("runAssociatedProgram", {text(path), text(arguments), number(static_cast<int>(flags)),
                                             text(workDir), number(static_cast<int>(delay))});
    }

private:
    static std::string text(const char* argument) { return argument == nullptr ? "null" : argument; }
    static std::string number(int value) { return std::to_string(value); }

    bool note(const std::string& operation, const std::vector<std::string>& arguments) {
        std::string call = operation + "(";
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            call += (i == 0 ? "" : ", ") + arguments[i];
        }
        calls.push_back(call + ")");
        const std::string first = arguments.empty() ? "" : arguments[0];
        return !failing.contains(operation) && !failing.contains(operation + "(" + first + ")");
    }
    FirewallResult noteFirewall(const std::string& operation, const std::vector<std::string>& arguments) {
        return note(operation, arguments) ? firewall : FirewallResult::kFailed;
    }
};
