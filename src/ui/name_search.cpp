#include "ui/name_search.h"

bool NameSearch::isAnyIn(std::string_view text) const {
    for (const auto& [length, names] : namesByLength_) {
        for (std::size_t start = 0; start + length <= text.size(); ++start) {
            if (names.contains(text.substr(start, length))) {
                return true;
            }
        }
    }
    return false;
}
