#pragma once

#include <cstdint>
#include <string>

// How an HTML document is written. Texts are taken as they stand, without escaping.
struct HTMLSettings {
    bool emitHead = true;
    bool emitFoot = true;
    // Blocks of the body are indented by their nesting. The rows of head and foot have fixed levels and are
    // indented in any case; a width of 0 leaves them flat as well.
    bool indent = true;
    bool newlines = true;
    std::uint8_t indentWidth = 1;  // characters of one level
    std::uint8_t baseLevel = 2;    // of what stands directly in the body
    char indentChar = '\t';
    char newlineChar = '\n';
    std::string title;       // replaces "[Untitled]" when it isn't empty
    std::string customHead;  // stands for the whole head when it isn't empty
    std::string customFoot;  // stands for the whole foot when it isn't empty
};

// The same for a window's HTML element, which takes colour and size of a text from a font tag.
struct InstallerHTMLSettings {
    bool useColour = false;
    bool useSize = false;
    std::uint32_t colour = 0;  // 0xRRGGBB; the upper byte isn't looked at
    std::uint8_t size = 12;    // only its last decimal digit counts
    HTMLSettings html;
};
