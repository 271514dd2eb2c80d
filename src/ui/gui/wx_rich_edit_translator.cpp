#include "ui/gui/wx_rich_edit_translator.h"

#include "text/output_capacity.h"

namespace {

using Kind = RichTextCommand::Kind;

constexpr int kLeft = 0;
constexpr int kCentre = 1;
constexpr char kBullet = '-';

}  // namespace

WxRichEditTranslator::WxRichEditTranslator(RichTextCommands& commands, const RichEditSettings& settings)
    : commands_(commands), settings_(settings) {
    buffer_.reserve(kFirstOutputCapacity);
}

void WxRichEditTranslator::flush(bool asParagraph) {
    if (asParagraph && !buffer_.empty()) {
        commands_.addParagraph(buffer_);
    } else {
        commands_.write(buffer_);
    }
    buffer_.clear();
}

void WxRichEditTranslator::beginColour() {
    if (settings_.useColour) {
        commands_.begin(Kind::kBeginTextColour, static_cast<int>(settings_.colour));
    }
}

void WxRichEditTranslator::beginDocument() {
    commands_.clear();
    beginColour();
    commands_.begin(Kind::kBeginAlignment, kLeft);
}

void WxRichEditTranslator::endDocument() {
    flush(needParagraph_);
    commands_.endStyle();
}

// The style that ends is the alignment, which endHeader opens again.
void WxRichEditTranslator::beginHeader(int) {
    flush(false);
    commands_.endStyle();
    commands_.begin(Kind::kBeginAlignment, kCentre);
    commands_.begin(Kind::kBeginBold);
}

void WxRichEditTranslator::endHeader(int) {
    flush(true);
    commands_.endStyle();
    commands_.endStyle();
    commands_.addParagraph();
    commands_.begin(Kind::kBeginAlignment, kLeft);
}

void WxRichEditTranslator::beginList(TGMListKind kind) {
    needParagraph_ = needParagraph_ || lists_.depth() == 0;
    lists_.open(kind);
    if (settings_.indentLists) {
        commands_.endStyle();
        needParagraph_ = true;
        currentIndent_ = 0;
    }
}

void WxRichEditTranslator::endList(TGMListKind) {
    lists_.close();
    needParagraph_ = true;
}

// The marker is written together with the text of the item, so behind the indentation.
void WxRichEditTranslator::beginItem() {
    flush(false);
    lists_.appendNextMarker(buffer_, kBullet);
    beginColour();
    if (settings_.indentLists) {
        indentItem();
    }
}

void WxRichEditTranslator::indentItem() {
    const std::int64_t indent =
        (static_cast<std::int64_t>(lists_.depth()) - 1) * std::int64_t{settings_.levelIndent};
    if (currentIndent_ > 0) {
        commands_.endStyle();
        needParagraph_ = true;
    }
    if (indent >= 0) {
        commands_.begin(Kind::kBeginLeftIndent, static_cast<int>(indent));
        commands_.addParagraph();
        needParagraph_ = false;
        currentIndent_ = indent;
    }
}

void WxRichEditTranslator::endItem() {
    flush(false);
    if (settings_.indentLists) {
        if (currentIndent_ > 0) {
            commands_.endStyle();
        }
        currentIndent_ = 0;
    }
}

void WxRichEditTranslator::beginBold() {
    flush(false);
    commands_.begin(Kind::kBeginBold);
}

void WxRichEditTranslator::beginItalic() {
    flush(false);
    commands_.begin(Kind::kBeginItalic);
}

void WxRichEditTranslator::endEmphasis() {
    flush(false);
    commands_.endStyle();
}

void WxRichEditTranslator::beginParagraph() {
    commands_.addParagraph();
}

void WxRichEditTranslator::endParagraph() {
    flush(false);
    needParagraph_ = true;
}

void WxRichEditTranslator::text(std::string_view bytes) {
    if (needParagraph_) {
        commands_.addParagraph();
        needParagraph_ = false;
    }
    buffer_ += bytes;
}

void WxRichEditTranslator::reserve(std::size_t size) {
    reserveOutput(buffer_, size, 1);
}
