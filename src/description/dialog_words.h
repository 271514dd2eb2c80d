#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// The words of dialogs in the description, each with the number that it stands for. Words ignore ASCII case;
// a null word is unknown.
namespace DialogWords {

// The kind of an element by its XML name; -1 when it isn't one.
std::int32_t elementKind(const char* word);
// The type of a field; -1 when unknown.
std::int32_t fieldType(const char* word);
// Alignments; 0 when unknown.
std::int32_t horizontalAlign(const char* word);
std::int32_t verticalAlign(const char* word);
// The type of a trigger; -1 when unknown.
std::int32_t triggerType(const char* word);

// Lists of words separated by `;`, as a set of bits; unknown words and null add nothing.
std::uint32_t special(const char* words);
std::uint32_t triggerMoments(const char* words);

// All words of a kind, so that the manual can be held against them.
std::vector<std::string_view> allElementKinds();
std::vector<std::string_view> allFieldTypes();
std::vector<std::string_view> allHorizontalAligns();
std::vector<std::string_view> allVerticalAligns();
std::vector<std::string_view> allTriggerTypes();
std::vector<std::string_view> allSpecials();
std::vector<std::string_view> allTriggerMoments();

}  // namespace DialogWords
