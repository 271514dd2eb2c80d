#pragma once

class CheckContext;
class PackedFiles;
class PathValues;

// Changes that no record covers and that nothing in the description takes back.
void checkChanges(const CheckContext& context, const PackedFiles& files, const PathValues& paths);
