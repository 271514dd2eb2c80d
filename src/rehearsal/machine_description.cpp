#include "rehearsal/machine_description.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <limits>
#include <map>
#include <set>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_format.h"
#include "rehearsal/registry_text.h"
#include "rehearsal/sectioned_text.h"

namespace {

using Named = MachineDescription::Named;

std::int64_t readNumber(const std::string& text, std::int64_t least, std::int64_t most, int line) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most) {
        failAtLine(line, "\"" + text + "\" is no number from " + std::to_string(least) + " to " +
                             std::to_string(most));
    }
    return number;
}

bool isAbsolute(std::string_view path) {
    const bool hasDrive = path.size() > 2 && path[1] == ':' && OUtils::isSeparator(path[2]);
    return hasDrive || (!path.empty() && OUtils::isSeparator(path.front()));
}

const std::string& checkedPath(const std::string& path, int line) {
    if (!isAbsolute(path)) {
        failAtLine(line, "\"" + path + "\" is no full path, such as /opt/x or C:\\x");
    }
    if (path.size() > MachineFormat::kMostPathBytes) {
        failAtLine(line, "this path is too long");
    }
    return path;
}

Named readNamed(const NumberedLine& line) {
    EntryReader reader(line.text, line.number);
    Named named{reader.takeText({MachineFormat::kIs}), {}, line.number};
    if (!reader.take(MachineFormat::kIs)) {
        failAtLine(line.number, "\" = \" and a value are missing; an empty value is \"\"");
    }
    named.text = reader.takeText({});
    return named;
}

std::string readOne(const NumberedLine& line) {
    return EntryReader(line.text, line.number).takeText({});
}

// Of one section. Paths and other names count once, in any case.
class Names {
public:
    void add(const std::string& name, int line) {
        if (!seen_.insert(OUtils::withSeparators(OUtils::toLowerAscii(name))).second) {
            failAtLine(line, "\"" + name + "\" is there already");
        }
    }

private:
    std::set<std::string> seen_;
};

std::vector<Named> readAllNamed(const TextSection& section) {
    std::vector<Named> all;
    Names names;
    for (const NumberedLine& line : section.lines) {
        all.push_back(readNamed(line));
        names.add(all.back().name, line.number);
    }
    return all;
}

std::vector<Named> readPlaces(const TextSection& section) {
    std::vector<Named> all = readAllNamed(section);
    for (const Named& named : all) {
        checkedPath(named.name, named.line);
    }
    return all;
}

void checkCount(const TextSection& section) {
    if (section.lines.size() > MachineFormat::kMostRules) {
        failAtLine(section.line, "the section [" + section.name + "] has more than " +
                                     std::to_string(MachineFormat::kMostRules) + " lines");
    }
}

std::vector<std::string> readPaths(const TextSection& section) {
    std::vector<std::string> paths;
    Names names;
    for (const NumberedLine& line : section.lines) {
        paths.push_back(checkedPath(readOne(line), line.number));
        names.add(paths.back(), line.number);
    }
    return paths;
}

void readSystem(const Named& entry, MachineDescription& outMachine) {
    if (entry.text != MachineFormat::kLinux && entry.text != MachineFormat::kWindows) {
        failAtLine(entry.line, "the system is linux or windows");
    }
    const bool isWindows = entry.text == MachineFormat::kWindows;
    outMachine.system = isWindows ? MemoryManner::System::kWindows : MemoryManner::System::kLinux;
}

void readFacts(const TextSection& section, MachineDescription& outMachine) {
    for (const Named& entry : readAllNamed(section)) {
        if (entry.name == MachineFormat::kSystem) {
            readSystem(entry, outMachine);
        } else if (entry.name == MachineFormat::kSetup) {
            outMachine.setup = checkedPath(entry.text, entry.line);
        } else if (entry.name == MachineFormat::kTemporary) {
            outMachine.temporaryDirectory = checkedPath(entry.text, entry.line);
        } else {
            failAtLine(entry.line, "the section [machine] has no entry \"" + entry.name + "\"");
        }
    }
}

MachineDescription::Step readStep(const NumberedLine& line) {
    EntryReader reader(line.text, line.number);
    MachineDescription::Step step{reader.takeText({" "}) == MachineFormat::kInstall, {}, {}};
    if (!step.isInstallation && line.text != MachineFormat::kUninstall) {
        failAtLine(line.number,
                   "a step is install, install from PACKAGE, or uninstall; options follow install");
    }
    while (reader.take(" ")) {
        std::string word = reader.takeText({" "});
        const bool isSource = word == MachineFormat::kFrom && step.options.empty() && step.package.empty();
        if (isSource && reader.take(" ")) {
            step.package = reader.takeText({" "});
        } else {
            step.options.push_back(std::move(word));
        }
    }
    return step;
}

void readSteps(const TextSection& section, MachineDescription& outMachine) {
    for (const NumberedLine& line : section.lines) {
        MachineDescription::Step step = readStep(line);
        if (outMachine.steps.empty() && !step.isInstallation) {
            failAtLine(line.number, "nothing is installed yet");
        }
        outMachine.steps.push_back(std::move(step));
        if (outMachine.steps.size() > MachineFormat::kMostSteps) {
            failAtLine(line.number, "there are too many steps");
        }
    }
}

