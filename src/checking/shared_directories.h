#pragma once

#include <string_view>

class PathValues;

// Directories that a product shares with others. Paths are resolved ones (PathValues::resolve).

// A root: of a file system, a drive, or a share of a network.
bool isRootPath(std::string_view path);

// Whether no file of a product belongs into this directory itself: roots, the system's own directories, those
// above all products, that for temporary files.
bool isNoPlaceForFiles(std::string_view path, const PathValues& values);

// Whether other programs have files in this directory, too, so that nothing may be cleaned up in it: all of
// the above, and the directories for everybody's programs, settings and data.
bool isSharedDirectory(std::string_view path, const PathValues& values);
