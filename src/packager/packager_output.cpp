#include "packager/packager_output.h"

#include <algorithm>

#include "base/visible_text.h"

void printLines(std::string_view text, PackagerOutput& output) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const bool hasReturn = end > 0 && text[end - 1] == '\r';
        output.print(text.substr(0, hasReturn ? end - 1 : end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string printable(std::string_view text) {
    return OUtils::visibleLine(text);
}
