#pragma once

#include <string>
#include <string_view>

// The system that a package is for, as far as the packager knows.
enum class TargetSystem { kAny, kLinux, kWindows };

// What a name of the disk is used for in a description.
enum class NameUse {
    kFile,       // the last part of the text of an FN
    kDirectory,  // a part of a Dest, where references are replaced
    kLink,       // the text of a shortcut, where references are replaced
};

// Why a description can't carry this name of a file, directory or link, or the system can't have it: a text
// that goes on "the name has ...". Empty when nothing is wrong with it.
std::string nameFault(std::string_view name, NameUse use, TargetSystem target);

// Why a symbolic link at `path` below the tree, with `/`, may not have this text: as nameFault, but "the link
// ...". Only a relative link that stays inside of the tree, whatever the links on its way, may.
std::string linkFault(std::string_view path, std::string_view text);
