#include "checking/alias_uses.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/references.h"
#include "description/vocabulary_lookup.h"

namespace {

using Kind = AliasUse::Kind;

struct NamedKind {
    vocabulary::WordName word;
    Kind meaning;
};
constexpr NamedKind kKinds[] = {
    {"RichEditText", Kind::kDocument}, {"PlainEditText", Kind::kDocument}, {"HtmlEditText", Kind::kDocument},
    {"Image", Kind::kPicture},         {"SlideShow", Kind::kSlides},
};

constexpr std::string_view kLargerForms[] = {"@2x", "@3x"};
constexpr std::string_view kPicturesOfWindow[] = {
    "AppIcon", "icon_not_started", "icon_current", "icon_good_finish", "icon_bad_finish", "icon_inactive",
};

void addElement(const CheckContext& context, std::int32_t node, std::vector<AliasUse>& uses) {
    const std::optional<Kind> kind = vocabulary::meaningOf(kKinds, context.xml().getName(node));
    const std::string text(context.text(node));
    if (!kind || text.empty() || context.enclosing(node, "Dialogs") < 0) {
        return;
    }
    if (kind == Kind::kSlides) {
        const std::int32_t count = OUtils::textToInteger(text);
        const std::string name(context.attribute(node, "Name").value_or(""));
        if (count > 0 && !name.empty()) {
            uses.push_back({Kind::kSlides, node, name, count});
        }
        return;
    }
    uses.push_back({*kind, node, text});
}

// As the action reads it: the alias counts as a path unless the description says otherwise.
void addAction(const CheckContext& context, std::int32_t node, std::vector<AliasUse>& uses) {
    const std::string_view text = context.text(node);
    const std::string_view details = context.attribute(node, "Details").value_or("");
    if (!text.empty() && bracketReferences(text).empty()) {
        const bool isPath = details.find("NoPathCorrection") == std::string_view::npos;
        uses.push_back({Kind::kCreatedFile, node,
                        isPath ? OUtils::normalizedPath(std::string(text)) : std::string(text)});
    }
}

}  // namespace

std::vector<AliasUse> aliasUsesOf(const CheckContext& context) {
    std::vector<AliasUse> uses;
    for (const std::int32_t node : context.nodesOf(grammar::kPageElement)) {
        addElement(context, node, uses);
    }
    for (const std::int32_t node : context.nodesOf("CreateFile")) {
        addAction(context, node, uses);
    }
    if (const std::int32_t icon = context.firstOf("Icon"); icon >= 0 && !context.text(icon).empty()) {
        uses.push_back({Kind::kIcon, icon, std::string(context.text(icon))});
    }
    std::ranges::stable_sort(uses, {}, &AliasUse::node);
    return uses;
}

bool hasOpenAlias(const CheckContext& context) {
    return std::ranges::any_of(context.nodesOf("CreateFile"), [&](std::int32_t node) {
        return !bracketReferences(context.text(node)).empty();
    });
}

std::vector<std::string> formsOf(std::string_view alias) {
    std::vector<std::string> forms = {std::string(alias)};
    for (const std::string_view form : kLargerForms) {
        forms.push_back(std::string(alias) + std::string(form));
    }
    return forms;
}

std::string_view withoutForm(std::string_view alias) {
    for (const std::string_view form : kLargerForms) {
        if (alias.ends_with(form)) {
            return alias.substr(0, alias.size() - form.size());
        }
    }
    return alias;
}

UsedAliases::UsedAliases(const std::vector<AliasUse>& uses, Which which) {
    for (const std::string_view picture : kPicturesOfWindow) {
        names_.emplace(picture);
    }
    for (const AliasUse& use : uses) {
        if (use.kind == Kind::kSlides) {
            std::int32_t& count = slides_[use.alias];
            count = std::max(count, use.count);
        } else if (use.kind == Kind::kPicture || which == Which::kAll) {
            names_.insert(use.alias);
        }
    }
}

bool UsedAliases::contains(std::string_view alias) const {
    const std::string_view picture = withoutForm(alias);
    return names_.contains(std::string(alias)) || names_.contains(std::string(picture)) || isSlide(picture);
}

// The name of its show may end in a digit, too.
bool UsedAliases::isSlide(std::string_view alias) const {
    constexpr std::size_t kMostDigits = 10;
    for (std::size_t digits = 1; digits <= std::min(kMostDigits, alias.size()); ++digits) {
        const std::size_t end = alias.size() - digits;
        if (alias[end] < '0' || alias[end] > '9') {
            return false;
        }
        const auto show = slides_.find(std::string(alias.substr(0, end)));
        std::int64_t number = 0;
        std::from_chars(alias.data() + end, alias.data() + alias.size(), number);
        if (show != slides_.end() && number < show->second && std::to_string(number).size() == digits) {
            return true;
        }
    }
    return false;
}
