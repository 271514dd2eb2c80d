#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// How a text is broken into lines. All lengths are in bytes, also for UTF-8.
struct WrapLayout {
    std::uint32_t width = 0;   // of a line, indentation included
    std::uint32_t indent = 0;  // fill characters before each line
    char fillChar = ' ';
    bool indentFirstLine = true;
    bool justify = false;  // pads all lines but the last with blanks between their words
};

// Appends the words of `text` to `out` in lines that end with a line feed. Words are separated by blanks. A
// line ends before the word that, counting a blank after each word, would make it longer than `width`; a word
// that is too long gets a line of its own. The padding is divided by the number of words, though there is one
// gap less: justified lines are meant to stay slightly short of full. A text without words gives an empty
// line. The time is linear in the text and in what is written.
void appendWrapped(std::string& out, std::string_view text, const WrapLayout& layout);
