#pragma once

#include <memory>
#include <string>
#include <vector>

#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

// A second implementation of the rules of the dialect, as simple as possible: it copies texts, joins the
// lines of quotes and parses them again, and searches for the end of a block each time. Slow, without limits,
// and for small texts only.
class TGMOracle {
public:
    explicit TGMOracle(const TGMParseOptions& options) : options_(options) {}

    struct Node {
        int type = kTgmDocument;
        std::string text;
        std::vector<std::unique_ptr<Node>> children;
    };

    // The errors of the text.
    int parse(std::string text);

    // In the form of the dump; empty without a root.
    std::string tree() const;
    // The debug log.
    const std::string& log() const { return log_; }

private:
    struct Line {
        std::string text;
        std::string payload;
        int type = kTgmBlank;
        int indent = 0;
    };
    struct Piece {
        std::string text;
        int type;
    };

    static bool isSpace(char c) { return std::string(" \t\n\v\f\r").find(c) != std::string::npos; }
    static bool isList(int type) { return type >= 7 && type <= 9; }
    static std::string skipped(const std::string& text, std::size_t from);
    static std::string dump(const Node& node, int depth);

    Line makeLine(const std::string& raw) const;
    void classify(Line& line, const std::string& content) const;
    int indentOf(const std::string& raw) const;
    int blockEnd(int start) const;
    Line lineAt(int index) const {
        return index < count() ? lines_[static_cast<std::size_t>(index)] : Line();
    }
    int count() const { return static_cast<int>(lines_.size()); }
    bool stops() const { return errors_ != 0 && !options_.keepGoing; }

    void buildBlocks(Node& parent, int first, int last);
    void buildItems(Node& list, int first, int last);
    std::unique_ptr<Node> buildPlain(int first, int end) const;
    std::unique_ptr<Node> buildQuote(int first, int last);

    void finalize(Node& node);
    static std::string unescape(const std::string& text);
    static std::vector<Piece> scan(const std::string& text);
    static int tryDelimiter(const std::string& text, std::size_t p, std::size_t size, std::string& plain,
                            std::vector<Piece>& pieces);

    TGMParseOptions options_;
    std::vector<Line> lines_;
    std::unique_ptr<Node> root_;
    std::string log_;
    int errors_ = 0;
};

inline std::string TGMOracle::skipped(const std::string& text, std::size_t from) {
    while (from < text.size() && isSpace(text[from])) {
        ++from;
    }
    return from < text.size() ? text.substr(from) : "";
}

inline int TGMOracle::indentOf(const std::string& raw) const {
    int levels = 0;
    std::uint32_t blanks = 0;
    for (std::size_t i = 0; isSpace(raw[i]); ++i) {
        if (raw[i] == '\t') {
            ++levels;
            blanks = 0;
        }
        if (raw[i] == ' ') {
            ++blanks;
            if (blanks == options_.tabWidth) {
                ++levels;
                blanks = 0;
            }
        }
    }
    return levels == 0 && blanks >= 1 ? 1 : levels;
}

inline void TGMOracle::classify(Line& line, const std::string& content) const {
    const auto at = [&](std::size_t i) { return i < content.size() ? content[i] : '\0'; };
    const auto isGap = [](char c) { return c == ' ' || c == '\t'; };
    std::size_t digits = 0;
    while (at(digits) >= '0' && at(digits) <= '9') {
        ++digits;
    }
    line.type = kTgmPlain;
    line.payload = content;
    if (options_.alphaLists && at(0) >= 'a' && at(0) <= 'z' && at(1) == '.' &&
        (at(2) == '\0' || isGap(at(2)))) {
        line.type = kTgmLetteredList;
        line.payload = skipped(content, 3);
    } else if (at(0) == '#') {
        std::size_t extra = 0;
        while (extra < 6 && at(1 + extra) == '#') {
            ++extra;
        }
        line.type = kTgmHeading1 + static_cast<int>(extra);
        line.payload = skipped(content, 1 + extra);
    } else if (std::string("*+-").find(at(0)) != std::string::npos) {
        if (isGap(at(1))) {
            line.type = kTgmUnorderedList;
            line.payload = skipped(content, 1);
        }
    } else if (digits > 0 && at(digits) == '.' && isGap(at(digits + 1))) {
        line.type = kTgmNumberedList;
        line.payload = skipped(content, digits + 1);
    } else if (at(0) == '>') {
        line.type = kTgmQuote;
        line.payload = content.size() > 2 ? content.substr(2) : "";
    }
}

