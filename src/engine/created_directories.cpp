#include "engine/created_directories.h"

#include "base/path_functions.h"
#include "engine/report.h"
#include "platform/file_system.h"

bool CreatedDirectories::remove(const std::string& path, int levels, Report& report) {
    if (levels < 1 || path.empty()) {
        return true;
    }
    bool removed = true;
    if (!OUtils::isSeparator(path.back())) {
        removed = removeLevel(path, report);
    }
    std::string level = path;
    for (std::size_t end = level.find_last_of("/\\"); end != std::string::npos && levels > 0; --levels) {
        level.resize(end);
        if (level.empty()) {
            break;
        }
        removed = removeLevel(level, report) && removed;
        end = level.find_last_of("/\\");
    }
    return removed;
}

bool CreatedDirectories::removeLevel(const std::string& directory, Report& report) {
    if (files_.exists(directory.c_str())) {
        remover_.removeEmptyDirectories(directory);
    }
    const bool removed = !files_.exists(directory.c_str());
    const std::string line = (removed ? "Remove " : "FAILED to remove ") + directory;
    report.addLine(line, false);
    if (!removed) {
        report.addError(line);
    }
    return removed;
}
