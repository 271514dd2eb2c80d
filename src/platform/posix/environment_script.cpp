#include "platform/posix/environment_script.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

#include "platform/linux_path.h"
#include "platform/posix/file_replacement.h"
#include "platform/posix/state_directory.h"
#include "platform/system_environment.h"

namespace platform {

namespace {

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
constexpr RegistryView kView = RegistryView::kNative;
constexpr mode_t kMode = 0644;
constexpr std::string_view kPath = "PATH";
constexpr std::string_view kHeading =
    "# The system's environment as installations have set it; they write this file anew.\n";

// Shells fail where these are set.
constexpr std::array<std::string_view, 6> kReserved = {"UID",       "EUID",     "PPID",
                                                       "SHELLOPTS", "BASHOPTS", "BASH_VERSINFO"};

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool isShellName(std::string_view name) {
    return !name.empty() && isLetter(name.front()) &&
           std::ranges::all_of(name, [](char c) { return isLetter(c) || (c >= '0' && c <= '9'); }) &&
           std::ranges::find(kReserved, name) == kReserved.end();
}

std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + '\'';
}

// The entries that aren't empty.
std::vector<std::string> entriesOf(std::string_view list, char separator) {
    std::vector<std::string> entries;
    while (!list.empty()) {
        const std::string_view entry = list.substr(0, list.find(separator));
        list.remove_prefix(std::min(entry.size() + 1, list.size()));
        if (!entry.empty()) {
            entries.emplace_back(entry);
        }
    }
    return entries;
}

// An existing path as this system writes it; any other text unchanged.
std::string asSystemPath(const std::string& entry) {
    if (!entry.starts_with('\\')) {
        return entry;
    }
    const std::string native = linuxPath(entry);
    return access(native.c_str(), F_OK) == 0 ? native : entry;
}

// An empty entry of a list would mean the present directory to most of its readers.
std::string listOf(const std::string& value) {
    if (value.find(';') == std::string::npos) {
        return asSystemPath(value);
    }
    std::string list;
    for (const std::string& entry : entriesOf(value, ';')) {
        list += (list.empty() ? "" : ":") + asSystemPath(entry);
    }
    return list;
}

std::vector<std::string> directoriesOf(std::string value) {
    std::erase(value, '"');
    std::vector<std::string> directories;
    for (const std::string& entry : entriesOf(value, ';')) {
        for (std::string& directory : entriesOf(linuxPath(entry.c_str()), ':')) {
            if (directory.front() == '/') {
                directories.push_back(std::move(directory));
            }
        }
    }
    return directories;
}

std::string pathLines(const std::string& value) {
    std::string lines;
    for (const std::string& directory : directoriesOf(value)) {
        const std::string text = quoted(directory);
        lines.append("case \":${PATH-}:\" in\n*:").append(text).append(":*) ;;\n");
        lines.append("*) PATH=\"${PATH:+${PATH}:}\"").append(text).append(" ;;\nesac\n");
    }
    return lines.empty() ? lines : lines + "export PATH\n";
}

std::string linesOf(const EnvironmentVariable& variable) {
    if (!isShellName(variable.name) || variable.value.find('\0') != std::string::npos) {
        return std::string();
    }
    if (variable.name == kPath) {
        return pathLines(variable.value);
    }
    const std::string value = listOf(variable.value);
    return value.empty() ? value : "export " + variable.name + '=' + quoted(value) + '\n';
}

int readVariables(Registry& registry, std::vector<EnvironmentVariable>& outVariables) {
    std::vector<std::string> names;
    int status = registry.listValues(kRoot, kSystemEnvironmentKey, kView, names);
    if (status == kRegNotFound) {
        return kRegOk;
    }
    for (std::size_t i = 0; status == kRegOk && i < names.size(); ++i) {
        RegistryValue value;
        status = registry.readValue(kRoot, kSystemEnvironmentKey, kView, names[i].c_str(), value);
        if (status == kRegOk && (value.type == kRegString || value.type == kRegExpandString)) {
            outVariables.push_back({names[i], value.data});
        }
        status = status == kRegNotFound ? kRegOk : status;  // another process has deleted it
    }
    return status;
}

// What the link leads to; empty when there is none.
std::string targetOf(const std::string& link) {
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlink(link.c_str(), target.data(), target.size());
    target.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return target;
}

int makeLink(const EnvironmentScriptPlace& place) {
    if (place.link.empty() || targetOf(place.link) == place.script ||
        symlink(place.script.c_str(), place.link.c_str()) == 0) {
        return 0;
    }
    return errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

int removeIfThere(const std::string& path) {
    return unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

int removeScript(const EnvironmentScriptPlace& place) {
    const bool isLinked = !place.link.empty() && targetOf(place.link) == place.script;
    const int unlinked = isLinked ? removeIfThere(place.link) : 0;
    const int removed = removeIfThere(place.script);
    return unlinked != 0 ? unlinked : removed;
}

}  // namespace

std::string environmentScriptOf(const std::vector<EnvironmentVariable>& variables) {
    std::string lines;
    for (const EnvironmentVariable& variable : variables) {
        lines += linesOf(variable);
    }
    return lines.empty() ? lines : std::string(kHeading) + lines;
}

EnvironmentScriptPlace environmentScriptPlace() {
    const bool isDefault = stateDirectory() == kDefaultStateDirectory;
    return {stateDirectory() + "/environment.sh", isDefault ? "/etc/profile.d/tandrel-environment.sh" : ""};
}

int publishEnvironment(Registry& registry, const EnvironmentScriptPlace& place) {
    std::vector<EnvironmentVariable> variables;
    const int status = readVariables(registry, variables);
    if (status != kRegOk) {
        return status;
    }
    const std::string script = environmentScriptOf(variables);
    if (script.empty()) {
        return removeScript(place);
    }
    const int written = replaceFileContent(place.script, script, kMode, ModeRule::kExact);
    return written != 0 ? written : makeLink(place);
}

}  // namespace platform