void readRegistry(const TextSection& section, platform::RegistryView view, MachineDescription& outMachine) {
    for (const NumberedLine& line : section.lines) {
        outMachine.registry.push_back(readRegistryEntry(line, view));
    }
}

void readFreeSpace(const TextSection& section, MachineDescription& outMachine) {
    checkCount(section);
    for (const Named& entry : readPlaces(section)) {
        outMachine.freeSpace.push_back(
            {entry.name, readNumber(entry.text, 0, std::numeric_limits<std::int64_t>::max(), entry.line)});
    }
}

void readResults(const TextSection& section, MachineDescription& outMachine) {
    checkCount(section);
    constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    for (const Named& entry : readAllNamed(section)) {
        std::optional<int> exitCode;
        if (entry.text != MachineFormat::kCannotStart) {
            exitCode = static_cast<int>(readNumber(entry.text, kLeast, kMost, entry.line));
        }
        outMachine.results.push_back({entry.name, exitCode});
    }
}

using SectionFunction = std::function<void(const TextSection&, MachineDescription&)>;

SectionFunction pathsTo(std::vector<std::string> MachineDescription::*list) {
    return [list](const TextSection& section, MachineDescription& machine) {
        machine.*list = readPaths(section);
    };
}

SectionFunction rulesTo(std::vector<std::string> MachineDescription::*list) {
    return [list](const TextSection& section, MachineDescription& machine) {
        checkCount(section);
        machine.*list = readPaths(section);
    };
}

SectionFunction placesTo(std::vector<Named> MachineDescription::*list) {
    return [list](const TextSection& section, MachineDescription& machine) {
        machine.*list = readPlaces(section);
    };
}

SectionFunction namedTo(std::vector<Named> MachineDescription::*list) {
    return [list](const TextSection& section, MachineDescription& machine) {
        machine.*list = readAllNamed(section);
    };
}

SectionFunction registryOf(platform::RegistryView view) {
    return [view](const TextSection& section, MachineDescription& machine) {
        readRegistry(section, view, machine);
    };
}

const std::map<std::string_view, SectionFunction>& sectionFunctions() {
    static const std::map<std::string_view, SectionFunction> functions = {
        {MachineFormat::kMachine, readFacts},
        {MachineFormat::kSteps, readSteps},
        {MachineFormat::kDirectories, pathsTo(&MachineDescription::directories)},
        {MachineFormat::kFiles, placesTo(&MachineDescription::files)},
        {MachineFormat::kPrograms, placesTo(&MachineDescription::programs)},
        {MachineFormat::kCopies, placesTo(&MachineDescription::copies)},
        {MachineFormat::kLinks, placesTo(&MachineDescription::links)},
        {MachineFormat::kReadOnly, rulesTo(&MachineDescription::readOnly)},
        {MachineFormat::kFreeSpace, readFreeSpace},
        {MachineFormat::kRegistry, registryOf(platform::RegistryView::kNative)},
        {MachineFormat::kRegistry32, registryOf(platform::RegistryView::k32Bit)},
        {MachineFormat::kEnvironment, namedTo(&MachineDescription::environment)},
        {MachineFormat::kProcessEnvironment, namedTo(&MachineDescription::processEnvironment)},
        {MachineFormat::kRunning, rulesTo(&MachineDescription::running)},
        {MachineFormat::kResults, readResults},
    };
    return functions;
}

void addDefaults(MachineDescription& outMachine) {
    if (outMachine.steps.empty()) {
        outMachine.steps.emplace_back();
    }
    if (outMachine.setup.empty()) {
        outMachine.setup = outMachine.isWindows() ? "C:\\Setup\\setup.exe" : "/setup/setup";
    }
    if (outMachine.temporaryDirectory.empty()) {
        outMachine.temporaryDirectory = outMachine.isWindows() ? "C:\\Windows\\Temp" : "/tmp";
    }
}

}  // namespace

std::string MachineDescription::besideSetup(std::string_view name) const {
    return setup.substr(0, setup.size() - OUtils::lastPathComponent(setup).size()) + std::string(name);
}

MachineDescription plainMachine(MemoryManner::System system) {
    MachineDescription machine;
    machine.system = system;
    addDefaults(machine);
    return machine;
}

MachineDescription readMachine(std::string_view text) {
    MachineDescription machine;
    bool hasSystem = false;
    for (const TextSection& section : readSections(text).sections) {
        const auto found = sectionFunctions().find(section.name);
        if (found == sectionFunctions().end()) {
            failAtLine(section.line, "a machine has no section [" + section.name + "]");
        }
        found->second(section, machine);
        hasSystem = hasSystem || (section.name == MachineFormat::kMachine &&
                                  std::ranges::any_of(section.lines, [](const NumberedLine& line) {
                                      return readNamed(line).name == MachineFormat::kSystem;
                                  }));
    }
    if (!hasSystem) {
        failAtLine(1, "the section [machine] with system = linux or system = windows is missing");
    }
    addDefaults(machine);
    return machine;
}
