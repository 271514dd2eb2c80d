#pragma once

class CheckContext;
class PackedFiles;
class PathValues;

// Directories of files, records, shortcuts and clean-ups that a setup refuses, that nothing of a product
// belongs into, or that only one of the systems has.
void checkPaths(const CheckContext& context, const PackedFiles& files, const PathValues& paths);
