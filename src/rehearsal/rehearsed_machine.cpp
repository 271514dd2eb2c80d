#include "rehearsal/rehearsed_machine.h"

#include "base/failure.h"
#include "base/path_functions.h"
#include "platform/system_environment.h"
#include "rehearsal/entry_text.h"

namespace {

using Named = MachineDescription::Named;
using platform::PathKind;
using platform::RegistryRoot;
using platform::RegistryView;

struct Setting {
    const char* name;
    const char* value;
};

// Both of the setup's own environment and of the machine's.
constexpr const char* kPathVariable = "Path";
constexpr const char* kPathValue = "C:\\Windows\\system32;C:\\Windows";

// What each machine of the system has; a machine file can say something else.
constexpr Setting kWindowsEnvironment[] = {
    {"SystemDrive", "C:"},
    {"SystemRoot", "C:\\Windows"},
    {"windir", "C:\\Windows"},
    {"ProgramFiles", "C:\\Program Files"},
    {"ProgramFiles(x86)", "C:\\Program Files (x86)"},
    {"CommonProgramFiles", "C:\\Program Files\\Common Files"},
    {"ProgramData", "C:\\ProgramData"},
    {"ALLUSERSPROFILE", "C:\\ProgramData"},
    {"PUBLIC", "C:\\Users\\Public"},
    {"USERNAME", "Administrator"},
    {"USERPROFILE", "C:\\Users\\Administrator"},
    {"APPDATA", "C:\\Users\\Administrator\\AppData\\Roaming"},
    {"LOCALAPPDATA", "C:\\Users\\Administrator\\AppData\\Local"},
    {"COMPUTERNAME", "MACHINE"},
    {"OS", "Windows_NT"},
    {"PROCESSOR_ARCHITECTURE", "AMD64"},
    {"ComSpec", "C:\\Windows\\system32\\cmd.exe"},
    {kPathVariable, kPathValue},
};
constexpr Setting kLinuxEnvironment[] = {
    {"HOME", "/root"},
    {"USER", "root"},
    {"LANG", "C.UTF-8"},
    {"PATH", "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"},
};
constexpr Setting kWindowsVersion[] = {
    {"ProgramFilesDir", "C:\\Program Files"},
    {"ProgramFilesDir (x86)", "C:\\Program Files (x86)"},
    {"CommonFilesDir", "C:\\Program Files\\Common Files"},
};
constexpr std::string_view kVersionKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

constexpr const char* kWindowsDirectories[] = {
    "C:\\Windows\\System32",
    "C:\\Program Files\\Common Files",
    "C:\\Program Files (x86)",
    "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs",
    "C:\\Users\\Public\\Desktop",
    "C:\\Users\\Administrator\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs",
    "C:\\Users\\Administrator\\AppData\\Local",
    "C:\\Users\\Administrator\\Desktop",
};
constexpr const char* kLinuxDirectories[] = {
    "/bin",
    "/etc",
    "/home",
    "/opt",
    "/root",
    "/usr/bin",
    "/usr/local/bin",
    "/usr/local/share",
    "/usr/share/applications",
    "/var/lib",
};

constexpr std::int64_t kPlenty = std::int64_t{1} << 50U;

}  // namespace

RehearsedMachine::RehearsedMachine(const MachineDescription& machine, const ReadBeside& readBeside)
    : description(machine),
      processes(machine, files, registry, actions),
      desktop(files, !machine.isWindows(), actions) {
    addSystem();
    addFiles(readBeside);
    addSettings();
    files.clearOperations();
    registry.operations.clear();
}

platform::Platform RehearsedMachine::bundle() {
    return {files, registry, processes, environment, console, events, desktop, firewall};
}

// Only a directory may be there already, and above it there is nothing else.
void RehearsedMachine::checkPlace(std::string path, PathKind kind) {
    const std::string whole = path;
    while (!path.empty()) {
        const PathKind present = files.kindOf(path);
        if (present != PathKind::kNothing &&
            (present != PathKind::kDirectory || kind != PathKind::kDirectory)) {
            fail(whole + " can't be on the machine: something else is in its place");
        }
        kind = PathKind::kDirectory;
        path.resize(path.size() - OUtils::lastPathComponent(path).size());
        while (!path.empty() && OUtils::isSeparator(path.back())) {
            path.pop_back();
        }
    }
}

void RehearsedMachine::addSystem() {
    const bool isWindows = description.isWindows();
    files.removeDirectory("/tmp");  // the memory's own
    environment.current = isWindows ? "C:\\" : "/root";
    environment.state = isWindows ? "C:\\ProgramData\\Tandrel" : "/var/lib/tandrel";
    setProgram(description.setup);
    if (!isWindows) {
        for (const char* const directory : kLinuxDirectories) {
            files.addMarkedDirectory(directory);
        }
        for (const Setting& setting : kLinuxEnvironment) {
            environment.variables[setting.name] = setting.value;
        }
        firewall.failing[platform::FirewallCall::kNoService] = 0;
        return;
    }
    for (const char* const directory : kWindowsDirectories) {
        files.addMarkedDirectory(directory);
    }
    for (const Setting& setting : kWindowsEnvironment) {
        environment.variables[setting.name] = setting.value;
    }
    for (const Setting& setting : kWindowsVersion) {
        registry.addText(RegistryRoot::kLocalMachine, kVersionKey, setting.name, setting.value);
    }
    registry.addKey(RegistryRoot::kLocalMachine, std::string(kVersionKey) + "\\Uninstall");
    addEnvironment(kPathVariable, kPathValue);
}

void RehearsedMachine::addFiles(const ReadBeside& readBeside) {
    files.setTemporaryDirectory(description.temporaryDirectory);
    for (const std::string& path : description.directories) {
        checkPlace(path, PathKind::kDirectory);
        files.addDirectory(path);
    }
    for (const Named& file : description.files) {
        checkPlace(file.name, PathKind::kFile);
        files.addFile(file.name, file.text);
    }
    for (const Named& file : description.programs) {
        checkPlace(file.name, PathKind::kFile);
        files.addProgram(file.name, file.text);
    }
    for (const Named& file : description.copies) {
        checkPlace(file.name, PathKind::kFile);
        files.addFile(file.name, readBeside(file));
    }
    for (const Named& link : description.links) {
        checkPlace(link.name, PathKind::kLink);
        files.addLink(link.name, link.text);
    }
    files.reportFreeSpace("/", kPlenty);
    for (const MachineDescription::FreeSpace& space : description.freeSpace) {
        files.setVolume(space.path);
        files.reportFreeSpace(space.path, space.bytes);
    }
    for (const std::string& path : description.readOnly) {
        files.setReadOnly(path);
    }
}

void RehearsedMachine::addSettings() {
    for (const RegistryEntry& entry : description.registry) {
        writeValue(entry);
    }
    for (const Named& variable : description.environment) {
        addEnvironment(variable.name, variable.text);
    }
    for (const Named& variable : description.processEnvironment) {
        environment.variables[variable.name] = variable.text;
    }
}

void RehearsedMachine::addEnvironment(const std::string& name, const std::string& value) {
    const std::uint32_t type =
        value.find('%') == std::string::npos ? platform::kRegString : platform::kRegExpandString;
    writeValue({RegistryRoot::kLocalMachine,
                RegistryView::kNative,
                platform::kSystemEnvironmentKey,
                name,
                {type, value}});
}

void RehearsedMachine::writeValue(const RegistryEntry& entry) {
    registry.addKey(entry.root, entry.path, entry.view);
    if (entry.name) {
        registry.writeValue(entry.root, entry.path, entry.view, *entry.name, entry.value);
    }
}
