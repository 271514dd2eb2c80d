#include "text/rich_text_wrap.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace {

constexpr std::size_t kTabWidth = 8;

std::size_t widthOf(std::string_view blanks) {
    const auto tabs = static_cast<std::size_t>(std::count(blanks.begin(), blanks.end(), '\t'));
    return blanks.size() + tabs * (kTabWidth - 1);
}

constexpr auto kIsBlank = [](char character) { return character == ' ' || character == '\t'; };

}  // namespace

RichTextWrap::RichTextWrap(int width) : width_(static_cast<std::size_t>(std::max(width, 1))) {}

std::string RichTextWrap::wrap(std::string_view text) {
    output_.reserve(text.size() + text.size() / 2);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        wrapLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return std::move(output_);
}

RichTextWrap::Token RichTextWrap::nextToken(std::string_view& rest) {
    const bool blank = kIsBlank(rest.front());
    const auto stop = blank ? std::find_if_not(rest.begin(), rest.end(), kIsBlank)
                            : std::find_if(rest.begin(), rest.end(), kIsBlank);
    const std::string_view text = rest.substr(0, static_cast<std::size_t>(stop - rest.begin()));
    rest.remove_prefix(text.size());
    return {text, blank ? widthOf(text) : text.size()};
}

void RichTextWrap::wrapLine(std::string_view line) {
    if (line.empty()) {
        output_ += '\n';
    }
    while (!line.empty() || !overflow_.text.empty()) {
        fill(line);
        if (overflow_.text.empty()) {
            writeLast();
        } else {
            writeFull();
        }
    }
}

// The token that doesn't fit is kept for the next line, so that no token is measured twice.
void RichTextWrap::fill(std::string_view& rest) {
    tokens_.clear();
    std::size_t sum = 0;
    Token token = std::exchange(overflow_, {});
    while (!token.text.empty() || !rest.empty()) {
        if (token.text.empty()) {
            token = nextToken(rest);
        }
        if (sum + token.width > width_) {
            overflow_ = token;
            return;
        }
        sum += token.width;
        tokens_.push_back(std::exchange(token, {}));
    }
}

// Tokens are adjacent in the text, so several can be written at once.
void RichTextWrap::write(const Token& first, const Token& last) {
    output_.append(first.text.data(), last.text.data() + last.text.size());
}

void RichTextWrap::writeLast() {
    const std::size_t first = tokens_.front().isSingleBlank() ? 1 : 0;
    if (first < tokens_.size()) {
        write(tokens_[first], tokens_.back());
    }
    output_ += '\n';
}

void RichTextWrap::writeFull() {
    if (tokens_.empty()) {
        output_ += std::exchange(overflow_, {}).text;
        output_ += '\n';
        return;
    }
    const std::size_t first = tokens_.front().isSingleBlank() ? 1 : 0;
    const bool dropLast = tokens_.size() > first && tokens_.back().isSingleBlank();
    const std::span<const Token> all = tokens_;
    writeJustified(all.subspan(first, all.size() - first - (dropLast ? 1 : 0)));
}

void RichTextWrap::writeJustified(std::span<const Token> tokens) {
    std::size_t left = width_;
    std::uint64_t gaps = 0;
    for (const Token& token : tokens) {
        left -= token.width;
        gaps += token.isSingleBlank() ? 1 : 0;
    }
    if (gaps > 0) {
        tokens = writeStretched(tokens, left, gaps);
    }
    if (!tokens.empty()) {
        write(tokens.front(), tokens.back());
    }
    output_ += '\n';
}

// Writes the tokens up to the last gap that needs blanks, and returns the rest.
std::span<const RichTextWrap::Token> RichTextWrap::writeStretched(std::span<const Token> tokens,
                                                                  std::uint64_t extra, std::uint64_t gaps) {
    std::uint64_t due = 0;
    std::uint64_t added = 0;
    std::size_t written = 0;
    for (std::size_t index = 0; added < extra; ++index) {
        if (!tokens[index].isSingleBlank()) {
            continue;
        }
        due += extra;
        const std::uint64_t blanks = due / gaps - added;
        if (blanks > 0) {
            write(tokens[written], tokens[index]);
            output_.append(static_cast<std::size_t>(blanks), ' ');
            added += blanks;
            written = index + 1;
        }
    }
    return tokens.subspan(written);
}
