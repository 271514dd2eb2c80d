#pragma once

class CheckContext;
class PackedFiles;
class PathValues;

// Records that an uninstallation needs and that the description doesn't ask for, or that stay behind; an
// uninstaller or a description of it that nothing installs.
void checkRecords(const CheckContext& context, const PackedFiles& files, const PathValues& paths);
