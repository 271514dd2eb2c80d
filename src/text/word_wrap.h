#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// How a text is broken into lines. All lengths are in bytes, also for UTF-8.
struct WrapLayout {
    std::uint32_t width = 0;   // of a line, indentation included
    std::uint32_t indent = 0;  // fill characters ahead of each line
    char fillChar = ' ';
    bool indentFirstLine = true;
    bool justify = false;  // lines but the last are padded with blanks between their words
};

// Appends the words of `text` to `out` in lines, each ending with a line feed; words are what stands between
// blanks. A line closes ahead of the word with which, a blank behind each word, it would be longer than
// `width`; a word that is longer still has a line of its own. The padding counts a gap for each word of a
// line, though there is one less, so that justified lines stay slightly short of full. A text without words
// gives an empty line. The time is linear in the text and in what is written.
void appendWrapped(std::string& out, std::string_view text, const WrapLayout& layout);
