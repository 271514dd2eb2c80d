#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "text/tgm_node.h"
#include "text/tgm_parse_options.h"

// Blank, tab, line feed, vertical tab, form feed or carriage return.
constexpr bool isTgmWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// One line of a text, without its line feed, and what kind of line it is. Borrows the text.
class TGMLine {
public:
    // What is read past the end of a text: a blank line.
    TGMLine() = default;
    // `raw` is shorter than 4 GiB.
    TGMLine(std::string_view raw, const TGMParseOptions& options);

    // The whole line; empty for a blank one.
    std::string_view text() const { return {begin_, length_}; }
    // The line without its marker and the white space ahead of it.
    std::string_view payload() const { return text().substr(payload_); }
    // Blank, plain, a list, a heading or a quote.
    TGMNodeType type() const { return type_; }
    // The level of the indentation; 0 for a blank line.
    std::uint32_t indent() const { return indent_; }

private:
    const char* begin_ = "";
    std::uint32_t length_ = 0;
    std::uint32_t payload_ = 0;
    std::uint32_t indent_ = 0;
    TGMNodeType type_ = kTgmBlank;
};

// The level of `whiteSpace`, which stands ahead of a line.
std::uint32_t measureTgmIndent(std::string_view whiteSpace, std::uint32_t tabWidth);

// Splits at line feeds, so a text that ends in one has an empty last line. The lines borrow `text`.
std::vector<TGMLine> splitTgmLines(std::string_view text, const TGMParseOptions& options);
