#include "checking/document_fault.h"

#include <algorithm>
#include <vector>

#include "text/rtf_reader.h"
#include "text/tgm_parser.h"

namespace {

// Enough of a text to recognise it.
constexpr std::size_t kQuotedLength = 40;
constexpr int kAnyWidth = 80;

constexpr std::string_view kEmphasisAdvice =
    "can't be resolved: write \\* and \\_ for each star and underscore that is no markup";
constexpr std::string_view kBlockAdvice =
    "this block has no valid structure or nests too deeply: set fewer lists and quotes into each other";

std::string atLine(std::size_t line) {
    return "line " + std::to_string(line) + ": ";
}

bool hasPair(std::string_view text, char mark) {
    std::size_t count = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '\\') {
            ++index;
        } else if (text[index] == mark) {
            ++count;
        }
    }
    return count >= 2;
}

// A text whose emphasis was found has become children or has the type of the emphasis; one whose emphasis
// could not be resolved keeps its marks.
bool isUnresolved(const TGMNode& node) {
    if (node.text.isEmpty() || node.type == kTgmBold || node.type == kTgmItalic) {
        return false;
    }
    const std::string_view text = node.text.view();
    return hasPair(text, '*') || hasPair(text, '_');
}

// Without recursion, in the order of the document.
const TGMNode* firstUnresolved(const TGMNode* root) {
    std::vector<const TGMNode*> waiting;
    if (root != nullptr) {
        waiting.push_back(root);
    }
    while (!waiting.empty()) {
        const TGMNode* const node = waiting.back();
        waiting.pop_back();
        if (isUnresolved(*node)) {
            return node;
        }
        for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) {
            waiting.push_back(child->get());
        }
    }
    return nullptr;
}

// The first line of the text that has a mark.
std::string markedLineOf(const TGMNode& node) {
    const std::string text(node.text.view());
    const std::size_t mark = text.find_first_of("*_");
    const std::size_t before = text.rfind('\n', mark);
    const std::size_t start = before == std::string::npos ? 0 : before + 1;
    return text.substr(start, text.find('\n', mark) - start);
}

std::string quoted(const std::string& text) {
    return '"' + (text.size() <= kQuotedLength ? text : text.substr(0, kQuotedLength) + "...") + '"';
}

// The parser gives no line for emphasis, so the unresolved text is searched for in the document.
std::string emphasisFault(const std::string& document, const TGMNode* root) {
    const TGMNode* const node = firstUnresolved(root);
    if (node == nullptr) {
        return "some emphasis " + std::string(kEmphasisAdvice);
    }
    const std::string text = markedLineOf(*node);
    const std::size_t offset = document.find(text);
    const std::string place = offset == std::string::npos ? "" : atLine(lineOfOffset(document, offset));
    return place + "the emphasis in " + quoted(text) + " " + std::string(kEmphasisAdvice);
}

}  // namespace

std::size_t lineOfOffset(std::string_view document, std::size_t offset) {
    const std::string_view before = document.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

std::string markdownFault(std::string_view document) {
    const std::string text(document.substr(0, document.find('\0')));
    // A broken quote is in the tree only when the parser goes on after errors.
    TGMParseOptions options;
    options.keepGoing = true;
    TGMParser parser(options);
    const TGMParseResult result = parser.parse(text);
    if ((result.errors & (kTgmNullText | kTgmEmptyText)) != 0) {
        return "the document is empty: a setup shows nothing";
    }
    if ((result.errors & kTgmInvalidBlock) != 0) {
        return (result.line == UINT32_MAX ? "" : atLine(std::size_t{result.line} + 1)) +
               std::string(kBlockAdvice);
    }
    return emphasisFault(text, parser.getRoot());
}

std::string richTextFault(std::string_view document) {
    RtfReader reader;
    reader.read(document, RtfMode::kPlain, 0);
    const RtfFault& fault = reader.getFault();
    const std::string place = atLine(lineOfOffset(document, fault.offset));
    if (fault.openGroups == 0) {
        return place + "this } closes nothing: remove it, or write \\} for a brace of the text";
    }
    const std::string groups =
        fault.openGroups == 1 ? "1 group is" : std::to_string(fault.openGroups) + " groups are";
    return place + groups + " still open at the end: write the missing }, or \\{ for a brace of the text";
}

std::string documentFault(std::string_view document, DocumentFormat format) {
    switch (format) {
        case DocumentFormat::kMarkdown:
            return markdownAsText(document, kAnyWidth) ? "" : markdownFault(document);
        case DocumentFormat::kOfElement:
            return richTextAsText(document, kAnyWidth) ? "" : richTextFault(document);
        case DocumentFormat::kVerbatim:
            break;
    }
    return {};
}
