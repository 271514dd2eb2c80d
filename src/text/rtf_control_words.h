#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "text/rich_text_callback.h"

// What a control word does to whoever shows the document.
enum class RtfEffect : std::uint8_t {
    kNone,
    kParagraph,
    kReset,
    kAlignment,
    kStyle,
    kLeftIndent,
};

// One control word of the subset.
struct RtfControlWord {
    std::string_view word;
    // Written into the text: always, and for terminals only.
    std::string_view text = {};
    std::string_view attribute = {};
    RtfEffect effect = RtfEffect::kNone;
    RichTextAlignment alignment = RichTextAlignment::kLeft;  // of kAlignment
    RichTextStyle style = RichTextStyle::kBold;              // of kStyle
    bool on = false;                                         // of kStyle
};

// The name under which the end of a document puts everything back.
inline constexpr std::string_view kRtfRestoreWord = "restorenormaltextmode";

// All control words, in the order in which they are tried.
std::span<const RtfControlWord> rtfControlWords();

// The first one that `word` begins with: "brdrt" is a "b", and so is "bin". Null when there is none.
const RtfControlWord* findRtfControlWord(std::string_view word);

// What follows the name in `word`: a decimal number with or without "-", held at the limits of 32 bits. 0
// when there is none.
std::int32_t rtfParameter(const RtfControlWord& found, std::string_view word);

// Twips (1/1440 inch) as tenths of a millimetre, towards 0.
int rtfTenthsOfMillimetre(std::int32_t twips);
