#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// The words of dialogs in the description, each with the number that it stands for in the dialog model. Words
// ignore ASCII case.
namespace DialogWords {

// Nothing for an unknown word.
std::optional<std::int32_t> elementKind(std::string_view name);
std::optional<std::int32_t> fieldType(std::string_view word);
std::optional<std::int32_t> triggerType(std::string_view word);
// 0 for an unknown word.
std::int32_t horizontalAlign(std::string_view word);
std::int32_t verticalAlign(std::string_view word);

// Lists of words separated by `;`, as a set of bits; unknown words add nothing.
std::uint32_t special(std::string_view words);
std::uint32_t triggerMoments(std::string_view words);

}  // namespace DialogWords
