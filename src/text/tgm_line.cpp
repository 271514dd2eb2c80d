#include "text/tgm_line.h"

#include <algorithm>

namespace {

// How many hashes count. That is one more than headings have levels, so seven hashes make a quote: that is
// part of the dialect, and texts depend on it.
constexpr std::size_t kMaxHashes = 7;
static_assert(kTgmHeading1 + kMaxHashes - 1 == kTgmQuote);

struct Marker {
    TGMNodeType type = kTgmPlain;
    std::size_t payload = 0;  // the offset of the text after the marker
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlankOrTab(char c) {
    return c == ' ' || c == '\t';
}

std::size_t skipWhiteSpace(std::string_view content, std::size_t from) {
    while (from < content.size() && isTgmWhiteSpace(content[from])) {
        ++from;
    }
    return from;
}

bool isLetterMarker(std::string_view content) {
    return content.size() >= 2 && content[0] >= 'a' && content[0] <= 'z' && content[1] == '.' &&
           (content.size() == 2 || isBlankOrTab(content[2]));
}

Marker classifyHeading(std::string_view content) {
    std::size_t hashes = 1;
    while (hashes < kMaxHashes && hashes < content.size() && content[hashes] == '#') {
        ++hashes;
    }
    return {static_cast<TGMNodeType>(kTgmHeading1 + hashes - 1), skipWhiteSpace(content, hashes)};
}

Marker classifyBullet(std::string_view content) {
    if (content.size() > 1 && isBlankOrTab(content[1])) {
        return {kTgmUnorderedList, skipWhiteSpace(content, 1)};
    }
    return {};
}

Marker classifyNumber(std::string_view content) {
    const auto end = std::find_if_not(content.begin(), content.end(), isDigit);
    const auto digits = static_cast<std::size_t>(end - content.begin());
    if (content.size() > digits + 1 && content[digits] == '.' && isBlankOrTab(content[digits + 1])) {
        return {kTgmNumberedList, skipWhiteSpace(content, digits + 1)};
    }
    return {};
}

// `content` begins with something other than white space.
Marker classify(std::string_view content, bool alphaLists) {
    if (alphaLists && isLetterMarker(content)) {
        return {kTgmLetteredList, skipWhiteSpace(content, std::min<std::size_t>(3, content.size()))};
    }
    const char first = content[0];
    if (first == '#') {
        return classifyHeading(content);
    }
    if (first == '*' || first == '+' || first == '-') {
        return classifyBullet(content);
    }
    if (isDigit(first)) {
        return classifyNumber(content);
    }
    if (first == '>') {
        // The character after the mark is dropped, whatever it is.
        return {kTgmQuote, std::min<std::size_t>(2, content.size())};
    }
    return {};
}

}  // namespace

TGMLine::TGMLine(std::string_view raw, const TGMParseOptions& options) {
    const std::size_t leading = skipWhiteSpace(raw, 0);
    if (leading == raw.size()) {
        return;
    }
    const Marker marker = classify(raw.substr(leading), options.alphaLists);
    begin_ = raw.data();
    length_ = static_cast<std::uint32_t>(raw.size());
    payload_ = static_cast<std::uint32_t>(leading + marker.payload);
    indent_ = measureTgmIndent(raw.substr(0, leading), options.tabWidth);
    type_ = marker.type;
}

std::uint32_t measureTgmIndent(std::string_view whiteSpace, std::uint32_t tabWidth) {
    std::uint32_t levels = 0;
    std::uint32_t blanks = 0;
    for (const char c : whiteSpace) {
        if (c == '\t' || (c == ' ' && ++blanks >= tabWidth)) {
            ++levels;
            blanks = 0;
        }
    }
    return levels == 0 && blanks > 0 ? 1 : levels;
}

std::vector<TGMLine> splitTgmLines(std::string_view text, const TGMParseOptions& options) {
    std::vector<TGMLine> lines;
    lines.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', begin)) {
        lines.emplace_back(text.substr(begin, end - begin), options);
        begin = end + 1;
    }
    lines.emplace_back(text.substr(begin), options);
    return lines;
}
