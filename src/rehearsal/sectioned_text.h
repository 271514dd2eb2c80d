#pragma once

#include <string>
#include <string_view>
#include <vector>

struct NumberedLine {
    int number = 0;    // from 1
    std::string text;  // without outer blanks
};

struct TextSection {
    std::string name;
    int line = 0;
    std::vector<NumberedLine> lines;    // neither empty nor comments
    std::vector<std::string> comments;  // with their marks
};

// A text in sections: the common form of machine files and expectations (machine_format.md).
struct SectionedText {
    std::vector<std::string> comments;  // before the first section
    std::vector<TextSection> sections;  // in their order; each name once
};

// Throws InstallerError with the number of the line that is wrong.
SectionedText readSections(std::string_view text);
