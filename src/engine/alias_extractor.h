#pragma once

#include <string>
#include <string_view>

class Cabinet;
class FileContents;
namespace platform {
class FileSystem;
}

// Writes single entries of the cabinet to files.
class AliasExtractor {
public:
    AliasExtractor(const Cabinet& cabinet, FileContents& contents, platform::FileSystem& files)
        : cabinet_(cabinet), contents_(contents), files_(files) {}

    // Writes the entry under its own file name into an existing directory, over what is there, and returns
    // the full path. `expandVariablesInFile` expands content of less than 1 MiB; `stripExeExtension` removes
    // the last extension of the name. Throws InstallerError on every failure; the file may hold a part of
    // its content then.
    std::string extractAlias(std::string_view alias, std::string_view destinationDirectory,
                             bool expandVariablesInFile, bool stripExeExtension);

private:
    std::string pathOf(std::string_view name, std::string_view directory, bool stripExeExtension);

    const Cabinet& cabinet_;
    FileContents& contents_;
    platform::FileSystem& files_;
};
