#pragma once

#include <set>
#include <string>
#include <string_view>

#include "checking/path_values.h"

class CheckContext;
class PackedFiles;

// The directories that an installation makes: those into which it puts files and shortcuts, and all above
// them. What users are asked for counts as they find it.
class MadeDirectories {
public:
    // `context` is borrowed and outlives this object, and so does what `paths` borrows.
    MadeDirectories(const CheckContext& context, const PackedFiles& files, const PathValues& paths);

    // Whether the directory, a path with or without references, is the product's own: on a machine without
    // the product it isn't there, and the installation makes it. In doubt it isn't.
    bool isMade(std::string_view directory) const;

    // Whether the directory is neither made nor one that a machine may have. In doubt it isn't missing.
    bool isMissing(std::string_view directory) const;

private:
    void add(std::string_view dest);
    bool isOwn(std::string_view path) const;
    bool mayBeMade(const std::string& directory) const;
    bool isDescribed(std::string_view directory) const;
    bool isOfTheMachine(std::string_view directory) const;
    std::string folded(std::string_view path) const;

    const CheckContext& context_;
    PathValues paths_;
    bool areAllKnown_;
    std::set<std::string> made_;
};
