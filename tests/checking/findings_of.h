#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "checking/description_check.h"
#include "platform/memory/memory_file_system.h"

// Shows findings as "line:column code", which is what most tests want to see.
inline std::vector<std::string> shown(const std::vector<Finding>& findings) {
    std::vector<std::string> lines;
    for (const Finding& finding : findings) {
        lines.push_back(std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column) +
                        " " + std::string(finding.code.name()));
    }
    return lines;
}

// What a check of this description finds that knows no files.
inline std::vector<Finding> findingsOf(std::string_view description) {
    MemoryFileSystem files;
    return checkDescription(description, {}, files);
}
