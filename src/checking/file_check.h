#pragma once

class CheckContext;
class PackedFiles;
class PathValues;

// Files that aren't there, that lie in each other's way on the user's machine, or that can't be expanded.
void checkFiles(const CheckContext& context, const PackedFiles& files, const PathValues& paths);
