#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text_functions.h"

// Lines of an outcome that are ordered by what they name, without regard to ASCII case.
class NamedLines {
public:
    void add(std::string_view name, std::string line) {
        lines_.emplace_back(OUtils::toLowerAscii(name), std::move(line));
    }
    // Called once.
    std::vector<std::string> take() {
        std::ranges::sort(lines_);
        std::vector<std::string> result;
        result.reserve(lines_.size());
        for (auto& [name, line] : lines_) {
            result.push_back(std::move(line));
        }
        return result;
    }

private:
    std::vector<std::pair<std::string, std::string>> lines_;  // by the name in lower case
};
