#include "text/installer_plain_text_translator.h"

#include <algorithm>

#include "text/output_capacity.h"
#include "text/word_wrap.h"

namespace {

constexpr std::string_view kBoldOn = "\033[1m";
constexpr std::string_view kBoldOff = "\033[0m";

}  // namespace

InstallerPlainTextTranslator::InstallerPlainTextTranslator(const PlainTextSettings& settings)
    : settings_(settings) {
    out_.reserve(kFirstOutputCapacity);
    inline_.reserve(kFirstOutputCapacity);
}

void InstallerPlainTextTranslator::beginHeader(int) {
    firstLine_ = false;
    if (settings_.ansiBold) {
        out_ += kBoldOn;
    }
}

void InstallerPlainTextTranslator::endHeader(int) {
    if (settings_.ansiBold) {
        out_ += kBoldOff;
    }
    out_ += "\n\n";
}

void InstallerPlainTextTranslator::beginList(TGMListKind kind) {
    lists_.open(kind);
    firstLine_ = true;
    textSeen_ = false;
}

void InstallerPlainTextTranslator::endList(TGMListKind) {
    lists_.close();
}

void InstallerPlainTextTranslator::beginItem() {
    firstLine_ = true;
    textSeen_ = false;
    if (settings_.indentLists) {
        out_.append(levelIndent(), settings_.fillChar);
    }
    lists_.appendNextMarker(out_, settings_.bulletChar);
}

void InstallerPlainTextTranslator::endItem() {
    out_ += '\n';
}

void InstallerPlainTextTranslator::beginEmphasis(std::uint8_t& counter) {
    enter(counter);
    if (settings_.ansiBold) {
        emphasisOutput() += kBoldOn;
    }
}

void InstallerPlainTextTranslator::endEmphasis(std::uint8_t& counter) {
    if (settings_.ansiBold) {
        emphasisOutput() += kBoldOff;
    }
    leave(counter);
}

void InstallerPlainTextTranslator::beginQuote() {
    firstLine_ = false;
}

// Only the first paragraph of an item starts right after the marker; later ones indent their first line too.
void InstallerPlainTextTranslator::beginParagraph() {
    if (firstLine_ && textSeen_) {
        firstLine_ = false;
    }
    enter(paragraphDepth_);
}

void InstallerPlainTextTranslator::endParagraph() {
    leave(paragraphDepth_);
    out_ += '\n';
}

void InstallerPlainTextTranslator::text(std::string_view bytes) {
    textSeen_ = true;
    if (!settings_.wrap) {
        out_ += bytes;
        return;
    }
    if (settings_.collectInline && isInGroup()) {
        inline_ += bytes;
        return;
    }
    const bool isSetIn = settings_.indentLists && lists_.depth() > 0;
    const std::size_t indent = isSetIn ? levelIndent() + lists_.markerWidth() : 0;
    if (indent + bytes.size() <= settings_.width) {
        out_ += bytes;
        out_ += '\n';
        return;
    }
    WrapLayout layout;
    layout.width = settings_.width;
    layout.indent = static_cast<std::uint32_t>(indent);
    layout.fillChar = settings_.fillChar;
    layout.indentFirstLine = !firstLine_;
    layout.justify = settings_.justify;
    appendWrapped(out_, bytes, layout);
}

void InstallerPlainTextTranslator::reserve(std::size_t size) {
    reserveOutput(out_, size, 2);
    reserveOutput(inline_, size, 1);
}

std::string InstallerPlainTextTranslator::getResult() const {
    return out_;
}

std::string_view InstallerPlainTextTranslator::getText() const {
    return out_;
}

bool InstallerPlainTextTranslator::isInGroup() const {
    return paragraphDepth_ > 0 || compositeDepth_ > 0 || boldDepth_ > 0 || italicDepth_ > 0;
}

void InstallerPlainTextTranslator::enter(std::uint8_t& counter) {
    if (settings_.collectInline && !isInGroup()) {
        inline_.clear();
    }
    ++counter;
}

// The collected pieces go out as one text, so that the wrapping sees the whole paragraph.
void InstallerPlainTextTranslator::leave(std::uint8_t& counter) {
    --counter;
    if (settings_.collectInline && !isInGroup()) {
        text(inline_);
        inline_.clear();
    }
}

std::size_t InstallerPlainTextTranslator::levelIndent() const {
    const std::uint64_t levels = lists_.depth() > 0 ? lists_.depth() - 1 : 0;
    const std::uint64_t bounded = std::min<std::uint64_t>(levels, kLargestLevelIndent);
    return static_cast<std::size_t>(
        std::min<std::uint64_t>(bounded * settings_.levelIndent, kLargestLevelIndent));
}
