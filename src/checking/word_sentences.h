#pragma once

#include <string_view>

// What the manual says of an element or attribute, for editors: words of docs/manual without their markup,
// which a test looks up there. `type` is one of the grammar; without an attribute the sentence is about the
// element. Empty for what has none.
std::string_view sentenceOf(std::string_view type, std::string_view attribute = {});