inline TGMOracle::Line TGMOracle::makeLine(const std::string& raw) const {
    Line line;
    const std::string content = skipped(raw, 0);
    if (!content.empty()) {
        line.text = raw;
        classify(line, content);
        line.indent = indentOf(raw);
    }
    return line;
}

inline int TGMOracle::blockEnd(int start) const {
    enum { kSame, kBlank, kDeeper, kLazy, kEnd } state = kSame;
    const int bt = lineAt(start).type;
    const int bi = lineAt(start).indent;
    if (bt == kTgmBlank || (bt >= kTgmHeading1 && bt <= kTgmHeading6)) {
        return start;
    }
    if (start == count() - 1) {
        return start + 1;
    }
    bool seenBlank = false;
    int index = start + 1;
    for (;; ++index) {
        const int t = lineAt(index).type;
        const int i = lineAt(index).indent;
        if (state == kSame) {
            if (t == kTgmBlank) {
                state = kBlank;
            } else if (i < bi) {
                state = t == kTgmPlain ? kLazy : kEnd;
            } else if (t == kTgmPlain) {
                state = kLazy;
            } else if (bt == kTgmPlain && (t == kTgmQuote || (isList(t) && !options_.lazyLists))) {
                state = kEnd;
            } else if (i > bi) {
                state = kDeeper;
            }
        } else if (state == kBlank) {
            seenBlank = true;
            if (t == kTgmBlank) {
                state = kBlank;
            } else if (i < bi) {
                state = kEnd;
            } else if (i == bi) {
                state = t == bt && bt != kTgmPlain ? kSame : kEnd;
            } else {
                state = kDeeper;
            }
        } else if (state == kDeeper) {
            if (t == kTgmBlank) {
                state = kBlank;
            } else if (i < bi) {
                state = t == kTgmPlain ? kLazy : kEnd;
            }
        } else if (state == kLazy) {
            const bool isMixed = ((bt == 8 || bt == 9) && t == 7) || ((t == 8 || t == 9) && bt == 7);
            if (t == kTgmPlain) {
                state = kLazy;
            } else if (t == kTgmBlank) {
                state = kBlank;
            } else if (bt == kTgmPlain && t == kTgmQuote) {
                state = kEnd;
            } else if (i < bi) {
                state = kEnd;
            } else if (i > bi) {
                state = kDeeper;
            } else if (t == bt) {
                state = kSame;
            } else if (!seenBlank && isMixed) {
                state = kSame;
            } else if (bt == kTgmPlain && options_.lazyLists && !seenBlank && isList(t)) {
                state = kLazy;
            } else {
                state = kEnd;
            }
        }
        if (index == count() - 1) {
            return state == kSame || state == kDeeper || state == kLazy ? index : index - 1;
        }
        if (state == kEnd) {
            return index - 1;
        }
    }
}

inline std::unique_ptr<TGMOracle::Node> TGMOracle::buildPlain(int first, int end) const {
    auto node = std::make_unique<Node>();
    node->type = kTgmPlain;
    node->text = lineAt(first).payload;
    for (int i = first + 1; i <= end && i < count(); ++i) {
        const Line line = lineAt(i);
        if (line.type == kTgmBlank) {
            node->type = kTgmParagraph;
        }
        if (!line.payload.empty()) {
            node->text += options_.joinChar + (line.type == kTgmPlain ? line.payload : line.text);
        }
    }
    return node;
}

