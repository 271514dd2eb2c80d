#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/path_functions.h"
#include "description/vocabulary.h"

class Expressions;
class PXML;

// What the walkers of the description's tags have in common: groups of elements by name, their children, and
// texts in which variables have their values.
class DescriptionTags {
public:
    // Both outlive this object.
    DescriptionTags(const PXML& description, Expressions& expressions)
        : description_(description), expressions_(expressions) {}

    // The first element of that name after `after`, at any depth, whose Condition isn't false; -1 when there
    // is none.
    std::int32_t nextGroup(vocabulary::ElementName name, std::int32_t after);
    // The same for a container of actions, whose name the description is free to choose.
    std::int32_t nextContainer(std::string_view name, std::int32_t after);
    // The first element of that name, whatever its condition says; -1 when there is none.
    std::int32_t firstOf(vocabulary::ElementName name);
    std::vector<std::int32_t> childrenOf(std::int32_t node);

    // The views are good as long as the description.
    std::string_view nameOf(std::int32_t node);
    // Without regard to ASCII case.
    bool isCalled(std::int32_t node, vocabulary::ElementName name);
    std::optional<std::string_view> textOf(std::int32_t node);
    // As textOf, but an empty text, or one of white space, counts as none: an element that needs its text is
    // left out then, so that `<Replace VarName="PATH"></Replace>` doesn't empty PATH.
    std::optional<std::string_view> requiredTextOf(std::int32_t node);
    std::optional<std::string_view> attribute(std::int32_t node, vocabulary::AttributeName name);
    bool hasAttribute(std::int32_t node, vocabulary::AttributeName name) {
        return attribute(node, name).has_value();
    }

    // Only a condition that is evaluated to 0 doesn't hold: neither a missing nor a broken one does.
    bool holds(std::optional<std::string_view> condition);
    bool conditionHolds(std::int32_t node) { return holds(attribute(node, "Condition")); }
    // As holds, but a missing condition is false.
    bool isSet(std::int32_t node, vocabulary::AttributeName name);

    // Empty for a missing text; cut at Expressions::kWholeLimit. With `stopOnMissing` a variable that isn't
    // there empties the whole text.
    std::string expand(std::optional<std::string_view> text, bool stopOnMissing = false);
    // The same for a text that leaves the program (Expressions::expandForSystem).
    std::string expandForSystem(std::optional<std::string_view> text, bool stopOnMissing = false);
    std::string expandAttribute(std::int32_t node, vocabulary::AttributeName name) {
        return expand(attribute(node, name));
    }

private:
    const PXML& description_;
    Expressions& expressions_;
};

using OUtils::collapsedPath;
using OUtils::normalizedPath;
