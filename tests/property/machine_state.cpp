#include "machine_state.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/text_functions.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

// The programs' own, and what others own (product_life.h).
constexpr std::array kUnwatched = {"/kit", "/tmp", "/others"};
// They may stay, empty.
constexpr std::array kOwnDirectories = {"/var", "/var/state"};

bool isWatched(const std::string& path) {
    return std::none_of(kUnwatched.begin(), kUnwatched.end(),
                        [&path](const char* top) { return path.starts_with(top); });
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    OUtils::splitText(text.c_str(), '\n', lines);
    for (std::string& line : lines) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
    }
    return lines;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += part + "\n";
    }
    return text;
}

// The keys by section; sections without keys don't count.
std::string iniForm(const std::string& text) {
    std::map<std::string, std::vector<std::string>> sections;
    std::string section;
    for (const std::string& line : linesOf(text)) {
        const std::string trimmed(OUtils::trimWhiteSpace(line));
        if (trimmed.starts_with('[')) {
            section = trimmed;
        } else if (!trimmed.empty()) {
            const std::size_t equals = trimmed.find('=');
            sections[section].push_back(
                equals == std::string::npos
                    ? trimmed
                    : std::string(OUtils::trimWhiteSpace(trimmed.substr(0, equals))) + "=" +
                          std::string(OUtils::trimWhiteSpace(trimmed.substr(equals + 1))));
        }
    }
    std::string form;
    for (auto& [name, keys] : sections) {
        std::sort(keys.begin(), keys.end());
        form += name + "\n" + joined(keys);
    }
    return form;
}

std::string textForm(const std::string& text) {
    std::vector<std::string> lines = linesOf(text);
    while (!lines.empty() && lines.back().empty()) {
        lines.pop_back();
    }
    return joined(lines);
}

void takeFile(MemoryFileSystem& files, const std::string& path, MachineState& state) {
    const std::string content = files.content(path);
    if (const std::string target = files.linkTarget(path); !target.empty()) {
        state.files[path] = linkTo(target);
    } else if (!path.ends_with(".ini")) {
        state.files[path] = path.ends_with(".txt") ? textForm(content) : content;
    } else if (const std::string form = iniForm(content); !form.empty()) {
        state.files[path] = form;  // where nothing but an empty section is left, nothing is left
    }
    if (files.isPrivate(path) && state.files.contains(path) && !path.starts_with("/var/")) {
        state.rights[path] = "private";
    } else if (files.isMasked(path)) {
        state.rights[path] = "what the mask left";
    }
}

void takeFiles(MemoryPlatform& machine, MachineState& state) {
    for (const std::string& path : machine.files.allFiles()) {
        if (isWatched(path)) {
            takeFile(machine.files, path, state);
        }
    }
}

void takeDirectories(MemoryPlatform& machine, const std::string& directory, MachineState& state) {
    std::vector<platform::DirectoryEntry> entries;
    machine.files.list(directory.empty() ? "/" : directory.c_str(), entries);
    for (const platform::DirectoryEntry& entry : entries) {
        const std::string path = directory + "/" + entry.name;
        if (entry.isDirectory && isWatched(path)) {
            if (std::ranges::find(kOwnDirectories, path) == std::end(kOwnDirectories)) {
                state.directories.insert(path);
            }
            takeDirectories(machine, path, state);
        }
    }
}

void takeEnvironment(const std::string& name, const platform::RegistryValue& value, MachineState& state) {
    std::vector<std::string> entries;
    OUtils::splitText(value.data.c_str(), ';', entries);
    std::erase(entries, "");
    if (entries.empty()) {
        return;
    }
    entries.insert(entries.begin(), value.type == platform::kRegExpandString ? "(expandable)" : "(plain)");
    state.environment[name] = entries;
}

