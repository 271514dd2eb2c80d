#pragma once

#include <string_view>
#include <vector>

// The parts of an input that holds several texts; a line "%%" is between each two. At least one.
inline std::vector<std::string_view> sectionsOf(std::string_view input) {
    constexpr std::string_view kSeparator = "\n%%\n";
    std::vector<std::string_view> sections;
    for (std::size_t end = input.find(kSeparator); end != std::string_view::npos;
         end = input.find(kSeparator)) {
        sections.push_back(input.substr(0, end));
        input.remove_prefix(end + kSeparator.size());
    }
    sections.push_back(input);
    return sections;
}

// Cuts the first line off the text, its line feed included, and returns it without that.
inline std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    return line;
}
