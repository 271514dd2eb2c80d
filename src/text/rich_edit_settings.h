#pragma once

#include <cstdint>

// How a text is put into a rich text control.
struct RichEditSettings {
    bool useColour = false;
    bool indentLists = true;
    std::uint32_t levelIndent = 120;  // tenths of a millimetre for each level of a list
    std::uint32_t colour = 0;
};
