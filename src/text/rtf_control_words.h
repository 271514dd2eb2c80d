#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "text/rich_text_callback.h"

// What a control word means to the callback.
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
    std::string_view text = {};       // written in every mode
    std::string_view attribute = {};  // written for terminals only
    RtfEffect effect = RtfEffect::kNone;
    RichTextAlignment alignment = RichTextAlignment::kLeft;  // of kAlignment
    RichTextStyle style = RichTextStyle::kBold;              // of kStyle
    bool on = false;                                         // of kStyle
};

// The word that is handled at the end of every document and restores the default style.
inline constexpr std::string_view kRtfRestoreWord = "restorenormaltextmode";

// All control words, in the order in which they are tried.
std::span<const RtfControlWord> rtfControlWords();

// The first one that `word` begins with, or null. Comparing only beginnings is intended, so "brdrt" is a "b",
// and so is "bin".
const RtfControlWord* findRtfControlWord(std::string_view word);

// The number after the name in `word`: decimal, with or without "-", clamped to 32 bits; 0 when there is
// none.
std::int32_t rtfParameter(const RtfControlWord& found, std::string_view word);

// Converts twips (1/1440 inch) to tenths of a millimetre, rounding towards 0.
int rtfTenthsOfMillimetre(std::int32_t twips);
