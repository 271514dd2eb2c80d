#include "rehearsal/rehearsed_console.h"

#include <algorithm>

std::vector<std::string> RehearsedConsole::takeLines() {
    std::vector<std::string> shown;
    std::string_view rest = text_;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const bool wasReturned = line.find('\r') != std::string_view::npos;
        line.remove_prefix(wasReturned ? line.rfind('\r') + 1 : 0);
        line = line.substr(0, line.find_last_not_of(' ') + 1);
        if (!line.empty() || !wasReturned) {
            shown.emplace_back(line);
        }
    }
    text_.clear();
    return shown;
}
