#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/memory/memory_platform.h"

inline constexpr const char* kEnvironmentKey =
    "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";

// What an uninstallation must leave as it was, in a form in which allowed differences don't show: entries of
// the environment without empty ones, INI files as their keys by section, text files without the difference
// of line ends.
struct MachineState {
    std::map<std::string, std::string> files;   // of a link, linkTo
    std::map<std::string, std::string> rights;  // of the files whose rights aren't those of any file
    std::set<std::string> directories;
    std::map<std::string, std::string> registry;  // keys and values
    std::map<std::string, std::vector<std::string>> environment;
    std::set<std::string> firewall;
};

// A desktop whose links are files.
class DiskShellObjects : public MemoryShellObjects {
public:
    explicit DiskShellObjects(MemoryFileSystem& files) : files_(files) {}
    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    int createSymlink(std::string_view linkPath, std::string_view target) override;

private:
    MemoryFileSystem& files_;
};

// How the state has a link.
std::string linkTo(const std::string& target);
MachineState takeState(MemoryPlatform& machine);
// One line for each difference. Directories are compared by what they hold: an empty one may go with the
// product's.
std::vector<std::string> differences(const MachineState& expected, const MachineState& found);
