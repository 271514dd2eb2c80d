#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The five characters that have a name in XML text.
namespace PXMLEntities {

// Decodes into `out`, which has room for the length of `text`: one pass, and everything but the five names
// stays as it is, numbers included. Returns the length.
std::size_t decode(std::string_view text, char* out);

// Appends `text` with each of the five characters replaced by its name.
void appendEscaped(std::string& out, std::string_view text);

// The five names, each from its `&` to its `;`.
std::vector<std::string_view> names();

}  // namespace PXMLEntities
