#include "base/wildcard.h"

#include "base/text_functions.h"

bool matchesWildcard(std::string_view pattern, std::string_view name) {
    if (pattern == "*.*") {
        return true;
    }
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = std::string_view::npos;  // the last one so far, and where what it matches ends
    std::size_t starEnd = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starEnd = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || OUtils::equalsIgnoreCase(pattern.substr(p, 1), name.substr(n, 1)))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++starEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}
