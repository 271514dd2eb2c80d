#include "checking/document_check.h"

#include <optional>
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

// A document with more losses than these is probably in another format.
constexpr std::size_t kMostLosses = 20;

class DocumentCheck {
public:
    DocumentCheck(const CheckContext& context, const PackedFiles& files) : context_(context), files_(files) {}

    void run() {
        for (const AliasUse& use : aliasUsesOf(context_)) {
            const PackedFile* const file = files_.findAlias(use.alias);
            const std::optional<DocumentFormat> format = formatOf(use);
            const bool isPacked = file != nullptr && file->source.kind == FileSource::Kind::kRoot;
            if (format && isPacked && seen_.insert({use.alias, *format}).second) {
                checkDocument(use.node, *file, *format);
            }
        }
    }

private:
    // Only one element shows rich text; the others show a text without a format as it is, or as HTML.
    std::optional<DocumentFormat> formatOf(const AliasUse& use) const {
        if (use.kind != AliasUse::Kind::kDocument) {
            return std::nullopt;
        }
        const DocumentFormat format = documentFormat(context_.attribute(use.node, "Format").value_or(""));
        const bool isRichText = OUtils::equalsIgnoreCase(context_.xml().getName(use.node), "RichEditText");
        return format == DocumentFormat::kOfElement && !isRichText ? std::nullopt : std::optional(format);
    }

    void checkDocument(std::int32_t node, const PackedFile& file, DocumentFormat format) {
        std::string document;
        if (OUtils::readWholeFile(files_.pathOf(file.source), document, context_.files()) != 0) {
            return;
        }
        if (const std::string fault = documentFault(document, format); !fault.empty()) {
            context_.addAtText("document-broken", node, inQuotes(file.text) + ": " + fault);
        }
        const std::vector<std::string> losses = lossesOf(document, format);
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
    std::set<std::pair<std::string, DocumentFormat>> seen_;
};

}  // namespace

void checkDocuments(const CheckContext& context, const PackedFiles& files) {
    DocumentCheck(context, files).run();
}
