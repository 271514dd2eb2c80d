#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/tgm_dump.h"
#include "text/tgm_line.h"
#include "text/tgm_parser.h"

// What became of a text: the result and the tree in the form of the dumps.
struct ParsedText {
    TGMParseResult result;
    std::string tree;  // empty without a root
};

inline ParsedText parseText(std::string_view text, const TGMParseOptions& options = {}) {
    ParsedText parsed;
    TGMParser parser(options);
    parsed.result = parser.parse(text);
    if (parser.getRoot() != nullptr) {
        dumpTgmTree(parsed.tree, *parser.getRoot());
    }
    return parsed;
}

// The tree of a text that has to be free of errors.
inline std::string treeOf(std::string_view text, const TGMParseOptions& options = {}) {
    const ParsedText parsed = parseText(text, options);
    return parsed.result.succeeded() ? parsed.tree : "error " + std::to_string(parsed.result.errors);
}

// `part`, `count` times.
inline std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    text.reserve(part.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

inline TGMParseOptions withoutLazyLists() {
    TGMParseOptions options;
    options.lazyLists = false;
    return options;
}

inline TGMParseOptions keepingGoing() {
    TGMParseOptions options;
    options.keepGoing = true;
    return options;
}
