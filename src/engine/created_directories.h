#pragma once

#include <string>

#include "engine/directory_remover.h"

class Report;

// Takes the directories away that an installation made, as its log tells them.
class CreatedDirectories {
public:
    explicit CreatedDirectories(platform::FileSystem& files) : files_(files), remover_(files) {}

    // Undoes one record: `levels` directories of `path` were made, the deepest first. A path with a separator
    // at its end counts from there; one without is first treated as a whole. A directory that isn't there is
    // no failure; one that holds anything stays and is reported as failed. True when every level is gone.
    // Nothing happens for fewer than one level or an empty path.
    bool remove(const std::string& path, int levels, Report& report);

private:
    bool removeLevel(const std::string& directory, Report& report);

    platform::FileSystem& files_;
    DirectoryRemover remover_;
};
