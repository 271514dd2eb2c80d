#include "text/tgm_span_scan.h"

#include <array>

namespace {

constexpr std::array<bool, 256> makeMarkTable() {
    std::array<bool, 256> isMark{};
    for (const char c : {'\\', '*', '_'}) {
        isMark[static_cast<unsigned char>(c)] = true;
    }
    return isMark;
}

constexpr std::array<bool, 256> kIsMark = makeMarkTable();

enum class Fit : unsigned char { kNone, kUnclosed, kClosed };

struct Span {
    Fit fit = Fit::kNone;
    std::string_view inner;
};

bool isDelimiter(char c) {
    return c == '*' || c == '_';
}

// Whether a span of `count` delimiters `c` closes after the character at `last`. Of a closing pair only the
// first is compared, so that `**ab*c` is bold: that is part of the dialect.
bool closesAfter(std::string_view text, std::size_t last, std::size_t count, char c) {
    if (last + count >= text.size() || text[last + 1] != c) {
        return false;
    }
    return last + count + 1 == text.size() || text[last + count + 1] != c;
}

bool opensAt(std::string_view text, std::size_t at, std::size_t count) {
    if (at + count >= text.size() || !isDelimiter(text[at])) {
        return false;
    }
    return (count == 1 || text[at + 1] == text[at]) && text[at + count] != text[at];
}

bool isEscape(std::string_view text, std::size_t at) {
    return text[at] == '\\' && at + 1 < text.size();
}

Span trySpan(std::string_view text, std::size_t at, std::size_t count) {
    if (!opensAt(text, at, count)) {
        return {};
    }
    const std::size_t begin = at + count;
    for (std::size_t i = begin; i < text.size(); ++i) {
        // No span closes and nothing is escaped before the next mark.
        i = isEscape(text, i) ? i + 1 : findTgmMark(text, i + 1) - 1;
        if (closesAfter(text, i, count, text[at])) {
            return {Fit::kClosed, text.substr(begin, i + 1 - begin)};
        }
    }
    return {Fit::kUnclosed, {}};
}

// Collects the pieces; the text between the spans is plain.
class PieceList {
public:
    PieceList(std::string_view text, std::vector<TGMPiece>& pieces) : text_(text), pieces_(pieces) {}

    void addPlainUpTo(std::size_t end) {
        if (plainBegin_ < end) {
            pieces_.push_back({text_.substr(plainBegin_, end - plainBegin_), kTgmPlain});
        }
    }

    // Returns the position after the span.
    std::size_t addSpan(std::size_t at, std::string_view inner, std::size_t count) {
        addPlainUpTo(at);
        pieces_.push_back({inner, count == 1 ? kTgmItalic : kTgmBold});
        plainBegin_ = at + inner.size() + 2 * count;
        return plainBegin_;
    }

private:
    std::string_view text_;
    std::vector<TGMPiece>& pieces_;
    std::size_t plainBegin_ = 0;
};

}  // namespace

std::size_t findTgmMark(std::string_view text, std::size_t from) {
    while (from < text.size() && !kIsMark[static_cast<unsigned char>(text[from])]) {
        ++from;
    }
    return from;
}

void scanTgmSpans(std::string_view text, std::vector<TGMPiece>& pieces) {
    pieces.clear();
    PieceList list(text, pieces);
    for (std::size_t at = findTgmMark(text, 0); at < text.size(); at = findTgmMark(text, at + 1)) {
        if (isEscape(text, at)) {
            ++at;
            continue;
        }
        std::size_t count = 1;
        Span span = trySpan(text, at, count);
        if (span.fit == Fit::kNone) {
            count = 2;
            span = trySpan(text, at, count);
        }
        if (span.fit == Fit::kUnclosed) {
            break;  // its delimiters and everything after them are plain
        }
        if (span.fit == Fit::kClosed) {
            // The character after a span is plain whatever it is, a delimiter too, so the loop skips it: that
            // is part of the dialect.
            at = list.addSpan(at, span.inner, count);
        }
    }
    list.addPlainUpTo(text.size());
}
