#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "text/tgm_translator.h"

// The lists that are open at one point of a text, and the markers of their items.
class ListStack {
public:
    void open(TGMListKind kind) { lists_.push_back({0, kind}); }
    // Nothing happens when no list is open.
    void close();
    std::size_t depth() const { return lists_.size(); }

    // Appends the marker of the next item of the innermost list, with its blank: `bullet`, a number or a
    // letter. Letters go on past "z" as the next byte values, whatever those are; that is part of the
    // dialect. Appends nothing without a list.
    void appendNextMarker(std::string& out, char bullet);
    // The width of the next item's marker, in characters; 0 without a list. As the current item has been
    // counted already, the text of item 9 is indented for the marker "10.".
    std::size_t markerWidth() const;

private:
    struct OpenList {
        std::uint32_t counter;  // items begun so far
        TGMListKind kind;
    };

    std::vector<OpenList> lists_;
};
