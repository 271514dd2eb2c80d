#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/text_functions.h"

// One text for all spellings of a path by which the file system in memory finds a file: from the root, with
// `/`, without `.`, `..` and repeated separators, in lower case.
inline std::string resolvedPath(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::string_view part = path.substr(0, path.find_first_of("/\\"));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        if (part == "..") {
            const bool isDrive = !parts.empty() && parts.back().size() == 2 && parts.back()[1] == ':';
            parts.resize(parts.size() - (parts.empty() || isDrive ? 0 : 1));
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
    }
    std::string resolved;
    for (const std::string_view part : parts) {
        resolved.append("/").append(part);
    }
    return OUtils::toLowerAscii(resolved);
}

// Both resolved.
inline bool isAtOrBelow(std::string_view path, std::string_view directory) {
    return path.starts_with(directory) &&
           (path.size() == directory.size() || path[directory.size()] == '/' || directory.empty());
}
