#include "base/utf8_character.h"

#include <array>

namespace OUtils {

namespace {

// What may follow a lead byte. Only the first continuation byte can have narrower bounds than 0x80 to 0xBF.
struct Sequence {
    unsigned char firstLead;
    unsigned char lastLead;
    unsigned char length;
    unsigned char firstLow;
    unsigned char firstHigh;
};

constexpr std::array kSequences = {
    Sequence{0x00, 0x7F, 1, 0x80, 0xBF}, Sequence{0xC2, 0xDF, 2, 0x80, 0xBF},
    Sequence{0xE0, 0xE0, 3, 0xA0, 0xBF}, Sequence{0xE1, 0xEC, 3, 0x80, 0xBF},
    Sequence{0xED, 0xED, 3, 0x80, 0x9F}, Sequence{0xEE, 0xEF, 3, 0x80, 0xBF},
    Sequence{0xF0, 0xF0, 4, 0x90, 0xBF}, Sequence{0xF1, 0xF3, 4, 0x80, 0xBF},
    Sequence{0xF4, 0xF4, 4, 0x80, 0x8F},
};

bool fits(const Sequence& sequence, std::string_view text) {
    if (text.size() < sequence.length) {
        return false;
    }
    for (std::size_t i = 1; i < sequence.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const unsigned char low = i == 1 ? sequence.firstLow : 0x80;
        const unsigned char high = i == 1 ? sequence.firstHigh : 0xBF;
        if (byte < low || byte > high) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::size_t utf8CharacterLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto lead = static_cast<unsigned char>(text[0]);
    for (const Sequence& sequence : kSequences) {
        if (lead >= sequence.firstLead && lead <= sequence.lastLead) {
            return fits(sequence, text) ? sequence.length : 0;
        }
    }
    return 0;
}

char32_t utf8CodePoint(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) {
        return lead;
    }
    char32_t value = lead & (0x7FU >> character.size());
    for (const char continuation : character.substr(1)) {
        value = value << 6 | (static_cast<unsigned char>(continuation) & 0x3FU);
    }
    return value;
}

std::string validUtf8(std::string_view text) {
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8CharacterLength(text);
        valid += length == 0 ? kReplacement : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return valid;
}

}  // namespace OUtils
