#pragma once

#include <cstdint>

// How a text is written for a console or a plain text box.
struct PlainTextSettings {
    bool ansiBold = false;  // headings and emphasis as bold of a terminal
    bool indentLists = true;
    bool wrap = false;           // to `width`
    bool collectInline = false;  // a paragraph is wrapped as a whole, with its emphasis
    bool justify = true;         // wrapped lines are padded; of no effect without `wrap`
    char fillChar = '\t';        // of indentations
    char bulletChar = '-';
    std::uint32_t levelIndent = 1;  // fill characters for each level of a list below the first
    std::uint32_t width = 0;        // in bytes
};
