#pragma once

#include <set>
#include <string>
#include <string_view>

class CheckContext;
class PackedFiles;
class PathValues;

// The directories that an installation makes: those into which it puts files and shortcuts, and all above
// them. Paths are resolved ones (PathValues::resolve).
class MadeDirectories {
public:
    // All are borrowed and outlive this object.
    MadeDirectories(const CheckContext& context, const PackedFiles& files, const PathValues& paths);

    // Whether the directory is the product's own: on a machine without the product it isn't there, and the
    // installation makes it. In doubt it isn't.
    bool isMade(std::string_view directory) const;

    // Whether the directory is neither made nor one that a machine may have. In doubt it isn't missing.
    bool isMissing(std::string_view directory) const;

private:
    void add(std::string_view dest);
    bool mayBeMade(const std::string& directory) const;
    bool isDescribed(std::string_view directory) const;
    bool isOfTheMachine(std::string_view directory) const;
    std::string folded(std::string_view path) const;

    const CheckContext& context_;
    const PathValues& paths_;
    bool areAllKnown_;
    std::set<std::string> made_;
};
