#include "packager/packager_output.h"

#include <algorithm>

#include "base/visible_text.h"

std::string printable(std::string_view text) {
    std::string line = OUtils::visibleText(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, '?');
    return line;
}
