#include "machine.h"

#include <algorithm>

#include "sample_product.h"

namespace {

constexpr std::size_t kMostShown = 120;

std::string shown(const std::string& content) {
    std::string text = content.empty() ? "nothing" : content.substr(0, kMostShown);
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < ' '; }, '.');
    return text;
}

}  // namespace

std::string Difference::text() const {
    return place + ": expected " + shown(expected) + ", found " + shown(found);
}

std::vector<Difference> differencesOf(const MachineState& expected, const MachineState& found) {
    std::vector<Difference> differences;
    for (const auto& [place, content] : expected) {
        const auto at = found.find(place);
        if (at == found.end() || at->second != content) {
            differences.push_back({place, content, at == found.end() ? "" : at->second});
        }
    }
    for (const auto& [place, content] : found) {
        if (!expected.contains(place)) {
            differences.push_back({place, "", content});
        }
    }
    return differences;
}

int DiskShell::createLink(std::string_view linkPath, const platform::LinkDescription& link) {
    files_.addFile(linkPath, "link to " + link.target + " " + link.arguments + " " + link.workDirectory +
                                 " " + link.iconPath + " " + link.description);
    return MemoryShellObjects::createLink(linkPath, link);
}

int DiskShell::createUrlLink(std::string_view linkPath, std::string_view url) {
    files_.addFile(linkPath, url);
    return MemoryShellObjects::createUrlLink(linkPath, url);
}

int DiskShell::createSymlink(std::string_view linkPath, std::string_view target) {
    files_.addLink(linkPath, target);
    return MemoryShellObjects::createSymlink(linkPath, target);
}

Machine::Machine() {
    letProgramsWork();
}

Machine::Machine(const Machine& other) : fakes() {
    fakes.files.becomeCopyOf(other.fakes.files);
    fakes.registry = other.fakes.registry;
    fakes.registry.operations.clear();
    fakes.firewall = other.fakes.firewall;
    fakes.firewall.operations.clear();
    letProgramsWork();
}

void Machine::letProgramsWork() {
    fakes.processes.onStart = [this](const std::string& commandLine) {
        SampleProduct::runProgram(fakes.files, commandLine);
    };
}

MachineState Machine::state() const {
    MachineState state;
    for (const auto& [path, content] : fakes.files.everything()) {
        if (!path.starts_with(SampleProduct::kKit)) {
            state["file " + path] = content;
        }
    }
    for (const auto& [name, content] : fakes.registry.everything()) {
        state["registry " + name] = content;
    }
    for (const auto& [path, name] : fakes.firewall.applications) {
        state["firewall " + path] = name;
    }
    for (const auto& [port, name] : fakes.firewall.ports) {
        const char* protocol = port.second == platform::FirewallProtocol::kTcp ? " TCP" : " UDP";
        state["firewall " + std::to_string(port.first) + protocol] = name;
    }
    state["firewall"] = fakes.firewall.on ? "on" : "off";
    return state;
}
