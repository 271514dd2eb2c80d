#include "wini/ini_reader.h"

#include <string>
#include <unordered_set>

#include "base/text_functions.h"

namespace {

bool isHeader(std::string_view line) {
    return line.starts_with('[') && line.find(']') != std::string_view::npos;
}

std::string_view headerName(std::string_view line) {
    return OUtils::trimWhiteSpace(line.substr(1, line.rfind(']') - 1));
}

}  // namespace

std::string_view iniValueOf(std::string_view text) {
    text = OUtils::trimWhiteSpace(text);
    const bool isQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::vector<IniEntry> iniEntries(const std::vector<std::string_view>& lines, std::string_view section) {
    const std::string_view name = OUtils::trimWhiteSpace(section);
    std::vector<IniEntry> entries;
    std::unordered_set<std::string> seen;
    bool isInside = false;
    for (const std::string_view raw : lines) {
        const std::string_view line = OUtils::trimWhiteSpace(raw);
        if (isHeader(line)) {
            if (isInside) {
                break;
            }
            isInside = OUtils::equalsIgnoreCase(headerName(line), name);
            continue;
        }
        const std::size_t sign = line.find('=');
        if (!isInside || line.starts_with(';') || sign == std::string_view::npos) {
            continue;
        }
        const std::string_view key = OUtils::trimWhiteSpace(line.substr(0, sign));
        if (seen.insert(OUtils::toLowerAscii(key)).second) {
            entries.push_back({key, iniValueOf(line.substr(sign + 1))});
        }
    }
    return entries;
}

std::optional<std::string_view> iniValue(const std::vector<std::string_view>& lines, std::string_view section,
                                         std::string_view key) {
    for (const IniEntry& entry : iniEntries(lines, section)) {
        if (OUtils::equalsIgnoreCase(entry.key, OUtils::trimWhiteSpace(key))) {
            return entry.value;
        }
    }
    return std::nullopt;
}
