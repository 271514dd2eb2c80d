#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz_target.h"
#include "text/tgm_limits.h"
#include "text/tgm_parser.h"
#include "text/tgm_translator.h"

// The first byte holds options, the rest is the text. Trees have the shape that translators rely on.
namespace {

// Each begin has its end, nothing is outside the document, texts are never empty.
class BalanceCheck : public TGMTranslator {
public:
    void beginDocument() override { begin(); }
    void endDocument() override { end(); }
    void beginHeader(int level) override {
        require(level >= 1 && level <= 6);
        begin();
    }
    void endHeader(int /*level*/) override { end(); }
    void beginList(TGMListKind kind) override {
        require(kind <= kTgmLetterList);
        begin();
    }
    void endList(TGMListKind /*kind*/) override { end(); }
    void beginItem() override { begin(); }
    void endItem() override { end(); }
    void beginBold() override { begin(); }
    void endBold() override { end(); }
    void beginItalic() override { begin(); }
    void endItalic() override { end(); }
    void beginQuote() override { begin(); }
    void endQuote() override { end(); }
    void beginParagraph() override { begin(); }
    void endParagraph() override { end(); }
    void beginComposite() override { begin(); }
    void endComposite() override { end(); }
    void text(std::string_view bytes) override { require(!bytes.empty() && depth_ > 0); }
    void reserve(std::size_t size) override { require(size >= kTgmMinWorkSize && depth_ == 0); }

    std::uint32_t getDepth() const { return depth_; }

private:
    void begin() {
        ++depth_;
        require(depth_ <= kTgmMaxDepth + 1);
    }
    void end() {
        require(depth_ > 0);
        --depth_;
    }

    std::uint32_t depth_ = 0;
};

void checkNode(const TGMNode& node, bool isRoot, bool hasErrors) {
    require((node.type == kTgmDocument) == isRoot && node.type > kTgmBlank && node.type <= kTgmComposite);
    require(!isTgmList(node.type) || hasErrors || !node.children.empty());
    require(node.text.view().find('\0') == std::string_view::npos);
    for (const TGMNodePtr& child : node.children) {
        require(!isTgmList(node.type) || child->type == kTgmListItem);
        checkNode(*child, false, hasErrors);
    }
}

TGMParseOptions readOptions(std::uint8_t bits) {
    TGMParseOptions options;
    options.lazyLists = (bits & 1) != 0;
    options.alphaLists = (bits & 2) != 0;
    options.keepGoing = (bits & 4) != 0;
    options.checkUtf8 = (bits & 8) != 0;
    options.tabWidth = bits >> 5;
    return options;
}

}  // namespace

bool accepts(std::string_view input) {
    if (input.empty()) {
        return false;
    }
    constexpr std::uint8_t kLogBit = 16;
    std::string log;
    const auto bits = static_cast<std::uint8_t>(input[0]);
    TGMParseOptions options = readOptions(bits);
    options.debugLog = (bits & kLogBit) != 0 ? &log : nullptr;
    const std::string text(input.substr(1));
    TGMParser parser(options);
    const TGMParseResult result = parser.parse(text);
    require((parser.getRoot() == nullptr) == (text.empty() || text.front() == '\0'));
    if (parser.getRoot() != nullptr) {
        checkNode(*parser.getRoot(), true, !result.succeeded());
    }
    BalanceCheck check;
    parser.walk(check);
    require(check.getDepth() == 0);
    return result.succeeded() && parser.getRoot() != nullptr;
}
