#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "description/pxml.h"
#include "description/vocabulary.h"

// Which elements may stand where in a description, and which attributes each of them has. The words are those
// of the vocabulary; tests see to it that none is missing here.
namespace grammar {

// Whether an element has a text of its own.
enum class Text {
    kNone,
    kOptional,
    kRequired,
};

struct ElementRule {
    std::string_view type;     // the element's name; with "@" and its parent where two elements share a name
    std::string_view parents;  // types, separated by blanks; kAnywhere for sections that are found by name
    Text text;
    std::uint32_t limit;  // of the text in bytes; 0 where it can't be too long
    bool isOnce;          // of several only the first counts
};

struct AttributeRule {
    std::string_view types;  // separated by blanks
    std::string_view name;
    bool isRequired;
    std::uint32_t limit;    // in bytes; 0 where it can't be too long
    std::string_view list;  // the name of a list of words; empty without one
};

// Parents of what is found at any level.
inline constexpr std::string_view kAnywhere = "(anywhere)";
// Types of elements with names of the author's, or with one of a list.
inline constexpr std::string_view kPage = "(page)";
inline constexpr std::string_view kTask = "(task)";
inline constexpr std::string_view kContainer = "(container)";
inline constexpr std::string_view kControlVariable = "(control variable)";
inline constexpr std::string_view kExcludedVariable = "(excluded variable)";
inline constexpr std::string_view kColour = "(colour)";
inline constexpr std::string_view kPattern = "(pattern)";
inline constexpr std::string_view kPageElement = "(element)";

std::span<const ElementRule> elementRules();
std::span<const AttributeRule> attributeRules();

// The name of the elements of a type; empty where there are several, or the author is free to choose.
std::string_view nameOf(const ElementRule& rule);
// All names that they may have; none where the author is free to choose.
std::span<const std::string_view> namesOf(const ElementRule& rule);
bool listsType(std::string_view types, std::string_view type);
// The words of the vocabulary's list of this name; empty when there is none.
std::span<const std::string_view> wordsOf(std::string_view list);
// Whether its words are compared byte for byte; otherwise the case of ASCII letters doesn't count.
bool isExactList(std::string_view list);

// The type of an element with this name below one of the type `parent` (empty at the top). Null for an
// element that has no place there.
const ElementRule* elementRule(std::string_view parent, std::string_view name);
// The rules of all attributes of a type.
std::vector<const AttributeRule*> attributesOf(std::string_view type);
// What the attribute's text is read as.
vocabulary::Kind kindOf(std::string_view type, const AttributeRule& rule);
vocabulary::Kind kindOfText(const ElementRule& rule);

// The types of all elements of a document: one for each node, null for what has no place where it stands.
// Below such an element nothing has a type.
std::vector<const ElementRule*> typesOf(const PXML& description);

}  // namespace grammar
