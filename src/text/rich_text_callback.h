#pragma once

#include <cstdint>
#include <string_view>

enum class RichTextStyle : std::uint8_t { kBold = 0, kItalic = 1, kUnderline = 2 };
enum class RichTextAlignment : std::uint8_t { kLeft = 0, kCentre = 1, kRight = 2, kJustified = 3 };

// Receives a rich text as it is read, in the order of the document. Only addChar is limited to what is
// visible: the other calls also come for control words inside hidden groups.
class RichTextCallback {
public:
    virtual ~RichTextCallback() = default;

    // New output: one character, or the whole text of a control word. Valid during the call.
    virtual void addChar(std::string_view text) = 0;
    // The current paragraph ended.
    virtual void paragraph() = 0;
    virtual void setStyle(RichTextStyle kind, bool on) = 0;
    // In points; 0 asks for the default.
    virtual void setFontSize(int size) = 0;
    virtual void setAlignment(RichTextAlignment alignment) = 0;
    // All style goes back to the default.
    virtual void resetStyles() = 0;
    virtual void setLeftIndent(int tenthsOfMillimetre) = 0;
    virtual void endDocument() = 0;
};
