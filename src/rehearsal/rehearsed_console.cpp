#include "rehearsal/rehearsed_console.h"

#include <algorithm>

std::vector<std::string> RehearsedConsole::takeLines() {
    std::vector<std::string> shown;
    const std::string text = takeText();
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        line.remove_prefix(line.rfind('\r') + 1);  // nothing where there is none
        line = line.substr(0, line.find_last_not_of(' ') + 1);
        if (!line.empty()) {
            shown.emplace_back(line);
        }
    }
    return shown;
}
