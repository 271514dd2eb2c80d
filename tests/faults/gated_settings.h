#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "call_gate.h"
#include "platform/firewall.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"

// The rest of a machine that a program changes, with a gate before it as in GatedFiles. All that the classes
// get is borrowed.

class GatedRegistry : public platform::Registry {
public:
    GatedRegistry(platform::Registry& registry, CallGate& gate) : registry_(registry), gate_(gate) {}

    int createKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  int& outCreated) override;
    int testKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int deleteKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int listKeys(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                 std::vector<std::string>& outNames) override;
    int readValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  std::string_view name, platform::RegistryValue& outValue) override;
    int writeValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::string_view name, const platform::RegistryValue& value) override;
    int deleteValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                    std::string_view name) override;
    int listValues(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::vector<std::string>& outNames) override;

private:
    bool refuses(CallClass callClass, const char* operation, std::string_view path,
                 std::string_view name = "");

    platform::Registry& registry_;
    CallGate& gate_;
};

class GatedProcesses : public platform::Processes {
public:
    GatedProcesses(platform::Processes& processes, CallGate& gate) : processes_(processes), gate_(gate) {}

    bool list(std::vector<platform::ProcessInfo>& outProcesses) override {
        gate_.pass();
        return processes_.list(outProcesses);
    }
    bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) override {
        return processes_.terminate(id, politeMilliseconds);
    }
    std::unique_ptr<platform::ChildProcess> start(std::string_view commandLine,
                                                  std::string_view workDirectory, int& outError) override;
    std::uint32_t currentId() override { return processes_.currentId(); }
    std::vector<std::uint32_t> ownLine() override { return processes_.ownLine(); }
    bool isAdministrators(std::uint32_t id) override { return processes_.isAdministrators(id); }

private:
    platform::Processes& processes_;
    CallGate& gate_;
};

class GatedFirewall : public platform::Firewall {
public:
    GatedFirewall(platform::Firewall& firewall, CallGate& gate) : firewall_(firewall), gate_(gate) {}

    platform::FirewallOutcome connect(std::unique_ptr<platform::FirewallProfile>& outProfile) override;

private:
    class Profile;

    platform::Firewall& firewall_;
    CallGate& gate_;
};

// Links are files, as on every system.
class GatedShell : public platform::ShellObjects {
public:
    GatedShell(platform::ShellObjects& shell, CallGate& gate) : shell_(shell), gate_(gate) {}

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override {
        return refuses("createLink", linkPath) ? gate_.fileStatus() : shell_.createLink(linkPath, link);
    }
    int createUrlLink(std::string_view linkPath, std::string_view url) override {
        return refuses("createUrlLink", linkPath) ? gate_.fileStatus() : shell_.createUrlLink(linkPath, url);
    }
    int createSymlink(std::string_view linkPath, std::string_view target) override {
        return refuses("createSymlink", linkPath) ? gate_.fileStatus()
                                                  : shell_.createSymlink(linkPath, target);
    }
    bool openDocument(std::string_view path) override { return shell_.openDocument(path); }
    bool openForUser(std::string_view path) override { return shell_.openForUser(path); }
    bool broadcastEnvironment() override {
        return !refuses("broadcastEnvironment", "") && shell_.broadcastEnvironment();
    }

private:
    bool refuses(const char* operation, std::string_view path) {
        return gate_.refuses(CallClass::kChanging, std::string(operation) + " " + std::string(path));
    }

    platform::ShellObjects& shell_;
    CallGate& gate_;
};
