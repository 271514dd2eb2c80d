#include "text/rtf_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "text/rich_text_callback.h"
#include "text/rich_text_wrap.h"
#include "text/rtf_control_words.h"

namespace {

// Groups inside the document's own are headers, pictures and the like, so their text is hidden.
constexpr std::size_t kHiddenDepth = 2;

constexpr std::size_t kHexDigits = 2;
constexpr unsigned kCopyrightSign = 0xA9;
constexpr unsigned kRegisteredSign = 0xAE;

// Always as in the C locale.
bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isOfWord(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || character == '-';
}

unsigned hexValue(char digit) {
    if (isDigit(digit)) {
        return static_cast<unsigned>(digit - '0');
    }
    if (digit >= 'a' && digit <= 'f') {
        return static_cast<unsigned>(digit - 'a') + 10;
    }
    return digit >= 'A' && digit <= 'F' ? static_cast<unsigned>(digit - 'A') + 10 : 0;
}

constexpr std::array<bool, 256> makePlainBytes() {
    constexpr std::size_t kFirstPrinted = 0x20;
    constexpr std::size_t kDelete = 0x7F;
    std::array<bool, 256> plain{};
    for (std::size_t byte = kFirstPrinted; byte < plain.size(); ++byte) {
        plain[byte] = byte != kDelete;
    }
    for (const char special : {'{', '}', '\\'}) {
        plain[static_cast<unsigned char>(special)] = false;
    }
    return plain;
}

// The bytes that are text.
constexpr std::array<bool, 256> kPlainBytes = makePlainBytes();

// Tables that a program writes into each document; nothing in them is text of the document.
constexpr std::array<std::string_view, 4> kTables = {"fonttbl", "colortbl", "stylesheet", "info"};
// Words of the full format that mean a character or a new line and that the subset doesn't have.
constexpr std::array<std::string_view, 10> kCharacterWords = {
    "bullet", "cell", "emdash", "emspace", "enspace", "line", "lquote", "page", "row", "sect"};

std::string_view wordAt(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), [](char c) { return isOfWord(c); });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

bool isCharacterWord(std::string_view word) {
    const bool isUnicode = word.size() > 1 && word[0] == 'u' && (isDigit(word[1]) || word[1] == '-');
    return isUnicode ||
           std::find(kCharacterWords.begin(), kCharacterWords.end(), word) != kCharacterWords.end();
}

// `content` is what follows the brace of a group. `\*` marks what a reader may ignore.
bool isTable(std::string_view content) {
    content.remove_prefix(std::min(content.find_first_not_of("\r\n"), content.size()));
    if (!content.starts_with('\\')) {
        return false;
    }
    content.remove_prefix(1);
    return content.starts_with('*') ||
           std::find(kTables.begin(), kTables.end(), wordAt(content)) != kTables.end();
}

// One pass over one document.
class Pass {
public:
    Pass(std::string_view document, RtfMode mode, RichTextCallback* callback, std::vector<RtfLoss>* losses)
        : document_(document), rest_(document), mode_(mode), callback_(callback), losses_(losses) {
        output_.reserve(document.size() + document.size() / 10 + kSlack);
    }

    // False when the groups aren't balanced.
    bool run();
    // Only after a run that failed.
    RtfFault fault() const;
    std::string takeOutput() { return std::move(output_); }

private:
    static constexpr std::size_t kSlack = 1000;

