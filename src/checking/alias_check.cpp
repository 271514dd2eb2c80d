#include "checking/alias_check.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "checking/alias_uses.h"
#include "checking/check_context.h"
#include "checking/nearest_word.h"
#include "checking/packed_files.h"
#include "checking/quoted_text.h"

namespace {

using Kind = AliasUse::Kind;

// Nobody looks for a misspelling among more than these.
constexpr std::size_t kMostSuggestions = 1000;

class AliasCheck {
public:
    AliasCheck(const CheckContext& context, const PackedFiles& files)
        : context_(context), files_(files), uses_(aliasUsesOf(context)) {}

    void run() {
        if (files_.areAllKnown()) {
            for (const AliasUse& use : uses_) {
                checkUse(use);
            }
        }
        checkRepetition();
        checkUnused();
    }

private:
    void checkUse(const AliasUse& use) {
        if (use.kind == Kind::kSlides) {
            checkSlides(use);
        } else if (!isPacked(use.alias, use.kind == Kind::kPicture)) {
            context_.addAtText("alias-unknown", use.node, "no file has the alias " + inQuotes(use.alias),
                               suggestionFor(use.alias));
        }
    }

    void checkSlides(const AliasUse& use) {
        for (std::int32_t i = 0; i < use.count; ++i) {
            const std::string slide = use.alias + std::to_string(i);
            if (!isPacked(slide, true)) {
                context_.addAtText("alias-unknown", use.node,
                                   "no file has the alias " + inQuotes(slide) + " of this slide show");
                return;
            }
        }
    }

    bool isPacked(const std::string& alias, bool isPicture) const {
        const std::vector<std::string> forms = isPicture ? formsOf(alias) : std::vector<std::string>{alias};
        return std::ranges::any_of(forms, [this](const std::string& form) { return files_.hasAlias(form); });
    }

    std::string suggestionFor(const std::string& alias) const {
        std::vector<std::string_view> known;
        for (const PackedFile& file : files_.all()) {
            if (known.size() < kMostSuggestions) {
                known.emplace_back(file.alias);
            }
        }
        const std::string_view nearest = nearestWord(alias, known);
        return nearest.empty() ? std::string() : "Write " + inQuotes(nearest) + " if that is what is meant.";
    }

    // The packager takes one file for all of an alias, or none at all.
    void checkRepetition() {
        std::unordered_map<std::string_view, const PackedFile*> first;
        for (const PackedFile& file : files_.all()) {
            if (!isSurelyPacked(file)) {
                continue;
            }
            const auto [known, isNew] = first.try_emplace(file.alias, &file);
            if (!isNew && !isSame(known->second->source, file.source)) {
                context_.addAtElement("alias-repeated", file.node,
                                      inQuotes(file.text) + " and " + inQuotes(known->second->text) +
                                          " have the same alias " + inQuotes(file.alias));
            } else if (isNew && file.alias == "install.xml" &&
                       file.source.kind != FileSource::Kind::kDescription) {
                context_.addAtElement("alias-repeated", file.node,
                                      inQuotes(file.text) + " has the alias of the description");
            }
        }
    }

    bool isSurelyPacked(const PackedFile& file) const {
        using enum FileSource::Kind;
        const FileSource::Kind kind = file.source.kind;
        return kind != kOutside && kind != kMissing && !(kind == kUnknown && file.isOptional);
    }

    static bool isSame(const FileSource& a, const FileSource& b) {
        using enum FileSource::Kind;
        const bool isOneFile = a.kind == kImage || a.kind == kDescription;
        return a.kind == b.kind && (isOneFile || a.path == b.path);
    }

    void checkUnused() {
        if (hasOpenAlias(context_)) {
            return;
        }
        const UsedAliases used(uses_, UsedAliases::Which::kAll);
        for (const PackedFile& file : files_.all()) {
            if (!file.isInstalled() && !used.contains(file.alias)) {
                context_.addAtElement(
                    "file-unused", file.node,
                    inQuotes(file.text) + " is packed, and nothing uses its alias " + inQuotes(file.alias));
            }
        }
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    std::vector<AliasUse> uses_;
};

}  // namespace

void checkAliases(const CheckContext& context, const PackedFiles& files) {
    AliasCheck(context, files).run();
}
