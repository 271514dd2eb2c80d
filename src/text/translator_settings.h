#pragma once

#include <cstdint>
#include <string>

// How an HTML document is written. The texts are inserted as they are, without escaping.
struct HTMLSettings {
    bool emitHead = true;
    bool emitFoot = true;
    // Indents the blocks of the body by their nesting. The rows of head and foot have fixed levels and are
    // indented without this flag as well; only an `indentWidth` of 0 leaves them flat.
    bool indent = true;
    bool newlines = true;
    std::uint8_t indentWidth = 1;  // characters of one level
    std::uint8_t baseLevel = 2;    // the level of a block directly in the body
    char indentChar = '\t';
    char newlineChar = '\n';
    std::string title;       // replaces "[Untitled]" when it isn't empty
    std::string customHead;  // replaces the whole head when it isn't empty
    std::string customFoot;  // replaces the whole foot when it isn't empty
};

// The same for a window's HTML element, which takes the colour and size of a text from a font tag.
struct InstallerHTMLSettings {
    bool useColour = false;
    bool useSize = false;
    std::uint32_t colour = 0;  // 0xRRGGBB; the upper byte is ignored
    std::uint8_t size = 12;    // only its last decimal digit counts
    HTMLSettings html;
};

// How a text is written for a console or a plain text box.
struct PlainTextSettings {
    bool ansiBold = false;  // headings and emphasis as a terminal's bold
    bool indentLists = true;
    bool wrap = false;           // to `width`
    bool collectInline = false;  // wraps a paragraph as a whole, with its emphasis
    bool justify = true;         // pads wrapped lines; no effect without `wrap`
    char fillChar = '\t';        // of indentations
    char bulletChar = '-';
    std::uint32_t levelIndent = 1;  // fill characters for each level of a list below the first
    std::uint32_t width = 0;        // in bytes
};

// How a text is put into a rich text control.
struct RichEditSettings {
    bool useColour = false;
    bool indentLists = true;
    std::uint32_t levelIndent = 120;  // tenths of a millimetre for each level of a list
    std::uint32_t colour = 0;
};
