#include "text/tgm_block_builder.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "text/tgm_block_end.h"

namespace {

bool isOrdered(TGMNodeType type) {
    return type == kTgmNumberedList || type == kTgmLetteredList;
}

// The number that the line of an ordered list is written with, as far as 32 bits hold it; an `a` is 1.
std::uint32_t writtenNumber(const TGMLine& line) {
    std::string_view text = line.text();
    text.remove_prefix(text.find_first_not_of(" \t\v\f"));
    if (line.type() == kTgmLetteredList) {
        return static_cast<std::uint32_t>(text.front() - 'a') + 1;
    }
    std::uint32_t number = UINT32_MAX;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

}  // namespace

TGMBlockBuilder::TGMBlockBuilder(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                                 const TGMParseScope& scope, TGMParseResult& result, TGMLineParser parseQuote)
    : lines_(lines), options_(options), scope_(scope), result_(result), parseQuote_(parseQuote) {}

void TGMBlockBuilder::build(TGMNode& root) {
    buildBlocks(root, {0, lines_.size()}, scope_.depth);
}

// A block may reach beyond the range, which then ends with it. The lines that it takes there appear a second
// time in the block around the range: that is part of the dialect.
void TGMBlockBuilder::buildBlocks(TGMNode& parent, Range range, std::uint32_t depth) {
    std::size_t line = range.first;
    while (line <= range.last && line < lines_.size()) {
        if (!spend(kTgmLineVisitCost, line)) {
            return;
        }
        if (lines_[line].type() == kTgmBlank) {
            ++line;
            continue;
        }
        line = buildBlock(parent, line, depth) + 1;
        if (mustStop()) {
            return;
        }
    }
}

// Returns the last line of the block.
std::size_t TGMBlockBuilder::buildBlock(TGMNode& parent, std::size_t first, std::uint32_t depth) {
    const TGMNodeType type = lines_[first].type();
    const std::size_t end = findTgmBlockEnd(lines_, first, options_.lazyLists, scope_.budget);
    const bool isList = isTgmList(type);
    // A list adds two levels more, those of an item and its text.
    if (!spend(0, first) || isTooDeep(depth + (isList ? 3 : 1), first)) {
        return end;
    }
    TGMNodePtr node;
    if (isList) {
        node = buildList(clamp(first, end), depth + 1);
    } else if (isTgmHeading(type)) {
        node = buildHeading(first);
    } else if (type == kTgmQuote) {
        node = buildQuote(first, end, depth + 1);
    } else {
        node = buildPlain(clamp(first, end));
    }
    if (node != nullptr) {
        parent.children.push_back(std::move(node));
    }
    return end;
}

TGMNodePtr TGMBlockBuilder::buildPlain(Range block) {
    if (!spend(block.last - block.first, block.first)) {
        return nullptr;
    }
    std::string_view text = lines_[block.first].payload();
    bool hasBlank = false;
    for (std::size_t index = block.first + 1; index <= block.last; ++index) {
        const TGMLine& line = lines_[index];
        hasBlank = hasBlank || line.type() == kTgmBlank;
        if (!line.payload().empty()) {
            // A list line or heading inside a paragraph keeps its indentation and its marker.
            noteJoinedLine(index);
            text = join(text, line.type() == kTgmPlain ? line.payload() : line.text());
        }
    }
    return makeNode(hasBlank ? kTgmParagraph : kTgmPlain, text, block.first);
}

// `text` is either the text of one line or the lines joined so far; only the former is copied.
std::string_view TGMBlockBuilder::join(std::string_view text, std::string_view line) {
    if (text.data() != text_.data()) {
        text_ = text;
    }
    text_ += options_.joinChar;
    text_ += line;
    return text_;
}

TGMNodePtr TGMBlockBuilder::buildHeading(std::size_t line) {
    return makeNode(lines_[line].type(), lines_[line].payload(), line);
}

TGMNodePtr TGMBlockBuilder::buildList(Range block, std::uint32_t depth) {
    const TGMNodeType type = lines_[block.first].type();
    TGMNodePtr list = makeNode(type, {}, block.first);
    if (list == nullptr || !spend(block.last - block.first, block.first)) {
        return nullptr;
    }
    const ListItems items = findItems(block, type);
    noteNumbers(items, type);
    for (std::size_t i = 0; i < items.starts.size(); ++i) {
        const std::size_t last = i + 1 < items.starts.size() ? items.starts[i + 1] - 1 : block.last;
        TGMNodePtr item = buildItem({items.starts[i], last}, items.textType, depth + 1);
        if (mustStop()) {
            break;
        }
        list->children.push_back(std::move(item));
    }
    return list;
}

// The first line of the block always begins an item. Until the first blank line so does a list line of any
// other kind: that is part of the dialect.
TGMBlockBuilder::ListItems TGMBlockBuilder::findItems(Range block, TGMNodeType listType) const {
    ListItems items;
    const std::uint32_t indent = lines_[block.first].indent();
    std::size_t blanks = 0;
    for (std::size_t index = block.first; index <= block.last; ++index) {
        const TGMLine& line = lines_[index];
        if (line.type() == kTgmBlank) {
            ++blanks;
        } else if (line.indent() == indent &&
                   (line.type() == listType || (blanks == 0 && isTgmList(line.type())))) {
            items.starts.push_back(index);
        }
    }
    const bool isLoose = blanks > 0 && blanks + 1 >= items.starts.size();
    items.textType = isLoose ? kTgmParagraph : kTgmPlain;
    return items;
}

TGMNodePtr TGMBlockBuilder::buildItem(Range item, TGMNodeType textType, std::uint32_t depth) {
    TGMNodePtr node = makeNode(kTgmListItem, {}, item.first);
    std::string_view joined = lines_[item.first].payload();
    std::size_t next = item.first + 1;
    for (; next <= item.last && lines_[next].type() == kTgmPlain; ++next) {
        joined = join(joined, lines_[next].payload());
    }
    TGMNodePtr text = makeNode(textType, joined, item.first);
    if (node == nullptr || text == nullptr) {
        return nullptr;
    }
    node->children.push_back(std::move(text));
    if (next <= item.last) {
        buildBlocks(*node, {next, item.last}, depth);
    }
    return node;
}

// The line `end` isn't part of the quote, even when it is the last line of the text and holds text of the
// quote: that is part of the dialect. A quote that is the last line of the text ends one past it and so keeps
// it.
TGMNodePtr TGMBlockBuilder::buildQuote(std::size_t first, std::size_t end, std::uint32_t depth) {
    if (first == end) {
        result_.add(kTgmEmptyText, lineNumber(first));
        return nullptr;
    }
    if (!spend((end - first) * kTgmQuotedLineCost + kTgmNodeCost, first)) {
        return nullptr;
    }
    noteQuote(first, end);
    TGMParseOptions quoteOptions = options_;
    quoteOptions.lazyLists = false;
    quoteOptions.tabWidth = kTgmQuoteTabWidth;
    TGMParseResult quoteResult;
    TGMNodePtr quote = parseQuote_(collectQuote(first, end, quoteOptions), quoteOptions,
                                   {scope_.tree, scope_.budget, depth, lineNumber(first)}, quoteResult);
    result_.merge(quoteResult);
    if (!quoteResult.succeeded() && !options_.keepGoing) {
        return nullptr;
    }
    quote->type = kTgmQuote;
    return quote;
}

// The lines that come of joining the payloads, each with a line feed after it, and splitting the text again:
// one for each payload and an empty one at the end.
std::vector<TGMLine> TGMBlockBuilder::collectQuote(std::size_t first, std::size_t end,
                                                   const TGMParseOptions& quoteOptions) const {
    std::vector<TGMLine> quoted;
    quoted.reserve(end - first + 1);
    for (std::size_t index = first; index < end; ++index) {
        quoted.emplace_back(lines_[index].payload(), quoteOptions);
    }
    quoted.emplace_back();
    return quoted;
}

void TGMBlockBuilder::noteJoinedLine(std::size_t line) {
    const TGMNodeType type = lines_[line].type();
    if (isTgmHeading(type)) {
        note(TGMLossKind::kJoinedHeading, line);
    } else if (isTgmList(type) && !isTgmList(lines_[line - 1].type())) {
        note(TGMLossKind::kJoinedList, line);
    }
}

// One item for each list. Those who leave the numbering to the program write 1 before each item.
void TGMBlockBuilder::noteNumbers(const ListItems& items, TGMNodeType listType) {
    for (std::size_t i = 0; i < items.starts.size(); ++i) {
        const TGMLine& line = lines_[items.starts[i]];
        if (!isOrdered(line.type())) {
            continue;
        }
        const std::uint32_t number = writtenNumber(line);
        if (line.type() != listType || (number != i + 1 && number != 1)) {
            note(TGMLossKind::kRenumberedItem, items.starts[i]);
            return;
        }
    }
}

void TGMBlockBuilder::noteQuote(std::size_t first, std::size_t end) {
    for (std::size_t index = first; index < end; ++index) {
        const std::string_view text = lines_[index].text();
        const std::size_t mark = text.find('>');
        if (lines_[index].type() == kTgmQuote && mark == text.find_first_not_of(" \t\v\f") &&
            mark + 1 < text.size() && !isTgmWhiteSpace(text[mark + 1])) {
            note(TGMLossKind::kQuotedCharacter, index);
        }
    }
    if (end < lines_.size() && lines_[end].type() != kTgmBlank) {
        note(TGMLossKind::kQuotedLine, end);
    }
}

void TGMBlockBuilder::note(TGMLossKind kind, std::size_t line) {
    if (options_.losses != nullptr) {
        options_.losses->push_back({kind, lineNumber(line)});
    }
}

// Null when the budget is exhausted.
TGMNodePtr TGMBlockBuilder::makeNode(TGMNodeType type, std::string_view text, std::size_t line) {
    if (!spend(kTgmNodeCost + text.size() * kTgmByteCost, line)) {
        return nullptr;
    }
    TGMNodePtr node = scope_.tree.makeNode(type);
    node->text = scope_.tree.copyText(text);
    return node;
}

TGMBlockBuilder::Range TGMBlockBuilder::clamp(std::size_t first, std::size_t last) const {
    return {first, std::min(last, lines_.size() - 1)};
}

bool TGMBlockBuilder::spend(std::uint64_t work, std::size_t line) {
    if (scope_.budget.spend(work)) {
        return true;
    }
    result_.add(kTgmInvalidBlock, lineNumber(line));
    return false;
}

bool TGMBlockBuilder::isTooDeep(std::uint32_t depth, std::size_t line) {
    if (depth <= kTgmMaxDepth) {
        return false;
    }
    result_.add(kTgmInvalidBlock, lineNumber(line));
    return true;
}

bool TGMBlockBuilder::mustStop() const {
    return scope_.budget.isExhausted() || (!result_.succeeded() && !options_.keepGoing);
}

std::uint32_t TGMBlockBuilder::lineNumber(std::size_t line) const {
    return scope_.firstLine + static_cast<std::uint32_t>(line);
}
