#include "checking/text_uses.h"

#include <algorithm>

#include "base/text_functions.h"
#include "checking/check_context.h"

namespace {

using References = TextUse::References;
using vocabulary::Kind;

References referencesOf(Kind kind) {
    switch (kind) {
        case Kind::kExpandedText:
        case Kind::kCondition:
            return References::kBrackets;
        case Kind::kVariable:
            return References::kName;
        default:
            return References::kNone;
    }
}

bool isTrue(std::optional<std::string_view> condition) {
    return condition && *condition != "0" && *condition != "1==0" && *condition != "0==1";
}

// The sources of default values that replace references.
References referencesOfValue(const CheckContext& context, std::int32_t node) {
    const std::string_view type = context.attribute(node, "DataType").value_or("");
    return OUtils::startsWithIgnoreCase(type, "value") || OUtils::startsWithIgnoreCase(type, "checkfile")
               ? References::kDollars
               : References::kNone;
}

// Of the elements of a page only a Text does so, on request.
bool expandsVariables(const CheckContext& context, std::int32_t node) {
    return OUtils::equalsIgnoreCase(context.xml().getName(node), "Text") &&
           context.attribute(node, "ExpandVars").has_value();
}

// Registry changes replace references only on request, and a few texts have other readers.
References textReferences(const CheckContext& context, std::int32_t node, const grammar::ElementRule& rule) {
    if (rule.type == "Value") {
        return referencesOfValue(context, node);
    }
    if (rule.type == "AddValue") {
        return isTrue(context.attribute(node, "Expand")) ? References::kBrackets : References::kNone;
    }
    if (rule.type == grammar::kPageElement) {
        return expandsVariables(context, node) ? References::kBrackets : References::kNone;
    }
    if (rule.type == "Variable") {
        return context.attribute(node, "From") ? References::kNone : References::kName;
    }
    return referencesOf(grammar::kindOfText(rule));
}

bool isKeyOfRegistry(std::string_view type) {
    return type == "AddValue" || type == "AddKey" || type == "RemoveValue" || type == "RemoveKey";
}

References attributeReferences(const CheckContext& context, std::int32_t node, std::string_view type,
                               std::string_view name, Kind kind) {
    if (type == "Trigger" && name == "Value") {
        const std::string_view word = context.attribute(node, "Type").value_or("");
        return OUtils::equalsIgnoreCase(word, "RunActions") ? References::kNone : References::kBrackets;
    }
    if (isKeyOfRegistry(type) && kind == Kind::kExpandedText && name != "Log") {
        return isTrue(context.attribute(node, "Expand")) ? References::kBrackets : References::kNone;
    }
    return name == "Name" && type == "Value" ? References::kNone : referencesOf(kind);
}

}  // namespace

void forEachText(const CheckContext& context, const std::function<void(const TextUse& use)>& visit) {
    for (std::int32_t node = 0; node < context.xml().getNodeCount(); ++node) {
        const grammar::ElementRule* const rule = context.ruleOf(node);
        if (rule == nullptr) {
            continue;
        }
        const PXMLNode& element = *context.xml().getNode(node);
        if (!context.text(node).empty()) {
            visit({node,
                   std::nullopt,
                   {},
                   context.text(node),
                   grammar::kindOfText(*rule),
                   textReferences(context, node, *rule)});
        }
        const std::vector<const grammar::AttributeRule*> rules = grammar::attributesOf(rule->type);
        for (std::size_t i = 0; i < element.attributes.size(); ++i) {
            const auto found = std::ranges::find_if(rules, [&](const grammar::AttributeRule* known) {
                return OUtils::equalsIgnoreCase(known->name, element.attributes[i].name);
            });
            if (found != rules.end()) {
                const Kind kind = grammar::kindOf(rule->type, **found);
                visit({node, i, (*found)->name, *element.attributes[i].value, kind,
                       attributeReferences(context, node, rule->type, (*found)->name, kind)});
            }
        }
    }
}
