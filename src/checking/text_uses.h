#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "description/vocabulary.h"

class CheckContext;

// A text of a description, and what a setup reads it as.
struct TextUse {
    // What is done with references in it.
    enum class References {
        kNone,      // they are shown as they are written
        kBrackets,  // [NAME]
        kDollars,   // $NAME
        kName,      // the whole text is a name
    };

    std::int32_t node;
    std::optional<std::size_t> attribute;  // its index; nothing for the text of the element
    std::string_view name;                 // of the attribute; empty for the text
    std::string_view text;
    vocabulary::Kind kind;
    References references;
};

// Visits every text of the elements that have a place, in their order.
void forEachText(const CheckContext& context, const std::function<void(const TextUse& use)>& visit);
