#include "engine/description_tags.h"

#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

std::int32_t DescriptionTags::nextGroup(vocabulary::ElementName name, std::int32_t after) {
    return nextContainer(name, after);
}

std::int32_t DescriptionTags::nextContainer(std::string_view name, std::int32_t after) {
    std::int32_t node = description_.findByName(name, after);
    while (node >= 0 && !conditionHolds(node)) {
        node = description_.findByName(name, node);
    }
    return node;
}

std::int32_t DescriptionTags::firstOf(vocabulary::ElementName name) {
    return description_.findByName(name);
}

std::vector<std::int32_t> DescriptionTags::childrenOf(std::int32_t node) {
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    return children;
}

std::string_view DescriptionTags::nameOf(std::int32_t node) {
    return description_.getName(node);
}

bool DescriptionTags::isCalled(std::int32_t node, vocabulary::ElementName name) {
    return vocabulary::isCalled(description_, node, name);
}

std::optional<std::string_view> DescriptionTags::textOf(std::int32_t node) {
    return description_.getText(node);
}

std::optional<std::string_view> DescriptionTags::requiredTextOf(std::int32_t node) {
    const auto text = textOf(node);
    return text && !OUtils::trimWhiteSpace(*text).empty() ? text : std::nullopt;
}

std::optional<std::string_view> DescriptionTags::attribute(std::int32_t node,
                                                           vocabulary::AttributeName name) {
    return description_.getAttribute(node, name);
}

bool DescriptionTags::holds(std::optional<std::string_view> condition) {
    return expressions_.holds(condition);
}

bool DescriptionTags::isSet(std::int32_t node, vocabulary::AttributeName name) {
    const auto condition = attribute(node, name);
    return condition && holds(condition);
}

std::string DescriptionTags::expand(std::optional<std::string_view> text, bool stopOnMissing) {
    return expressions_.expandWhole(text.value_or(""), stopOnMissing);
}

std::string DescriptionTags::expandForSystem(std::optional<std::string_view> text, bool stopOnMissing) {
    return expressions_.expandWholeForSystem(text.value_or(""), stopOnMissing);
}
