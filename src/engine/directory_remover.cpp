#include "engine/directory_remover.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/file_system.h"

int DirectoryRemover::removeEmptyDirectories(std::string_view path) {
    std::string level(path.substr(0, PathText::capacity() - 1));
    OUtils::setSeparators(level.data());
    level.resize(std::min(level.size(), level.find_last_not_of('\\') + 1));
    std::vector<std::string> levels;  // deepest first
    std::string child;
    while (!level.empty() && holdsNothingBut(level.c_str(), child)) {
        levels.push_back(level);
        const std::size_t separator = level.rfind('\\');
        if (separator == std::string::npos) {
            break;
        }
        child = level.substr(separator + 1);
        level.resize(level.find_last_not_of('\\', separator) + 1);
    }
    for (const std::string& directory : levels) {
        if (files_.removeDirectory(directory.c_str()) != 0) {
            return 0;
        }
    }
    return static_cast<int>(levels.size());
}

bool DirectoryRemover::holdsNothingBut(const char* directory, std::string_view child) {
    std::vector<platform::DirectoryEntry> entries;
    return files_.isOrdinaryDirectory(directory) && files_.list(directory, entries) == 0 &&
           std::all_of(entries.begin(), entries.end(), [child](const platform::DirectoryEntry& entry) {
               return entry.isDirectory && !child.empty() && OUtils::equalsIgnoreCase(entry.name, child);
           });
}
