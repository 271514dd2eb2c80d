#include "checking/document_losses.h"

#include <algorithm>
#include <utility>

#include "checking/document_fault.h"
#include "text/utf8_check.h"

namespace {

// Enough of a text to recognise it.
constexpr std::size_t kQuotedLength = 40;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view describe(TGMLossKind kind) {
    switch (kind) {
        case TGMLossKind::kJoinedHeading:
            return "this heading is shown as text of the paragraph above it: put a blank line before it";
        case TGMLossKind::kJoinedList:
            return "this list is shown as text of the paragraph above it: put a blank line before it";
        case TGMLossKind::kRenumberedItem:
            return "this item isn't shown with its own number: a list is numbered anew from its beginning";
        case TGMLossKind::kQuotedLine:
            return "this line isn't shown: put a blank line after the quote above it";
        case TGMLossKind::kQuotedCharacter:
            return "the character after > isn't shown: put a space there";
    }
    return "";
}

std::string_view adviceOf(RtfLossKind kind) {
    switch (kind) {
        case RtfLossKind::kByte:
            return "write the letter itself, in UTF-8";
        case RtfLossKind::kCharacter:
            return "write the character itself, in UTF-8, or \\par for a new line";
        case RtfLossKind::kSoftHyphen:
            return "remove the soft hyphen, which takes the text up to the next space along";
        case RtfLossKind::kTab:
            return "write \\tab";
        case RtfLossKind::kControl:
            return "remove it";
        case RtfLossKind::kGroup:
            return "write its text without braces around it";
    }
    return "";
}

std::string sourceOf(const RtfLoss& loss) {
    if (loss.kind == RtfLossKind::kTab) {
        return "a tab";
    }
    if (loss.kind == RtfLossKind::kControl) {
        return "a control character";
    }
    const std::string start(loss.source.substr(0, kQuotedLength));
    return loss.source.size() > kQuotedLength ? start + "..." : start;
}

// The losses of one kind in one line of the document.
struct LossLine {
    std::size_t line;
    RtfLossKind kind;
    std::string sources;
};

void add(std::vector<LossLine>& lines, std::size_t line, const RtfLoss& loss) {
    if (lines.empty() || lines.back().line != line || lines.back().kind != loss.kind) {
        lines.push_back({line, loss.kind, sourceOf(loss)});
    } else if (lines.back().sources.size() < kQuotedLength) {
        lines.back().sources += " " + sourceOf(loss);
    } else if (!lines.back().sources.ends_with("...")) {
        lines.back().sources += " ...";
    }
}

std::string startOf(std::size_t line) {
    return "line " + std::to_string(line) + ": ";
}

std::vector<std::string> lossesByRules(std::string_view document, DocumentFormat format) {
    switch (format) {
        case DocumentFormat::kMarkdown:
            return markdownLosses(document);
        case DocumentFormat::kVerbatim:
            return verbatimLosses(document);
        case DocumentFormat::kOfElement:
            break;
    }
    return richTextLosses(document);
}

}  // namespace

std::vector<std::string> markdownLosses(std::string_view document) {
    std::vector<TGMLoss> losses = lossesOfMarkdown(document);
    std::sort(losses.begin(), losses.end(), [](const TGMLoss& a, const TGMLoss& b) {
        return a.line != b.line ? a.line < b.line : a.kind < b.kind;
    });
    losses.erase(std::unique(losses.begin(), losses.end()), losses.end());
    std::vector<std::string> texts;
    texts.reserve(losses.size());
    for (const TGMLoss& loss : losses) {
        texts.push_back(startOf(std::size_t{loss.line} + 1).append(describe(loss.kind)));
    }
    return texts;
}

std::vector<std::string> richTextLosses(std::string_view document) {
    std::vector<LossLine> lines;
    std::size_t line = 1;
    std::size_t counted = 0;
    for (const RtfLoss& loss : lossesOfRichText(document)) {
        line += lineOfOffset(document.substr(counted), loss.offset - counted) - 1;
        counted = loss.offset;
        add(lines, line, loss);
    }
    std::vector<std::string> texts;
    for (const LossLine& loss : lines) {
        texts.push_back(startOf(loss.line) + "left out: " + loss.sources + ": ");
        texts.back() += adviceOf(loss.kind);
    }
    return texts;
}

std::vector<std::string> verbatimLosses(std::string_view document) {
    document = document.substr(0, document.find('\0'));
    std::vector<std::string> texts;
    for (std::size_t line = 1; !document.empty(); ++line) {
        const std::size_t end = std::min(document.find('\n'), document.size());
        if (findInvalidUtf8(document.substr(0, end)).has_value()) {
            texts.push_back(startOf(line) + "there are bytes that aren't UTF-8: save it as UTF-8");
        }
        document.remove_prefix(std::min(end + 1, document.size()));
    }
    return texts;
}

std::vector<std::string> lossesOf(std::string_view document, DocumentFormat format) {
    std::vector<std::string> texts;
    const std::size_t zero = document.find('\0');
    if (zero != std::string_view::npos) {
        texts.push_back(startOf(lineOfOffset(document, zero)) +
                        "the document ends here at a zero byte: save it as UTF-8");
    }
    if (document.starts_with(kByteOrderMark) && format != DocumentFormat::kVerbatim) {
        texts.emplace_back("there is a byte order mark before the first line: save it without one");
    }
    for (std::string& loss : lossesByRules(document, format)) {
        texts.push_back(std::move(loss));
    }
    return texts;
}
