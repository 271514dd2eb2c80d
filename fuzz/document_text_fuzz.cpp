#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "text/document_text.h"
#include "text/installer_plain_text_translator.h"
#include "text/tgm_parser.h"

// The first two bytes hold settings, the rest is the document. Whatever it is, each form ends, keeps the
// lines of a console whole, and stays in proportion to the document.
namespace {

constexpr std::size_t kHeader = 2;
// A byte of a text gives at most a line of its own, set in as far as lines ever are; a node, its marks.
constexpr std::size_t kBytesPerByte = 2 * InstallerPlainTextTranslator::kLargestLevelIndent;
constexpr std::size_t kFixedBytes = 4096;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void checkConsoleText(const std::optional<std::string>& text) {
    if (text.has_value() && !text->empty()) {
        require(text->back() == '\n');
    }
}

// The bytes of the texts below a node, and one for each node.
std::size_t contentOf(const TGMNode& node) {
    std::size_t content = 1 + node.text.view().size();
    for (const TGMNodePtr& child : node.children) {
        content += contentOf(*child);
    }
    return content;
}

PlainTextSettings readSettings(std::uint8_t bits, std::uint8_t width) {
    PlainTextSettings settings;
    settings.ansiBold = (bits & 1) != 0;
    settings.indentLists = (bits & 2) != 0;
    settings.wrap = (bits & 4) != 0;
    settings.collectInline = (bits & 8) != 0;
    settings.justify = (bits & 16) != 0;
    settings.levelIndent = bits >> 5;
    settings.width = width;
    return settings;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kHeader) {
        return 0;
    }
    const std::string_view document(reinterpret_cast<const char*>(data) + kHeader, size - kHeader);
    checkConsoleText(markdownAsText(document, data[1]));
    richTextAsText(document, data[1]);
    markdownAsHtml(document);
    TGMParser parser;
    if (parser.parse(document).succeeded()) {
        const PlainTextSettings settings = readSettings(data[0], data[1]);
        InstallerPlainTextTranslator translator(settings);
        parser.walk(translator);
        // Padding fills a line, so a byte may give as many as a line has.
        const std::size_t perByte = kBytesPerByte + (settings.justify ? settings.width : 0);
        require(translator.takeResult().size() <= kFixedBytes + contentOf(*parser.getRoot()) * perByte);
    }
    return 0;
}
