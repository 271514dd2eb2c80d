#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Wraps the plain text of a rich text to a width and justifies its lines. One object serves one text.
class RichTextWrap {
public:
    // `width` is above 0, in characters of one byte; a tab counts as 8.
    explicit RichTextWrap(int width);

    // Returns each line of `text` (lines end with a line feed; the last one may lack it) as lines of at most
    // the width, each with a line feed; a longer word is alone on its line. The time is linear in the length
    // of the text, the memory besides the result in the width.
    std::string wrap(std::string_view text);

private:
    // A run of blanks and tabs, or a run of anything else.
    struct Token {
        std::string_view text;
        std::size_t width = 0;

        bool isSingleBlank() const { return text.size() == 1 && text.front() == ' '; }
    };

    static Token nextToken(std::string_view& rest);

    void wrapLine(std::string_view line);
    void fill(std::string_view& rest);
    void writeLast();
    void writeFull();
    void write(const Token& first, const Token& last);
    void writeJustified(std::span<const Token> tokens);
    std::span<const Token> writeStretched(std::span<const Token> tokens, std::uint64_t extra,
                                          std::uint64_t gaps);

    const std::size_t width_;
    std::string output_;
    // The line that is being filled, and the token that no longer fitted; its text is empty when there is
    // none.
    std::vector<Token> tokens_;
    Token overflow_;
};