    // The next `count` bytes, or what is left of them.
    std::string_view take(std::size_t count) {
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    void readPlain();
    bool readSpecial();
    void readEscape();
    void readHex();
    void readWord();
    void handle(const RtfControlWord& found, std::string_view word);
    void callBack(const RtfControlWord& found, std::string_view word);
    void write(std::string_view text);
    void openGroup();
    bool closeGroup();
    // The number of bytes that were taken.
    std::size_t position() const { return document_.size() - rest_.size(); }
    void noteLoss(RtfLossKind kind, std::size_t offset);

    const std::string_view document_;
    std::string_view rest_;
    const RtfMode mode_;
    RichTextCallback* const callback_;    // or null
    std::vector<RtfLoss>* const losses_;  // or null
    std::size_t hiddenGroup_ = 0;         // the offset of the outermost group that is hidden
    bool hidesText_ = false;              // that group has text
    std::size_t depth_ = 0;
    std::string output_;
};

bool Pass::run() {
    readPlain();
    while (!rest_.empty()) {
        if (!readSpecial()) {
            return false;
        }
        readPlain();
    }
    if (depth_ != 0) {
        return false;
    }
    handle(*findRtfControlWord(kRtfRestoreWord), kRtfRestoreWord);
    if (callback_ != nullptr) {
        callback_->endDocument();
    }
    return true;
}

RtfFault Pass::fault() const {
    return depth_ == 0 ? RtfFault{position() - 1, 0} : RtfFault{position(), depth_};
}

// A callback receives each byte by itself; without one all are written at once.
void Pass::readPlain() {
    const auto end =
        std::find_if_not(rest_.begin(), rest_.end(), [](unsigned char byte) { return kPlainBytes[byte]; });
    const std::string_view text = take(static_cast<std::size_t>(end - rest_.begin()));
    if (callback_ == nullptr) {
        write(text);
        return;
    }
    for (std::size_t index = 0; index < text.size(); ++index) {
        write(text.substr(index, 1));
    }
}

// A byte that isn't plain. False when it closes a group that was never opened.
bool Pass::readSpecial() {
    const char special = take(1).front();
    if (special == '{') {
        openGroup();
    } else if (special == '}') {
        return closeGroup();
    } else if (special == '\\') {
        readEscape();
    } else if (special == '\t') {
        noteLoss(RtfLossKind::kTab, position() - 1);
    } else if (special != '\r' && special != '\n') {
        noteLoss(RtfLossKind::kControl, position() - 1);
        write(document_.substr(position() - 1, 1));
    }
    return true;
}

void Pass::openGroup() {
    ++depth_;
    if (depth_ == kHiddenDepth) {
        hiddenGroup_ = position() - 1;
        hidesText_ = false;
    }
}

// False when no group is open.
bool Pass::closeGroup() {
    if (depth_ == 0) {
        return false;
    }
    --depth_;
    if (depth_ + 1 == kHiddenDepth && hidesText_ && !isTable(document_.substr(hiddenGroup_ + 1))) {
        noteLoss(RtfLossKind::kGroup, hiddenGroup_);
    }
    return true;
}

void Pass::noteLoss(RtfLossKind kind, std::size_t offset) {
    if (losses_ != nullptr && depth_ < kHiddenDepth) {
        losses_->push_back({kind, offset, document_.substr(offset, position() - offset)});
    }
}

// What follows a backslash, which may be the last byte.
void Pass::readEscape() {
    if (!rest_.empty() && isOfWord(rest_.front())) {
        readWord();
        return;
    }
    const std::string_view symbol = take(1);
    if (symbol == "\\" || symbol == "{" || symbol == "}") {
        write(symbol);
    } else if (symbol == "'") {
        readHex();
    } else if (symbol == "~") {
        write(" ");
    } else if (symbol == "_") {
        write("-");
    }
}

// Skips two bytes whatever they are, even a brace; one that isn't a digit counts as 0. Of the values only two
// signs are shown, all others are dropped: that is part of the subset.
void Pass::readHex() {
    const std::size_t start = position() - 2;
    unsigned value = 0;
    for (std::size_t index = 0; index < kHexDigits; ++index) {
        const std::string_view digit = take(1);
        value = value * 16 + (digit.empty() ? 0 : hexValue(digit.front()));
    }
    if (value == kCopyrightSign) {
        write("(c)");
    } else if (value == kRegisteredSign) {
        write("(r)");
    } else {
        noteLoss(RtfLossKind::kByte, start);
        hidesText_ = true;
    }
}

void Pass::readWord() {
    const std::size_t start = position() - 1;
    const std::string_view word = take(wordAt(rest_).size());
    if (word.starts_with('-') || isCharacterWord(word)) {
        noteLoss(word.starts_with('-') ? RtfLossKind::kSoftHyphen : RtfLossKind::kCharacter, start);
    }
    if (rest_.starts_with(' ')) {
        take(1);
    }
    if (const RtfControlWord* const found = findRtfControlWord(word)) {
        handle(*found, word);
    }
}

void Pass::handle(const RtfControlWord& found, std::string_view word) {
    write(found.text);
    if (mode_ == RtfMode::kTerminal) {
        write(found.attribute);
    }
    if (callback_ != nullptr) {
        callBack(found, word);
    }
}

void Pass::callBack(const RtfControlWord& found, std::string_view word) {
    switch (found.effect) {
        case RtfEffect::kNone:
            return;
        case RtfEffect::kParagraph:
            callback_->paragraph();
            return;
        case RtfEffect::kReset:
            callback_->resetStyles();
            return;
        case RtfEffect::kAlignment:
            callback_->setAlignment(found.alignment);
            return;
        case RtfEffect::kStyle:
            callback_->setStyle(found.style, found.on);
            return;
        case RtfEffect::kLeftIndent:
            callback_->setLeftIndent(rtfTenthsOfMillimetre(rtfParameter(found, word)));
            return;
    }
}

void Pass::write(std::string_view text) {
    if (text.empty() || depth_ >= kHiddenDepth) {
        hidesText_ = hidesText_ || text.find_first_not_of(" \t\n") != std::string_view::npos;
        return;
    }
    output_ += text;
    if (callback_ != nullptr) {
        callback_->addChar(text);
    }
}

}  // namespace

std::optional<std::string> RtfReader::read(std::string_view document, RtfMode mode, int width) {
    Pass pass(document.substr(0, document.find('\0')), mode, callback_, losses_);
    if (!pass.run()) {
        fault_ = pass.fault();
        return std::nullopt;
    }
    std::string text = pass.takeOutput();
    return width > 0 ? RichTextWrap(width).wrap(text) : text;
}
