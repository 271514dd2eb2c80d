#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "base/text_columns.h"
#include "fuzz_target.h"
#include "rich_text_check.h"
#include "text/document_text.h"
#include "text/installer_plain_text_translator.h"
#include "text/tgm_parser.h"
#include "text/utf8_check.h"
#include "text/verbatim_text.h"
#include "ui/gui/document_content.h"

// The first two bytes hold settings, the rest is the document. Whatever it is, each form ends, keeps the
// lines of a console whole, is text that a window can show, and stays in proportion to the document.
namespace {

constexpr std::size_t kHeader = 2;
// A byte of a text gives at most a line of its own, set in as far as lines ever are; a node, its marks.
constexpr std::size_t kBytesPerByte = 2 * InstallerPlainTextTranslator::kLargestLevelIndent;
constexpr std::size_t kFixedBytes = 4096;

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

void checkLosses(std::string_view document) {
    const auto lines = static_cast<std::uint32_t>(std::count(document.begin(), document.end(), '\n'));
    for (const TGMLoss& loss : lossesOfMarkdown(document)) {
        require(loss.line <= lines);
    }
    for (const RtfLoss& loss : lossesOfRichText(document)) {
        require(loss.offset <= document.size() && document.substr(loss.offset).starts_with(loss.source));
    }
}

// Also what isn't markdown at all, because authors forget to name the format.
void checkWindow(std::string_view document, const DocumentColours& colours) {
    for (const std::string_view format : {kMarkdownFormat, kVerbatimFormat, std::string_view()}) {
        requireSoundCommands(richTextContent(document, format, colours).get());
        require(!findInvalidUtf8(htmlContent(document, format, colours)).has_value());
        const std::string text = plainTextContent(document, format);
        require(!findInvalidUtf8(text).has_value() && text.find('\r') == std::string::npos);
    }
}

std::string withoutBlanks(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

// Everything but blanks arrives, and no line is too wide unless it consists of one wide letter.
void checkVerbatim(std::string_view document, int columns) {
    std::string whole;
    for (const std::string& line : verbatimLines(document)) {
        require(!findInvalidUtf8(line).has_value() && line.find_first_of("\n\r\f\t") == std::string::npos);
        whole += line;
    }
    const std::string text = verbatimAsText(document, columns);
    checkConsoleText(text);
    require(withoutBlanks(text) == withoutBlanks(whole));
    const std::size_t width = columns > 3 ? static_cast<std::size_t>(columns) - 2 : 2;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        require(OUtils::columnsOf(std::string_view(text).substr(begin, end - begin)) <= width);
        begin = end + 1;
    }
}

}  // namespace

bool accepts(std::string_view input) {
    if (input.size() < kHeader) {
        return false;
    }
    const std::string_view document = input.substr(kHeader);
    const auto bits = static_cast<std::uint8_t>(input[0]);
    const auto width = static_cast<std::uint8_t>(input[1]);
    const std::optional<std::string> shown = markdownAsText(document, width);
    checkConsoleText(shown);
    richTextAsText(document, width);
    checkVerbatim(document, width);
    markdownAsHtml(document);
    checkLosses(document);
    checkWindow(document,
                {.element = (bits & 1) != 0 ? 0x00102030 : -1, .theme = (bits & 2) != 0 ? 0x00405060 : -1});
    TGMParseResult result;
    markdownAsTree(document, result);
    require(result.succeeded() == shown.has_value());
    TGMParser parser;
    if (parser.parse(document).succeeded()) {
        const PlainTextSettings settings = readSettings(bits, width);
        InstallerPlainTextTranslator translator(settings);
        parser.walk(translator);
        // Padding fills a line, so a byte may give as many as a line has.
        const std::size_t perByte = kBytesPerByte + (settings.justify ? settings.width : 0);
        require(translator.takeResult().size() <= kFixedBytes + contentOf(*parser.getRoot()) * perByte);
    }
    return !shown.value_or("").empty();
}
