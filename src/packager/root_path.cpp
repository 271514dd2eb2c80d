#include "packager/root_path.h"

#include <algorithm>

#include "base/failure.h"
#include "base/path_functions.h"

std::string pathBelowRoot(const std::string& text) {
    std::string path;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find_first_of("/\\", start), text.size());
        const std::string component = text.substr(start, end - start);
        if (component == ".." || component.find(':') != std::string::npos) {
            fail("the file \"" + text +
                 "\" of the description doesn't lie below the root: name it by its path from there");
        }
        if (!component.empty() && component != ".") {
            path += (path.empty() ? "" : "/") + component;
        }
        start = end + 1;
    }
    return path;
}

std::string defaultAliasOf(std::string_view text) {
    std::string alias(text);
    std::erase_if(alias, OUtils::isSeparator);
    return alias;
}
