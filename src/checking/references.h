#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// A reference to a variable in a text, as the expansion of the setups reads it.
struct Reference {
    std::string_view name;  // a part of the text; may be empty or hold anything
    std::size_t at = 0;     // of the `[` or `$`
    std::size_t end = 0;    // behind it
    bool isClosed = true;   // false: no `]` follows
};

// The references [NAME] of a text, in their order.
std::vector<Reference> bracketReferences(std::string_view text);
// The references $NAME.
std::vector<Reference> dollarReferences(std::string_view text);

// Whether a name can be the one of a variable that references find: ASCII letters, digits and `_`.
bool isPlainVariableName(std::string_view name);
// Whether a setup can find a variable, or one of the environment, by a name between brackets.
bool isReferenceName(std::string_view name);
// Whether a name, with or without its `$`, is that of an environment variable.
bool isEnvironmentName(std::string_view name);
