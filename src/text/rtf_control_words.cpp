#include "text/rtf_control_words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace {

constexpr std::string_view kNormal = "\033[0m";
constexpr std::string_view kBright = "\033[1m";
constexpr std::string_view kUnderlined = "\033[4m";

constexpr RtfControlWord written(std::string_view word, std::string_view text) {
    return {.word = word, .text = text};
}

constexpr RtfControlWord aligned(std::string_view word, RichTextAlignment alignment) {
    return {.word = word, .effect = RtfEffect::kAlignment, .alignment = alignment};
}

constexpr RtfControlWord styled(std::string_view word, std::string_view attribute, RichTextStyle style,
                                bool on) {
    return {.word = word, .attribute = attribute, .effect = RtfEffect::kStyle, .style = style, .on = on};
}

// The first match wins, so a name comes after all longer names that begin with it.
constexpr std::array kControlWords = {
    written("tab", "\t"),
    written("endash", "-"),
    RtfControlWord{.word = "pard", .effect = RtfEffect::kReset},
    RtfControlWord{.word = "par", .text = "\n", .effect = RtfEffect::kParagraph},
    aligned("qc", RichTextAlignment::kCentre),
    aligned("ql", RichTextAlignment::kLeft),
    aligned("qr", RichTextAlignment::kRight),
    aligned("qj", RichTextAlignment::kJustified),
    styled("b0", kNormal, RichTextStyle::kBold, false),
    styled("b", kBright, RichTextStyle::kBold, true),
    styled("i0", "", RichTextStyle::kItalic, false),
    styled("i", "", RichTextStyle::kItalic, true),
    styled("ulnone", kNormal, RichTextStyle::kUnderline, false),
    styled("ul", kUnderlined, RichTextStyle::kUnderline, true),
    RtfControlWord{.word = "li", .effect = RtfEffect::kLeftIndent},
    written("rquote", "'"),
    written("ldblquote", "\""),
    written("rdblquote", "\""),
    RtfControlWord{.word = kRtfRestoreWord, .attribute = kNormal, .effect = RtfEffect::kReset},
};

constexpr bool isReachable(std::size_t row) {
    return std::none_of(kControlWords.begin(), kControlWords.begin() + row, [row](const auto& earlier) {
        return kControlWords[row].word.starts_with(earlier.word);
    });
}

constexpr bool areAllReachable() {
    for (std::size_t row = 0; row < kControlWords.size(); ++row) {
        if (!isReachable(row)) {
            return false;
        }
    }
    return true;
}

static_assert(areAllReachable(), "a control word hides behind a shorter one");

}  // namespace

std::span<const RtfControlWord> rtfControlWords() {
    return kControlWords;
}

const RtfControlWord* findRtfControlWord(std::string_view word) {
    const auto* const found = std::find_if(kControlWords.begin(), kControlWords.end(),
                                           [word](const auto& row) { return word.starts_with(row.word); });
    return found == kControlWords.end() ? nullptr : found;
}

std::int32_t rtfParameter(const RtfControlWord& found, std::string_view word) {
    const std::string_view digits = word.substr(found.word.size());
    std::int32_t value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<std::int32_t>;
        return digits.front() == '-' ? Limits::min() : Limits::max();
    }
    return value;
}

// In whole numbers: 2160 twips are 381 tenths, which floating point would miss by a hair and cut to 380.
int rtfTenthsOfMillimetre(std::int32_t twips) {
    constexpr std::int64_t kTwipsOfInch = 1440;
    constexpr std::int64_t kTenthsOfInch = 254;
    return static_cast<int>(twips * kTenthsOfInch / kTwipsOfInch);
}
