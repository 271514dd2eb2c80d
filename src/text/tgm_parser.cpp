#include "text/tgm_parser.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "text/tgm_limits.h"
#include "text/tgm_line_parser.h"
#include "text/tgm_translator.h"

namespace {

TGMListKind listKind(TGMNodeType type) {
    switch (type) {
        case kTgmNumberedList:
            return kTgmNumberList;
        case kTgmLetteredList:
            return kTgmLetterList;
        default:
            return kTgmBulletList;
    }
}

int headingLevel(TGMNodeType type) {
    return type - kTgmHeading1 + 1;
}

// The text itself, or `copy` if the text has a carriage return; most texts have none.
std::string_view withoutCarriageReturns(std::string_view text, std::string& copy) {
    if (text.find('\r') == std::string_view::npos) {
        return text;
    }
    copy.reserve(text.size());
    std::remove_copy(text.begin(), text.end(), std::back_inserter(copy), '\r');
    return copy;
}

void visit(const TGMNode& node, TGMTranslator& translator);

void visitContent(const TGMNode& node, TGMTranslator& translator) {
    if (!node.text.isEmpty()) {
        translator.text(node.text.view());
    }
    for (const TGMNodePtr& child : node.children) {
        visit(*child, translator);
    }
}

using Event = void (TGMTranslator::*)();

struct Events {
    Event begin = nullptr;
    Event end = nullptr;
};

// The events of the types that have no argument.
Events eventsOf(TGMNodeType type) {
    switch (type) {
        case kTgmDocument:
            return {&TGMTranslator::beginDocument, &TGMTranslator::endDocument};
        case kTgmParagraph:
            return {&TGMTranslator::beginParagraph, &TGMTranslator::endParagraph};
        case kTgmBold:
            return {&TGMTranslator::beginBold, &TGMTranslator::endBold};
        case kTgmItalic:
            return {&TGMTranslator::beginItalic, &TGMTranslator::endItalic};
        case kTgmListItem:
            return {&TGMTranslator::beginItem, &TGMTranslator::endItem};
        case kTgmQuote:
            return {&TGMTranslator::beginQuote, &TGMTranslator::endQuote};
        case kTgmComposite:
            return {&TGMTranslator::beginComposite, &TGMTranslator::endComposite};
        default:
            return {};
    }
}

void visit(const TGMNode& node, TGMTranslator& translator) {
    if (isTgmList(node.type)) {
        translator.beginList(listKind(node.type));
        visitContent(node, translator);
        translator.endList(listKind(node.type));
    } else if (isTgmHeading(node.type)) {
        translator.beginHeader(headingLevel(node.type));
        visitContent(node, translator);
        translator.endHeader(headingLevel(node.type));
    } else if (const Events events = eventsOf(node.type); events.begin != nullptr) {
        (translator.*events.begin)();
        visitContent(node, translator);
        (translator.*events.end)();
    } else {
        visitContent(node, translator);
    }
}

}  // namespace

TGMParser::TGMParser(const TGMParseOptions& options) : options_(options) {}

TGMParseResult TGMParser::parse(std::optional<std::string_view> text) {
    root_.reset();
    tree_.reset();
    TGMParseResult result;
    if (!text) {
        result.add(kTgmNullText);
        return result;
    }
    const std::string_view whole = text->substr(0, text->find('\0'));
    if (whole.empty()) {
        result.add(kTgmEmptyText);
    } else if (whole.size() > kTgmMaxLength) {
        result.add(kTgmInvalidBlock, 0);
    } else {
        result = parseWhole(whole);
    }
    return result;
}

TGMParseResult TGMParser::parseWhole(std::string_view text) {
    workSize_ = std::max<std::size_t>(kTgmMinWorkSize, text.size());
    tree_ = std::make_unique<TGMTree>(text.size());
    TGMWorkBudget budget(text.size());
    std::string copy;
    const auto lines = splitTgmLines(withoutCarriageReturns(text, copy), options_);
    TGMParseResult result;
    root_ = parseTgmLines(lines, options_, {*tree_, budget}, result);
    return result;
}

void TGMParser::walk(TGMTranslator& translator) const {
    if (root_ != nullptr) {
        translator.reserve(workSize_);
        visit(*root_, translator);
    }
}
