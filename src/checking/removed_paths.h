#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class CheckContext;
class PackedFiles;
class PathValues;

// What of a product an uninstallation may take away besides what its log records. In doubt it does: a
// description can hold programs, and variables that only a run knows.
class RemovedPaths {
public:
    RemovedPaths(const CheckContext& context, const PathValues& paths);

    // `path` is a resolved one.
    bool mayContain(std::string_view path) const;

private:
    struct Pattern {
        std::string directory;
        std::string_view names;
    };

    void addPatterns(const CheckContext& context, const PathValues& paths);
    void addActions(const CheckContext& context, const PathValues& paths);
    static bool mayCover(const Pattern& pattern, std::string_view path);

    std::vector<Pattern> patterns_;
    std::vector<std::string> files_;
    bool hasProgram_ = false;
};

// The part of a resolved path before its last separator; a root keeps it.
std::string_view directoryOf(std::string_view path);

// Whether the product can be uninstalled, or at least is meant to be.
bool isMeantToBeUninstalled(const CheckContext& context);
