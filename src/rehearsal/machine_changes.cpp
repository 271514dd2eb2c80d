#include "rehearsal/machine_changes.h"

#include <algorithm>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/system_environment.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_format.h"
#include "rehearsal/named_lines.h"
#include "rehearsal/registry_text.h"
#include "rehearsal/rehearsed_machine.h"
#include "support/md5.h"
#include "text/utf8_check.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;
using Values = std::map<std::string, std::string>;

constexpr std::string_view kRemoved = "removed";
constexpr std::string_view kFileWord = "file";
constexpr std::string_view kProgramRight = " program";
constexpr std::string_view kContentMark = ": ";
constexpr std::size_t kMostShownLines = 3;

std::string lineOf(const std::string& name, std::string_view value) {
    return name + std::string(MachineFormat::kIs) + std::string(value);
}

// Those whose value is another one, with what `show` makes of it, or "removed".
template <typename Show>
std::vector<std::string> differences(const Values& before, const Values& after, Show show) {
    NamedLines lines;
    for (const auto& [name, value] : after) {
        const auto old = before.find(name);
        if (old == before.end() || old->second != value) {
            lines.add(name, lineOf(show.nameOf(name), show.valueOf(value)));
        }
    }
    for (const auto& [name, value] : before) {
        if (!after.contains(name)) {
            lines.add(name, lineOf(show.nameOf(name), kRemoved));
        }
    }
    return lines.take();
}

struct AsTheyAre {
    static std::string nameOf(const std::string& name) { return name; }
    static std::string valueOf(const std::string& value) { return value; }
};

bool isShownWhole(std::string_view content) {
    return content.size() <= MachineFormat::kMostShownBytes && !findInvalidUtf8(content) &&
           content.find('\0') == std::string_view::npos &&
           static_cast<std::size_t>(std::ranges::count(content, '\n')) <= kMostShownLines;
}

std::string contentText(std::string_view content) {
    return isShownWhole(content) ? quotedText(content)
                                 : std::to_string(content.size()) + " bytes, MD5 " +
                                       md5Text(md5Of(content.data(), content.size()));
}

class AsFiles {
public:
    explicit AsFiles(bool isWindows) : isWindows_(isWindows) {}

    std::string nameOf(const std::string& path) const {
        return entryText(isWindows_ ? OUtils::withSeparators(path) : path, MachineFormat::kIs);
    }
    // "file", "file program", "file private" before the content. Windows has no mark of a program.
    std::string valueOf(const std::string& text) const {
        const std::size_t mark = text.find(kContentMark);
        if (!text.starts_with(kFileWord) || mark == std::string::npos) {
            return text;
        }
        std::string rights = text.substr(kFileWord.size(), mark - kFileWord.size());
        if (isWindows_ && rights.starts_with(kProgramRight)) {
            rights.erase(0, kProgramRight.size());
        }
        rights = rights.empty() ? rights : rights.substr(1) + " ";
        return rights + contentText(std::string_view(text).substr(mark + kContentMark.size()));
    }

private:
    bool isWindows_;
};

bool isEnvironmentKey(RegistryRoot root, RegistryView view, const std::string& path) {
    return root == RegistryRoot::kLocalMachine && view == RegistryView::kNative &&
           OUtils::equalsIgnoreCase(path, platform::kSystemEnvironmentKey);
}

// Walks through the keys of one root and view.
class RegistryWalk {
public:
    RegistryWalk(RehearsedMachine& machine, RegistryRoot root, RegistryView view, MachineSnapshot& outState)
        : machine_(machine), root_(root), view_(view), state_(outState) {}

    void run() {
        std::vector<std::string> paths = {""};
        while (!paths.empty()) {
            const std::string path = std::move(paths.back());
            paths.pop_back();
            if (!path.empty()) {
                take(path);
            }
            std::vector<std::string> names;
            machine_.registry.listKeys(root_, path, view_, names);
            for (const std::string& name : names) {
                std::string below = path;
                below.append(path.empty() ? "" : "\\").append(name);
                paths.push_back(std::move(below));
            }
        }
    }

private:
    void take(const std::string& path) {
        const std::string end = view_ == RegistryView::k32Bit ? " (32-bit)" : "";
        const std::string key = registryKeyText(root_, path) + end;
        const bool isEnvironment = isEnvironmentKey(root_, view_, path);
        state_.registry[entryText(key, MachineFormat::kIs)] = "key";
        std::vector<std::string> names;
        machine_.registry.listValues(root_, path, view_, names);
        for (const std::string& name : names) {
            platform::RegistryValue value;
            machine_.registry.readValue(root_, path, view_, name, value);
            if (isEnvironment) {
                state_.environment[entryText(name, MachineFormat::kIs)] = registryValueText(value);
            } else {
                state_.registry[registryNameText(key, name)] = registryValueText(value);
            }
        }
    }

    RehearsedMachine& machine_;
    RegistryRoot root_;
    RegistryView view_;
    MachineSnapshot& state_;
};

void takeFirewall(const MemoryFirewall& firewall, MachineSnapshot& outState) {
    for (const auto& [path, name] : firewall.applications) {
        outState.firewall["application " + path] = quotedText(name);
    }
    for (const auto& [port, name] : firewall.ports) {
        const bool isTcp = port.second == platform::FirewallProtocol::kTcp;
        outState.firewall["port " + std::to_string(port.first) + (isTcp ? " TCP" : " UDP")] =
            quotedText(name);
    }
}

// Takes the desktop's links out of the files.
Values takeShortcuts(Values& files, const RehearsedDesktop& desktop) {
    Values shortcuts;
    for (auto file = files.begin(); file != files.end();) {
        const std::size_t mark = file->second.find(kContentMark);
        const std::string text =
            mark == std::string::npos
                ? std::string()
                : desktop.linkText(std::string_view(file->second).substr(mark + kContentMark.size()));
        if (text.empty()) {
            ++file;
        } else {
            shortcuts[file->first] = text;
            file = files.erase(file);
        }
    }
    return shortcuts;
}

}  // namespace

MachineSnapshot takeSnapshot(RehearsedMachine& machine) {
    MachineSnapshot state;
    state.files = machine.files.everything();
    for (const RegistryRoot root : {RegistryRoot::kClassesRoot, RegistryRoot::kCurrentUser,
                                    RegistryRoot::kLocalMachine, RegistryRoot::kUsers}) {
        for (const RegistryView view : {RegistryView::kNative, RegistryView::k32Bit}) {
            RegistryWalk(machine, root, view, state).run();
        }
    }
    takeFirewall(machine.firewall, state);
    return state;
}

MachineChanges changesBetween(const MachineSnapshot& before, const MachineSnapshot& after,
                              const RehearsedMachine& machine) {
    Values oldFiles = before.files;
    Values newFiles = after.files;
    const Values oldShortcuts = takeShortcuts(oldFiles, machine.desktop);
    const Values newShortcuts = takeShortcuts(newFiles, machine.desktop);
    const AsFiles asFiles(machine.description.isWindows());
    struct AsShortcuts : AsFiles {
        using AsFiles::AsFiles;
        static std::string valueOf(const std::string& text) { return text; }
    };
    MachineChanges changes;
    changes.files = differences(oldFiles, newFiles, asFiles);
    changes.shortcuts = differences(oldShortcuts, newShortcuts, AsShortcuts(machine.description.isWindows()));
    changes.registry = differences(before.registry, after.registry, AsTheyAre());
    changes.environment = differences(before.environment, after.environment, AsTheyAre());
    changes.firewall = differences(before.firewall, after.firewall, AsTheyAre());
    return changes;
}
