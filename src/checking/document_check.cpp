#include "checking/document_check.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/text_functions.h"
#include "checking/alias_uses.h"
#include "checking/check_context.h"
#include "checking/document_fault.h"
#include "checking/document_losses.h"
#include "checking/packed_files.h"
#include "checking/quoted_text.h"
#include "description/vocabulary_lookup.h"
#include "support/utilities.h"
#include "text/document_text.h"

namespace {

constexpr int kAnyWidth = 80;
// A document with more losses than these is probably in another format.
constexpr std::size_t kMostLosses = 20;

enum class Format { kMarkdown, kRichText, kOther };

class DocumentCheck {
public:
    DocumentCheck(const CheckContext& context, const PackedFiles& files) : context_(context), files_(files) {}

    void run() {
        for (const AliasUse& use : aliasUsesOf(context_)) {
            const PackedFile* const file = files_.findAlias(use.alias);
            const Format format = formatOf(use);
            const bool isDocument = use.kind == AliasUse::Kind::kDocument && format != Format::kOther;
            if (isDocument && file != nullptr && file->source.kind == FileSource::Kind::kRoot &&
                seen_.insert({use.alias, format}).second) {
                checkDocument(use.node, *file, format);
            }
        }
    }

private:
    // Only one element shows rich text; the others show it as it is, or as HTML.
    Format formatOf(const AliasUse& use) const {
        const std::string_view format = context_.attribute(use.node, "Format").value_or("");
        if (OUtils::equalsIgnoreCase(format, kMarkdownFormat)) {
            return Format::kMarkdown;
        }
        const std::string_view element = context_.xml().getName(use.node);
        return OUtils::equalsIgnoreCase(element, "RichEditText") ? Format::kRichText : Format::kOther;
    }

    void checkDocument(std::int32_t node, const PackedFile& file, Format format) {
        std::string document;
        if (OUtils::readWholeFile(files_.pathOf(file.source), document, context_.files()) != 0) {
            return;
        }
        const bool isRichText = format == Format::kRichText;
        const bool isShown =
            (isRichText ? richTextAsText(document, kAnyWidth) : markdownAsText(document, kAnyWidth))
                .has_value();
        if (!isShown) {
            context_.addAtText("document-broken", node,
                               inQuotes(file.text) + ": " +
                                   (isRichText ? richTextFault(document) : markdownFault(document)));
        }
        const std::vector<std::string> losses = lossesOf(document, isRichText);
        for (std::size_t i = 0; i < losses.size(); ++i) {
            if (i == kMostLosses) {
                context_.addAtText("document-loss", node,
                                   inQuotes(file.text) + ": " + std::to_string(losses.size() - i) +
                                       " more places aren't shown as they are written");
                break;
            }
            context_.addAtText("document-loss", node, inQuotes(file.text) + ": " + losses[i]);
        }
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    std::set<std::pair<std::string, Format>> seen_;
};

}  // namespace

void checkDocuments(const CheckContext& context, const PackedFiles& files) {
    DocumentCheck(context, files).run();
}
