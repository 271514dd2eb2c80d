#include "machine_state.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/text_functions.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr const char* kEnvironmentKey = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";
constexpr std::array kUnwatched = {"/kit", "/tmp"};
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

void takeFiles(FakePlatform& machine, MachineState& state) {
    for (const std::string& path : machine.files.allFiles()) {
        if (!isWatched(path)) {
            continue;
        }
        const std::string content = machine.files.content(path);
        if (path.ends_with(".ini")) {
            // Where nothing but an empty section is left, nothing is left.
            if (const std::string form = iniForm(content); !form.empty()) {
                state.files[path] = form;
            }
        } else {
            state.files[path] = path.ends_with(".txt") ? textForm(content) : content;
        }
    }
}

void takeDirectories(FakePlatform& machine, const std::string& directory, MachineState& state) {
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

void takeRegistry(FakePlatform& machine, const std::string& key, MachineState& state) {
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

std::string earlierText(const Item& item) {
    return joined(item.lines);
}

std::string searchedLine(const Item& item) {
    return item.variant % 2 == 0 ? "alpha" : "beta";
}

// Other programs read sections and keys in any case and with blanks; the edits don't.
std::string earlierIni(const Item& item) {
    static constexpr std::array kSpellings = {"key = old\n", "key=old\n", "KEY=old\n", "Key =old\n"};
    const std::size_t spelling = item.lines.size() % kSpellings.size();
    std::string text = "; notes\n[first]\nkey=mine\n";
    if (item.variant % 3 != 0) {
        text += item.variant % 5 == 0 ? "[Main]\nother=1\n" : "[main]\nother=1\n";
        if (item.earlier) {
            text += kSpellings[spelling];
        }
        text += "\nlast=2\n";
    }
    return text + "[tail]\nkey=also mine\n";
}

// Lists, in some of which entries contain the text that will be added, or are that text.
platform::RegistryValue earlierVariable(const Item& item) {
    const std::string added = environmentValueOf(item);
    const int form = item.variant / 3;
    const std::string text =
        form % 2 == 0 ? "/usr/own;/usr/other" : added + "x;/x" + added + ";/usr/own;" + added + ";/x" + added;
    return {form >= 2 ? platform::kRegExpandString : platform::kRegString, text};
}

bool holdsEqualEntry(const Item& item) {
    return (";" + earlierVariable(item).data + ";").find(";" + environmentValueOf(item) + ";") !=
           std::string::npos;
}

void writeVariable(FakePlatform& machine, const std::string& name, const platform::RegistryValue& value) {
    machine.registry.writeValue(RegistryRoot::kLocalMachine, kEnvironmentKey, RegistryView::kNative, name,
                                value);
}

std::string keyPathOf(const Item& item) {
    std::string path = registryPathOf(item);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

void prepareItem(FakePlatform& machine, const Item& item) {
    switch (item.kind) {
        case ItemKind::kFile:
            if (item.earlier) {
                machine.files.addFile(filePathOf(item), earlierContentOf(item));
            }
            break;
        case ItemKind::kEnvironment:
            if (item.earlier) {
                writeVariable(machine, item.name("VAR"), earlierVariable(item));
            }
            break;
        case ItemKind::kIni:
            if (item.variant % 4 != 0) {
                machine.files.addFile(iniPathOf(item), earlierIni(item));
            }
            break;
        case ItemKind::kModifyFile:
            if (item.earlier) {
                machine.files.addFile(textPathOf(item), earlierText(item));
            }
            machine.files.addFile(item.name("/kit/src/change"),
                                  "1\n" + searchedLine(item) + "\n2\nadded\n" + searchedLine(item) + "\n");
            break;
        case ItemKind::kFirewallPort:
            if (item.earlier) {
                machine.firewall.ports[{1000 + item.number, platform::FirewallProtocol::kTcp}] = "mine";
            }
            break;
        case ItemKind::kRegistryValue:
        case ItemKind::kRemoveRegistryValue:
            if (item.earlier) {
                machine.registry.addText(RegistryRoot::kLocalMachine, keyPathOf(item), "name", "earlier");
                machine.registry.addText(RegistryRoot::kLocalMachine, keyPathOf(item), "other", "mine");
            }
            break;
        case ItemKind::kRegistryKey:
        case ItemKind::kRemoveRegistryKey:
            if (item.earlier) {
                machine.registry.addKey(RegistryRoot::kLocalMachine, keyPathOf(item));
            }
            break;
        case ItemKind::kRemoveFile:
            if (item.earlier) {
                machine.files.addFile(item.name("/data/gone"), "going");
            }
            break;
        case ItemKind::kRemoveDirectory:
            if (item.earlier) {
                machine.files.addDirectory(item.name("/data/empty"));
            }
            break;
        default:
            break;
    }
}

void touchItem(FakePlatform& machine, const Item& item) {
    if (item.kind == ItemKind::kFile && machine.files.hasFile(filePathOf(item))) {
        machine.files.addFile(filePathOf(item), "changed by the user");
    } else if (item.kind == ItemKind::kEnvironment) {
        const platform::RegistryValue* value =
            machine.registry.value(RegistryRoot::kLocalMachine, kEnvironmentKey, item.name("VAR"));
        if (value != nullptr) {
            writeVariable(machine, item.name("VAR"), {value->type, value->data + ";/user"});
        }
    }
}

// BackupExisting brings the earlier content back, unless the user has changed the file; without it the file
// goes, whatever was there.
constexpr const char* kBrokenContent = "broken";

// Other files are deleted.
bool isBrokenInRepair(const Item& item) {
    return item.variant % 2 != 0;
}

// Without its archive a file that is known to be what was installed goes as well. What a repair found in the
// place of a file that may have been the user's counts as his.
void expectFile(MachineState& state, const Item& item, Course course) {
    const std::string path = filePathOf(item);
    if (!item.option || (course == Course::kLoseArchive && !item.touched)) {
        state.files.erase(path);
    } else if (item.touched) {
        state.files[path] = "changed by the user";
    } else if (!item.earlier) {
        state.files[path] =
            course == Course::kRepair && isBrokenInRepair(item) ? kBrokenContent : installedContentOf(item);
    }
}

void expectEnvironment(MachineState& state, const Item& item) {
    const bool isReplaced = item.variant % 3 == 0;
    if (!item.touched) {
        return;
    }
    // The undo of a replacement or creation takes the user's addition along.
    if (!isReplaced) {
        std::vector<std::string>& entries = state.environment[item.name("VAR")];
        if (entries.empty()) {
            entries.push_back("(plain)");
        }
        entries.push_back("/user");
    }
}

void expectItem(MachineState& state, const Item& item, const ProductCase& product) {
    switch (item.kind) {
        case ItemKind::kFile:
            expectFile(state, item, product.course);
            break;
        case ItemKind::kEnvironment:
            expectEnvironment(state, item);
            break;
        case ItemKind::kFirewallPort:
            // A port that was open already is taken for the product's own.
            if (!product.firewallOff && item.variant % 3 != 2) {
                state.firewall.erase(std::to_string(1000 + item.number) + " tcp");
            }
            break;
        case ItemKind::kRegistryValue:
        case ItemKind::kRemoveRegistryValue:
            state.registry.erase(keyPathOf(item) + ":name");
            break;
        case ItemKind::kRemoveRegistryKey:
            state.registry.erase(keyPathOf(item));
            break;
        case ItemKind::kRemoveFile:
            state.files.erase(item.name("/data/gone"));
            break;
        default:
            break;
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
    return FakeShellObjects::createLink(linkPath, link);
}

int DiskShellObjects::createUrlLink(std::string_view linkPath, std::string_view url) {
    files_.addFile(linkPath, url);
    return FakeShellObjects::createUrlLink(linkPath, url);
}

MachineState takeState(FakePlatform& machine) {
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

void prepareMachine(FakePlatform& machine, const ProductCase& product) {
    machine.files.addFile("/data/keep", "kept");
    machine.registry.addKey(RegistryRoot::kLocalMachine, "Software\\Present");
    machine.registry.addKey(RegistryRoot::kLocalMachine, kEnvironmentKey);
    machine.registry.addKey(RegistryRoot::kLocalMachine,
                            "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall");
    if (product.firewallOff) {
        machine.firewall.unreachable = true;
        machine.firewall.failing[platform::FirewallCall::kNoService] = 1;
    }
    for (const Item& item : product.items) {
        prepareItem(machine, item);
    }
}

void useMachine(FakePlatform& machine, const ProductCase& product) {
    for (const Item& item : product.items) {
        if (item.touched) {
            touchItem(machine, item);
        }
    }
    if (product.foreignFile) {
        machine.files.addFile(kForeignFile, kForeignContent);
    }
}

// What the installation of the same content can't tell from its own stays whole.
void damageProduct(FakePlatform& machine, const ProductCase& product) {
    for (const Item& item : product.items) {
        const std::string path = filePathOf(item);
        const bool isOwn = item.kind == ItemKind::kFile && machine.files.hasFile(path) &&
                           !(item.earlier && earlierContentOf(item) == installedContentOf(item));
        if (isOwn && isBrokenInRepair(item)) {
            machine.files.addFile(path, kBrokenContent);
        } else if (isOwn) {
            machine.files.removeFile(path);
        }
    }
}

MachineState expectedEnd(const MachineState& start, const ProductCase& product) {
    MachineState state = start;
    for (const Item& item : product.items) {
        expectItem(state, item, product);
    }
    if (product.foreignFile) {
        state.files[kForeignFile] = kForeignContent;
    }
    return state;
}

bool mayLeaveSomething(const ProductCase& product) {
    return product.foreignFile ||
           std::any_of(product.items.begin(), product.items.end(), [](const Item& item) {
               // A restorable file that wasn't there before stays, and its directory with it. A file that was
               // there before keeps directories that the installation didn't make; it never fails.
               const bool staysInMadeDirectory =
                   item.kind == ItemKind::kFile && item.option && !item.earlier && item.variant % 4 != 1;
               // The undo of a change to a file that isn't there fails.
               return staysInMadeDirectory || (item.kind == ItemKind::kModifyFile && !item.earlier);
           });
}

void forgetEqualEntries(const ProductCase& product, MachineState& state) {
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kEnvironment && item.earlier && holdsEqualEntry(item)) {
            state.environment.erase(item.name("VAR"));
        }
    }
}

std::vector<std::string> differences(const MachineState& expected, const MachineState& found) {
    std::vector<std::string> lines;
    compare("File", expected.files, found.files, lines);
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
