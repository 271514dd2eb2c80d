#include "text/document_text.h"

#include <algorithm>
#include <cstdint>

#include "base/text_functions.h"
#include "text/basic_html_translator.h"
#include "text/installer_plain_text_translator.h"
#include "text/tgm_parser.h"

namespace {

// Lists are indented by kIndentWithRoom on consoles that have kRoomForIndent columns more than a narrow one.
constexpr int kNarrowColumns = 40;
constexpr int kRoomForIndent = 40;
constexpr int kIndentWithRoom = 2;
// The last cells of a line stay free, so that no terminal wraps it by itself.
constexpr int kFreeColumns = 2;

TGMParseOptions documentOptions() {
    TGMParseOptions options;
    options.joinChar = ' ';
    return options;
}

PlainTextSettings consoleSettings(int columns) {
    const int room = std::clamp(columns - kNarrowColumns, 0, kRoomForIndent);
    PlainTextSettings settings;
    settings.wrap = true;
    settings.collectInline = true;
    settings.indentLists = true;
    settings.justify = false;
    settings.fillChar = ' ';
    // The division drops its remainder on purpose: lists are indented in full or not at all.
    settings.levelIndent = static_cast<std::uint32_t>(room / kRoomForIndent * kIndentWithRoom);
    settings.width = static_cast<std::uint32_t>(std::max(columns - kFreeColumns, 0));
    return settings;
}

template <typename Translator>
std::optional<std::string> translate(std::string_view document, Translator& translator) {
    return walkMarkdown(document, translator) ? std::optional(translator.takeResult()) : std::nullopt;
}

}  // namespace

DocumentFormat documentFormat(std::string_view word) {
    if (OUtils::equalsIgnoreCase(word, kMarkdownFormat)) {
        return DocumentFormat::kMarkdown;
    }
    return OUtils::equalsIgnoreCase(word, kVerbatimFormat) ? DocumentFormat::kVerbatim
                                                           : DocumentFormat::kOfElement;
}

bool walkMarkdown(std::string_view document, TGMTranslator& translator) {
    TGMParser parser(documentOptions());
    if (!parser.parse(document).succeeded()) {
        return false;
    }
    parser.walk(translator);
    return true;
}

std::optional<std::string> markdownAsText(std::string_view document, int columns) {
    InstallerPlainTextTranslator translator(consoleSettings(std::max(columns, 0)));
    return translate(document, translator);
}

std::optional<std::string> richTextAsText(std::string_view document, int columns) {
    // A width of 0 would ask for no wrapping at all.
    const int width = std::max(std::max(columns, 0) - kFreeColumns, 1);
    return RtfReader().read(document, RtfMode::kPlain, width);
}

std::vector<TGMLoss> lossesOfMarkdown(std::string_view document) {
    std::vector<TGMLoss> losses;
    TGMParseOptions options = documentOptions();
    options.losses = &losses;
    TGMParser(options).parse(document);
    return losses;
}

std::vector<RtfLoss> lossesOfRichText(std::string_view document) {
    std::vector<RtfLoss> losses;
    RtfReader reader;
    reader.setLosses(&losses);
    reader.read(document, RtfMode::kPlain, 0);
    return losses;
}

std::optional<std::string> markdownAsHtml(std::string_view document) {
    BasicHTMLTranslator translator;
    return translate(document, translator);
}

std::string markdownAsTree(std::string_view document, TGMParseResult& outResult) {
    std::string dump;
    TGMParseOptions options = documentOptions();
    options.debugLog = &dump;
    TGMParser parser(options);
    outResult = parser.parse(document);
    return dump;
}