void takeRegistry(MemoryPlatform& machine, const std::string& key, MachineState& state) {
    std::vector<std::string> names;
    machine.registry.listValues(RegistryRoot::kLocalMachine, key.c_str(), RegistryView::kNative, names);
    for (const std::string& name : names) {
        platform::RegistryValue value;
        machine.registry.readValue(RegistryRoot::kLocalMachine, key.c_str(), RegistryView::kNative,
                                   name.c_str(), value);
        if (OUtils::equalsIgnoreCase(key.c_str(), kEnvironmentKey)) {
            takeEnvironment(name, value, state);
        } else {
            state.registry[key + ":" + name] = std::to_string(value.type) + " " + value.data;
        }
    }
    std::vector<std::string> children;
    machine.registry.listKeys(RegistryRoot::kLocalMachine, key.c_str(), RegistryView::kNative, children);
    for (const std::string& child : children) {
        const std::string path = key.empty() ? child : key + "\\" + child;
        if (!OUtils::startsWithIgnoreCase(kEnvironmentKey, path)) {
            state.registry[path] = "key";
        }
        takeRegistry(machine, path, state);
    }
}

template <typename Map>
void compare(const std::string& what, const Map& expected, const Map& found, std::vector<std::string>& out) {
    for (const auto& [name, value] : expected) {
        const auto at = found.find(name);
        if (at == found.end()) {
            out.push_back(what + " is gone: " + name);
        } else if (at->second != value) {
            out.push_back(what + " is another: " + name);
        }
    }
    for (const auto& [name, value] : found) {
        if (!expected.contains(name)) {
            out.push_back(what + " is left: " + name);
        }
    }
}

bool holdsAFile(const MachineState& state, const std::string& directory) {
    const auto at = state.files.lower_bound(directory + "/");
    return at != state.files.end() && at->first.starts_with(directory + "/");
}

}  // namespace

int DiskShellObjects::createLink(std::string_view linkPath, const platform::LinkDescription& link) {
    files_.addFile(linkPath, "link to " + link.target);
    return MemoryShellObjects::createLink(linkPath, link);
}

int DiskShellObjects::createUrlLink(std::string_view linkPath, std::string_view url) {
    files_.addFile(linkPath, url);
    return MemoryShellObjects::createUrlLink(linkPath, url);
}

int DiskShellObjects::createSymlink(std::string_view linkPath, std::string_view target) {
    files_.addLink(linkPath, target);
    return MemoryShellObjects::createSymlink(linkPath, target);
}

std::string linkTo(const std::string& target) {
    return "-> " + target;
}

MachineState takeState(MemoryPlatform& machine) {
    MachineState state;
    takeFiles(machine, state);
    takeDirectories(machine, "", state);
    takeRegistry(machine, "", state);
    for (const auto& [port, name] : machine.firewall.ports) {
        state.firewall.insert(std::to_string(port.first) +
                              (port.second == platform::FirewallProtocol::kTcp ? " tcp" : " udp"));
    }
    for (const auto& [path, name] : machine.firewall.applications) {
        state.firewall.insert(path);
    }
    return state;
}

std::vector<std::string> differences(const MachineState& expected, const MachineState& found) {
    std::vector<std::string> lines;
    compare("File", expected.files, found.files, lines);
    compare("Right", expected.rights, found.rights, lines);
    compare("Registry", expected.registry, found.registry, lines);
    compare("Environment", expected.environment, found.environment, lines);
    for (const std::string& rule : expected.firewall) {
        if (!found.firewall.contains(rule)) {
            lines.push_back("Firewall rule is gone: " + rule);
        }
    }
    for (const std::string& rule : found.firewall) {
        if (!expected.firewall.contains(rule)) {
            lines.push_back("Firewall rule is left: " + rule);
        }
    }
    for (const std::string& directory : found.directories) {
        if (!expected.directories.contains(directory) && !holdsAFile(found, directory)) {
            lines.push_back("Directory is left: " + directory);
        }
    }
    for (const std::string& directory : expected.directories) {
        if (!found.directories.contains(directory) && holdsAFile(expected, directory)) {
            lines.push_back("Directory is gone: " + directory);
        }
    }
    return lines;
}
