#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "text/tgm_translator.h"

// The lists that are open at a place of a text, and the markers of their items.
class ListStack {
public:
    void open(TGMListKind kind) { lists_.push_back({0, kind}); }
    // Nothing happens when no list is open.
    void close();
    std::size_t depth() const { return lists_.size(); }

    // Appends the marker of the next item of the innermost list, with its blank: `bullet`, a number or a
    // letter. Letters go on past "z" as the next byte values, whatever those are. Nothing without a list.
    void appendNextMarker(std::string& out, char bullet);
    // The characters that the next item's marker would take; 0 without a list. A text of the tenth item is
    // set in for the number eleven, and its ninth for the number ten.
    std::size_t markerWidth() const;

private:
    struct OpenList {
        std::uint32_t counter;  // the items that were begun
        TGMListKind kind;
    };

    std::vector<OpenList> lists_;
};
