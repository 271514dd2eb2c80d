#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/rtf_reader.h"
#include "text/tgm_parse_options.h"

class TGMTranslator;

// The words by which a description marks a document of the markdown dialect, and one that is shown as it is
// written (verbatim_text.h).
inline constexpr std::string_view kMarkdownFormat = "TandrelMarkdown";
inline constexpr std::string_view kVerbatimFormat = "TandrelText";

// What the attribute Format makes of a document. Any other word, or none, leaves it to the kind of the
// element that shows it: rich text, HTML or plain text.
enum class DocumentFormat { kOfElement, kMarkdown, kVerbatim };

// ASCII case makes no difference.
DocumentFormat documentFormat(std::string_view word);

// These functions convert a document of a product to a form that users or authors read. A document ends at
// its first zero byte. A broken document gives nothing; an empty markdown document counts as broken, an empty
// rich text does not.

// As plain text for a console of `columns` cells: lines are two bytes shorter, words that don't fit get lines
// of their own, and each line ends with a line feed.
std::optional<std::string> markdownAsText(std::string_view document, int columns);
std::optional<std::string> richTextAsText(std::string_view document, int columns);

// What the rules of the readers leave out of a document or show otherwise than it is written, up to the first
// fault. The sources of the second are views into the document.
std::vector<TGMLoss> lossesOfMarkdown(std::string_view document);
std::vector<RtfLoss> lossesOfRichText(std::string_view document);

// Hands a markdown document to a translator. False, with nothing handed over, if the document is broken.
bool walkMarkdown(std::string_view document, TGMTranslator& translator);

// As a whole HTML page.
std::optional<std::string> markdownAsHtml(std::string_view document);

// The kinds of the lines and the trees that the parser made of them, for authors who want to know why a
// document looks as it does. A broken document gives what was understood until then; `outResult` says where
// it is broken.
std::string markdownAsTree(std::string_view document, TGMParseResult& outResult);
