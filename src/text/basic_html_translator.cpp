#include "text/basic_html_translator.h"

#include <array>

#include "text/output_capacity.h"

namespace {

constexpr std::string_view kUntitled = "[Untitled]";
constexpr std::string_view kEscaped = "&\"<>";

using EscapeTable = std::array<std::string_view, 256>;

// Made by the first translator and shared by all.
const EscapeTable& escapeTable() {
    static const EscapeTable table = [] {
        EscapeTable made{};
        made['&'] = "&amp;";
        made['"'] = "&quot;";
        made['<'] = "&lt;";
        made['>'] = "&gt;";
        return made;
    }();
    return table;
}

}  // namespace

struct BasicHTMLTranslator::Row {
    std::string_view text;
    std::size_t level;
};

BasicHTMLTranslator::BasicHTMLTranslator(const HTMLSettings& settings) : settings_(settings) {
    escapeTable();
    out_.reserve(kFirstOutputCapacity);
}

void BasicHTMLTranslator::beginDocument() {
    depth_ = 0;
    out_.clear();
    if (!settings_.emitHead) {
        return;
    }
    if (settings_.customHead.empty()) {
        appendHead();
    } else {
        out_ += settings_.customHead;
    }
}

void BasicHTMLTranslator::appendHead() {
    const std::string title =
        "<title>" + (settings_.title.empty() ? std::string(kUntitled) : settings_.title) + "</title>";
    const Row rows[] = {
        {"<!DOCTYPE html>", 0},
        {"<html>", 0},
        {"<head>", 1},
        {title, 2},
        {"<meta http-equiv=\"content-type\" content=\"text/html; charset=UTF-8\">", 2},
        {"</head>", 1},
        {"<body>", 1},
    };
    for (const Row& row : rows) {
        appendRow(row);
    }
}

void BasicHTMLTranslator::endDocument() {
    if (!settings_.emitFoot) {
        return;
    }
    if (!settings_.customFoot.empty()) {
        out_ += settings_.customFoot;
        return;
    }
    appendRow({"</body>", 1});
    appendRow({"</html>", 0});
}

void BasicHTMLTranslator::appendRow(const Row& row) {
    out_.append(settings_.indentWidth * row.level, settings_.indentChar);
    out_ += row.text;
    newline();
}

void BasicHTMLTranslator::beginHeader(int level) {
    flush();
    indentBlock();
    out_ += "<h";
    out_ += static_cast<char>('0' + level % 10);
    out_ += '>';
}

void BasicHTMLTranslator::endHeader(int level) {
    out_ += "</h";
    out_ += static_cast<char>('0' + level % 10);
    out_ += '>';
    newline();
}

void BasicHTMLTranslator::beginList(TGMListKind kind) {
    flush();
    indentBlock();
    switch (kind) {
        case kTgmBulletList:
            out_ += "<ul>";
            break;
        case kTgmNumberList:
            out_ += "<ol>";
            break;
        case kTgmLetterList:
            out_ += "<ol type=\"a\">";
            break;
    }
    newline();
    ++depth_;
}

void BasicHTMLTranslator::endList(TGMListKind kind) {
    --depth_;
    indentBlock();
    out_ += kind == kTgmBulletList ? "</ul>" : "</ol>";
    newline();
}

void BasicHTMLTranslator::beginItem() {
    indentBlock();
    out_ += "<li>";
    ++depth_;
    pendingNewline_ = true;
}

// An item that holds nothing but a text closes on the line on which it began.
void BasicHTMLTranslator::endItem() {
    --depth_;
    if (!pendingNewline_) {
        indentBlock();
    }
    pendingNewline_ = false;
    out_ += "</li>";
    newline();
}

void BasicHTMLTranslator::beginBold() {
    out_ += "<strong>";
}

void BasicHTMLTranslator::endBold() {
    out_ += "</strong>";
}

void BasicHTMLTranslator::beginItalic() {
    out_ += "<em>";
}

void BasicHTMLTranslator::endItalic() {
    out_ += "</em>";
}

void BasicHTMLTranslator::beginQuote() {
    flush();
    indentBlock();
    out_ += "<blockquote>";
    newline();
    ++depth_;
}

void BasicHTMLTranslator::endQuote() {
    --depth_;
    indentBlock();
    out_ += "</blockquote>";
    newline();
}

void BasicHTMLTranslator::beginParagraph() {
    flush();
    indentBlock();
    out_ += "<p>";
}

void BasicHTMLTranslator::endParagraph() {
    out_ += "</p>";
    newline();
}

void BasicHTMLTranslator::text(std::string_view bytes) {
    const EscapeTable& table = escapeTable();
    for (std::size_t plain = bytes.find_first_of(kEscaped); plain != std::string_view::npos;
         plain = bytes.find_first_of(kEscaped)) {
        out_ += bytes.substr(0, plain);
        out_ += table[static_cast<unsigned char>(bytes[plain])];
        bytes.remove_prefix(plain + 1);
    }
    out_ += bytes;
}

void BasicHTMLTranslator::reserve(std::size_t size) {
    reserveOutput(out_, size, 2);
}

std::string BasicHTMLTranslator::getResult() const {
    return out_;
}

std::string_view BasicHTMLTranslator::getText() const {
    return out_;
}

void BasicHTMLTranslator::newline() {
    if (settings_.newlines) {
        out_ += settings_.newlineChar;
    }
}

void BasicHTMLTranslator::flush() {
    if (pendingNewline_) {
        newline();
        pendingNewline_ = false;
    }
}

void BasicHTMLTranslator::indentBlock() {
    const std::int32_t level = settings_.baseLevel + depth_;
    if (settings_.indent && level > 0) {
        out_.append(settings_.indentWidth * static_cast<std::size_t>(level), settings_.indentChar);
    }
}