inline void TGMOracle::buildBlocks(Node& parent, int first, int last) {
    if (last < first) {
        errors_ |= kTgmEmptyText;
        return;
    }
    for (int i = first; i <= last && i < count();) {
        const Line line = lineAt(i);
        if (line.type == kTgmBlank) {
            ++i;
            continue;
        }
        const int end = blockEnd(i);
        std::unique_ptr<Node> node;
        if (line.type == kTgmPlain) {
            node = buildPlain(i, end);
        } else if (line.type == kTgmQuote) {
            node = buildQuote(i, end);
        } else {
            node = std::make_unique<Node>();
            node->type = line.type;
            if (isList(line.type)) {
                buildItems(*node, i, end < count() ? end : count() - 1);
            } else {
                node->text = line.payload;
            }
        }
        if (node != nullptr) {
            parent.children.push_back(std::move(node));
        }
        if (stops()) {
            return;
        }
        i = end + 1;
    }
}

inline void TGMOracle::buildItems(Node& list, int first, int last) {
    const int bi = lineAt(first).indent;
    bool sawBlank = false;
    int blanks = 0;
    std::vector<int> starts;
    for (int i = first; i <= last; ++i) {
        const Line line = lineAt(i);
        if (line.indent == bi && (line.type == list.type || (!sawBlank && isList(line.type)))) {
            starts.push_back(i);
        }
        if (line.type == kTgmBlank) {
            sawBlank = true;
            ++blanks;
        }
    }
    const bool isLoose = blanks > 0 && blanks >= static_cast<int>(starts.size()) - 1;
    for (std::size_t k = 0; k < starts.size(); ++k) {
        const int end = k + 1 < starts.size() ? starts[k + 1] - 1 : last;
        auto item = std::make_unique<Node>();
        item->type = kTgmListItem;
        auto text = std::make_unique<Node>();
        text->type = isLoose ? kTgmParagraph : kTgmPlain;
        text->text = lineAt(starts[k]).payload;
        int next = starts[k] + 1;
        for (; next <= end && lineAt(next).type == kTgmPlain; ++next) {
            text->text += options_.joinChar + lineAt(next).payload;
        }
        item->children.push_back(std::move(text));
        if (next <= end) {
            buildBlocks(*item, next, end);
        }
        if (stops()) {
            return;
        }
        list.children.push_back(std::move(item));
    }
}

inline std::unique_ptr<TGMOracle::Node> TGMOracle::buildQuote(int first, int last) {
    std::string text;
    for (int i = first; i < last; ++i) {
        text += lineAt(i).payload + "\n";
    }
    TGMParseOptions options = options_;
    options.lazyLists = false;
    options.tabWidth = 2;
    TGMOracle quote(options);
    const int errors = quote.parse(text);
    log_ += quote.log_;
    errors_ |= errors;
    if ((errors != 0 && !options_.keepGoing) || quote.root_ == nullptr) {
        return nullptr;
    }
    quote.root_->type = kTgmQuote;
    return std::move(quote.root_);
}

inline int TGMOracle::tryDelimiter(const std::string& text, std::size_t p, std::size_t size,
                                   std::string& plain, std::vector<Piece>& pieces) {
    const char c = text[p];
    const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    if ((c != '*' && c != '_') || at(p + size - 1) != c || at(p + size) == '\0' || at(p + size) == c) {
        return 0;
    }
    std::string inner;
    std::size_t j = p + size;
    while (j < text.size()) {
        if (text[j] == '\\' && j + 1 < text.size()) {
            inner += text[j++];
        }
        inner += text[j];
        if (at(j + 1) == c && at(j + size) != '\0' && at(j + size + 1) != c) {
            if (!plain.empty()) {
                pieces.push_back({plain, kTgmPlain});
                plain.clear();
            }
            pieces.push_back({inner, size == 1 ? kTgmItalic : kTgmBold});
            return static_cast<int>(inner.size() + 2 * size);
        }
        ++j;
    }
    const std::string literal = std::string(size, c) + inner;
    if (!plain.empty() || pieces.empty()) {
        pieces.push_back({plain + literal, kTgmPlain});
    } else {
        pieces.back().text += literal;
    }
    plain.clear();
    return static_cast<int>(literal.size());
}

