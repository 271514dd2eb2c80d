#pragma once

#include <optional>
#include <string_view>
#include <vector>

// Reading INI files as the profile functions of Windows do: names ignore the case of ASCII letters, blanks
// around names and values and a pair of quotes around a value are cut, comments and lines without `=` don't
// count, and of sections and keys of one name the first counts. The views look into the lines.
struct IniEntry {
    std::string_view key;
    std::string_view value;
};

// What stands behind the `=` without blanks and quotes.
std::string_view iniValueOf(std::string_view text);

// The keys of a section in their order, each name once.
std::vector<IniEntry> iniEntries(const std::vector<std::string_view>& lines, std::string_view section);

// None when the key isn't there.
std::optional<std::string_view> iniValue(const std::vector<std::string_view>& lines, std::string_view section,
                                         std::string_view key);
