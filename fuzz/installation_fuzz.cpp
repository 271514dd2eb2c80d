// Installs a package whose catalogue and description may be anything, with nobody to ask: the session comes
// back, and writes nowhere but where the description says. The input is a catalogue, or the description and
// more files in sections, each with its name and its alias in two lines of its own.

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "description/pxml.h"
#include "disk_paths.h"
#include "disk_snapshot.h"
#include "fuzz_target.h"
#include "input_sections.h"
#include "memory_session.h"
#include "package/cabinet.h"
#include "package_bytes.h"
#include "platform/memory/memory_platform.h"
#include "session/session_flags.h"

namespace {

constexpr char kPackage[] = "/kit/package";
constexpr char kForeign[] = "/home/someone/4f1c2a90-7d13-letter.txt";

std::string catalogueOf(std::string_view input) {
    if (input.starts_with(std::string_view("\x10\0'c", 4))) {
        return std::string(input);
    }
    const std::vector<std::string_view> sections = sectionsOf(input);
    std::string catalogue = cabinetEntry("install.xml", "install.xml", sections[0]);
    for (std::size_t i = 1; i < sections.size(); ++i) {
        std::string_view content = sections[i];
        const std::string_view name = takeLine(content);
        const std::string_view alias = takeLine(content);
        catalogue += cabinetEntry(name, alias, content);
    }
    return catalogue + endRecord();
}

// The paths that the description names, with the values that its variables have at any page.
class NamedPlaces {
public:
    explicit NamedPlaces(MemoryFileSystem& files) {
        Cabinet cabinet(files, DebugLog());
        cabinet.load(kPackage, 0);
        const auto index = cabinet.findAlias("install.xml");
        description_.parseText(index ? cabinet.entryContent(*index).value_or("") : "");
    }

    void collect(Wini& session) {
        for (std::int32_t i = 0; i < description_.getNodeCount(); ++i) {
            const PXMLNode& node = *description_.getNode(i);
            add(session, node.text.value_or(""));
            for (const PXMLAttribute& attribute : node.attributes) {
                add(session, attribute.value.value_or(""));
            }
        }
    }

    bool hold(std::string_view path) const {
        for (const std::string& place : places_) {
            if (isAtOrBelow(path, place)) {
                return true;
            }
        }
        return false;
    }

private:
    void add(Wini& session, std::string_view text) {
        const int size = session.expandVariables(std::string(text).c_str(), nullptr, 0, false);
        std::string expanded(static_cast<std::size_t>(std::max(size, 1)), '\0');
        session.expandVariables(std::string(text).c_str(), expanded.data(), size, false);
        expanded.resize(expanded.find('\0'));
        if (!expanded.empty()) {
            places_.insert(resolvedPath(expanded));
            places_.insert(resolvedPath("/current/" + expanded));
        }
    }

    PXML description_;
    std::set<std::string> places_ = {"/tmp", "/var/state"};
};

}  // namespace

// Accepted when the installation succeeded and wrote something.
bool accepts(std::string_view input) {
    MemoryPlatform machine;
    machine.files.addDirectory("/tmp");
    machine.files.addFile(kForeign, "dear");
    machine.files.addFile("/opt/present/readme.txt", "the user's");
    machine.files.addFile("/opt/present/settings.ini", "[main]\nkey=value\n");
    machine.files.addLink("/opt/present/link", kForeign);
    machine.files.addFile(kPackage, leadBlock() + solidStream(catalogueOf(input)));
    const DiskSnapshot before(machine.files);
    NamedPlaces named(machine.files);
    const SessionEnd end =
        runSession(machine, kPackage, kSessionBackup, [&](Wini& session, std::string_view call) {
            if (call.starts_with("showDialog") || call.starts_with("showSubDialog")) {
                named.collect(session);
            }
        });
    const std::vector<std::string> changed = before.differencesTo(DiskSnapshot(machine.files));
    for (const std::string& path : changed) {
        require(named.hold(path));
    }
    require(machine.files.content(kForeign) == "dear");
    return end.hasSucceeded && !changed.empty();
}