inline std::vector<TGMOracle::Piece> TGMOracle::scan(const std::string& text) {
    std::vector<Piece> pieces;
    std::string plain;
    for (std::size_t p = 0; p < text.size();) {
        if (text[p] == '\\' && p + 1 < text.size()) {
            plain += text.substr(p, 2);
            p += 2;
            continue;
        }
        int consumed = tryDelimiter(text, p, 1, plain, pieces);
        if (consumed == 0) {
            consumed = tryDelimiter(text, p, 2, plain, pieces);
        }
        p += static_cast<std::size_t>(consumed);
        if (p < text.size()) {
            plain += text[p++];
        }
    }
    if (!plain.empty()) {
        pieces.push_back({plain, kTgmPlain});
    }
    return pieces;
}

inline std::string TGMOracle::unescape(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() &&
            std::string("\\*_#+-.").find(text[i + 1]) != std::string::npos) {
            ++i;
        }
        out += text[i];
    }
    return out;
}

inline void TGMOracle::finalize(Node& node) {
    int stars = 0;
    int underscores = 0;
    for (std::size_t i = 0; i < node.text.size(); ++i) {
        stars += node.text[i] == '*' ? 1 : 0;
        underscores += node.text[i] == '_' ? 1 : 0;
        i += node.text[i] == '\\' ? 1 : 0;
    }
    if (stars < 2 && underscores < 2) {
        node.text = unescape(node.text);
    } else {
        std::vector<Piece> pieces = scan(node.text);
        if (pieces.size() > 1 ||
            (pieces.size() == 1 && pieces[0].text != node.text &&
             node.text.find(pieces[0].text) != std::string::npos && node.type != kTgmPlain)) {
            node.text.clear();
            node.type = pieces.size() > 1 && node.type == kTgmPlain ? kTgmComposite : node.type;
            for (const Piece& piece : pieces) {
                node.children.push_back(std::make_unique<Node>());
                node.children.back()->type = piece.type;
                node.children.back()->text = piece.text;
            }
        } else if (pieces.size() == 1 && pieces[0].text != node.text) {
            node.type = pieces[0].type;
        } else {
            errors_ |= kTgmInvalidEmphasis;
        }
    }
    for (const auto& child : node.children) {
        finalize(*child);
    }
}

inline std::string TGMOracle::dump(const Node& node, int depth) {
    static const char* const kNames[] = {"NONE", "BLNK", "DOC ", "PLN ", "PAR ", "BOLD", "ITAL",
                                         "UNLI", "OLNU", "OLAL", " LI ", " H1 ", " H2 ", " H3 ",
                                         " H4 ", " H5 ", " H6 ", "BLKQ", "CMPS"};
    std::string out;
    if (depth < 0) {
        return kNames[node.type];
    }
    for (int i = 0; i < depth; ++i) {
        out += "|     ";
    }
    out += "+[" + std::string(kNames[node.type]) + "]" + (node.text.empty() ? "" : " : " + node.text) + "\n";
    for (const auto& child : node.children) {
        out += dump(*child, depth + 1);
    }
    return out;
}

inline std::string TGMOracle::tree() const {
    return root_ == nullptr ? "" : dump(*root_, 0);
}

inline int TGMOracle::parse(std::string text) {
    if (text.empty()) {
        return errors_ = kTgmEmptyText;
    }
    std::string line;
    for (const char c : text + "\n") {
        if (c == '\n') {
            lines_.push_back(makeLine(line));
            line.clear();
        } else if (c != '\r') {
            line += c;
        }
    }
    const auto padded = [](int number) {
        const std::string digits = std::to_string(number);
        return (digits.size() < 4 ? std::string(4 - digits.size(), ' ') : "") + digits;
    };
    for (int i = 0; i < count(); ++i) {
        Node kind;
        kind.type = lineAt(i).type;
        log_ += padded(i) + " : [" + dump(kind, -1) + "] (" + padded(blockEnd(i)) + ")" +
                (lineAt(i).payload.empty() ? "" : " " + lineAt(i).payload) + "\n";
    }
    root_ = std::make_unique<Node>();
    buildBlocks(*root_, 0, count());
    log_ += "\n\n============ Topology Tree: ============\n\n" + tree() + "\n\n";
    if (!stops()) {
        finalize(*root_);
    }
    log_ += "\n\n============ Finalized Tree: ============\n\n" + tree() + "\n\n";
    return errors_;
}
