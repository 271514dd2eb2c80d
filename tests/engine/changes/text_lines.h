#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/text_mode.h"

// A text file of this system with these lines.
inline std::string textOf(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + OUtils::textLineEnd();
    }
    return text;
}
