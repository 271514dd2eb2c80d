#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

// Blank, tab, line feed, vertical tab, form feed or carriage return.
constexpr bool isTgmWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// One line of a text, without its line feed, and its kind. Borrows the text.
class TGMLine {
public:
    // A blank line, which is also what is read past the end of a text.
    TGMLine() = default;
    // `raw` is shorter than 4 GiB.
    TGMLine(std::string_view raw, const TGMParseOptions& options);

    // The whole line; empty for a blank one.
    std::string_view text() const { return {begin_, length_}; }
    // The line without its marker and the white space before it.
    std::string_view payload() const { return text().substr(payload_); }
    // Blank, plain, a list type, a heading or a quote.
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

// The level of indentation that `whiteSpace` at the start of a line makes.
std::uint32_t measureTgmIndent(std::string_view whiteSpace, std::uint32_t tabWidth);

// Splits at line feeds, so a text that ends with one has an empty last line. The lines borrow `text`.
std::vector<TGMLine> splitTgmLines(std::string_view text, const TGMParseOptions& options);
