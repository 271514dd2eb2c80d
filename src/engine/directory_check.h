#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>

#include "engine/engine_parts.h"
#include "engine/file_planner.h"

class Report;

namespace platform {
class Environment;
}

// Why an action log can't hold the path of a directory; empty when it can. Paths of files and directories are
// read back from it by an uninstallation that runs elsewhere and sees only one line each.
std::string_view directoryFault(std::string_view path);

// Whether the path leads to the same place from everywhere: it begins with a separator, or with a drive and
// one.
bool isAbsolutePath(std::string_view path);

// The path, counted from the current directory if it is relative. An empty path, and one that only names a
// drive, stay as they are, as does every path when the current directory isn't known.
std::string absolutePath(platform::Environment& environment, const std::string& path);

// Looks at the directories of an installation before it changes anything.
class DirectoryCheck {
public:
    // All of them outlive this object.
    DirectoryCheck(const EngineParts& parts, Report& report);

    // True when the action log can hold the directory of every file that is selected, and the paths of the
    // records themselves. Otherwise each one that it can't hold has been reported.
    bool run();

private:
    void checkDestination(const std::string& destination);
    void checkRecord(std::string_view what, const std::string& path);
    void refuse(std::string_view what, std::string_view path, std::string_view fault);

    EngineParts parts_;
    Report& report_;
    FilePlanner planner_;
    std::unordered_set<std::string> seen_;
    bool isGood_ = true;
};
