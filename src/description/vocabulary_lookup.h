#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "base/text_functions.h"
#include "description/pxml.h"
#include "description/vocabulary.h"

// How readers look up words of the vocabulary.
namespace vocabulary {

// Results as those of PXML.
inline std::optional<std::string_view> attributeOf(const PXML& document, std::int32_t node,
                                                   AttributeName name) {
    return document.getAttribute(node, name);
}
inline bool hasAttribute(const PXML& document, std::int32_t node, AttributeName name) {
    return document.getAttribute(node, name).has_value();
}
inline std::int32_t findElement(const PXML& document, ElementName name, std::int32_t after = -1) {
    return document.findByName(name, after);
}
inline std::int32_t findChild(const PXML& document, std::int32_t parent, ElementName name) {
    return document.findChild(parent, name);
}
// Whether the node has this name, without regard to ASCII case.
inline bool isCalled(const PXML& document, std::int32_t node, ElementName name) {
    return OUtils::equalsIgnoreCase(document.getName(node), name.view());
}

// What a word stands for, without regard to ASCII case; nothing for a word that has no row.
template <typename Rows>
auto meaningOf(const Rows& rows, std::string_view word) -> std::optional<decltype(rows[0].meaning)> {
    for (const auto& row : rows) {
        if (OUtils::equalsIgnoreCase(row.word.view(), word)) {
            return row.meaning;
        }
    }
    return std::nullopt;
}

// Calls `visit` with each part of a text whose parts are separated by `;`, empty parts included. An empty
// text has none.
template <typename Visitor>
void forEachWord(std::string_view words, Visitor visit) {
    if (words.empty()) {
        return;
    }
    for (std::size_t end = words.find(';'); end != std::string_view::npos; end = words.find(';')) {
        visit(words.substr(0, end));
        words.remove_prefix(end + 1);
    }
    visit(words);
}

}  // namespace vocabulary
