#include "ui/console/typed_directory.h"

#include <limits>
#include <optional>
#include <vector>

#include "base/path_functions.h"
#include "platform/environment.h"

namespace {

bool isRelative(std::string_view path) {
    const bool hasDrive = path.size() >= 2 && path[1] == ':';
    return !path.empty() && !OUtils::isSeparator(path.front()) && !hasDrive &&
           path.find('[') == std::string_view::npos;
}

std::optional<std::string> homeDirectory(platform::Environment& environment) {
    for (const std::string_view name : {"USERPROFILE", "HOME"}) {
        std::optional<std::string> home = environment.get(name);
        if (home && !isRelative(*home) && !home->empty()) {
            return home;
        }
    }
    return std::nullopt;
}

// `base` with the names of `path` behind it; `.` stays where it is, `..` goes up, but not above the root.
std::string resolved(std::string base, std::string_view path) {
    while (!path.empty()) {
        std::size_t end = 0;
        while (end < path.size() && !OUtils::isSeparator(path[end])) {
            ++end;
        }
        const std::string_view name = path.substr(0, end);
        path.remove_prefix(end < path.size() ? end + 1 : end);
        if (name == "..") {
            const std::string_view stripped = OUtils::stripTrailingSeparators(base);
            base = stripped.substr(0, stripped.size() - OUtils::lastPathComponent(stripped).size());
        } else if (!name.empty() && name != ".") {
            base = OUtils::joinedPath(base, name, std::numeric_limits<std::size_t>::max());
        }
    }
    return base;
}

}  // namespace

std::string typedDirectory(std::string_view typed, platform::Environment& environment) {
    std::string base;
    if (typed == "~" || typed.starts_with("~/") || typed.starts_with("~\\")) {
        const std::optional<std::string> home = homeDirectory(environment);
        return home ? resolved(*home, typed.substr(1)) : std::string(typed);
    }
    const bool isKnown = isRelative(typed) && environment.currentDirectory(base);
    return isKnown ? resolved(base, typed) : std::string(typed);
}
