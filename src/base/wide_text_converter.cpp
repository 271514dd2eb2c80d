#include "base/wide_text_converter.h"

namespace OUtils {

namespace {

constexpr char32_t kRawByteBase = 0x100000;
// Bytes below 0x80 are characters by themselves and never need a stand-in. Taken for one, a name with such a
// code point would turn into one with a separator.
constexpr char32_t kFirstRawByte = kRawByteBase + 0x80;
constexpr char32_t kLastRawByte = kRawByteBase + 0xFF;
constexpr char32_t kLastCodePoint = 0x10FFFF;
// The largest code points of sequences of 1 to 5 bytes: a longer sequence below its limit is overlong.
constexpr char32_t kSequenceLimits[] = {0x7F, 0x7FF, 0xFFFF, 0x1FFFFF, 0x3FFFFFF};

std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC0 || lead >= 0xFE) {
        return 0;
    }
    std::size_t length = 2;
    for (unsigned char bit = 0x20; (lead & bit) != 0; bit = static_cast<unsigned char>(bit >> 1)) {
        ++length;
    }
    return length;
}

bool standsForByte(char32_t codePoint) {
    return codePoint >= kFirstRawByte && codePoint <= kLastRawByte;
}

unsigned byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

// Decodes the start of `text`, which isn't empty, as one sequence. Returns its length, or 0 when the bytes
// there aren't a sequence or are an overlong one.
std::size_t decodeForm(std::string_view text, char32_t& codePoint) {
    const std::size_t length = sequenceLength(static_cast<unsigned char>(text.front()));
    codePoint = byteAt(text, 0);
    if (length < 2) {
        return length;
    }
    codePoint &= 0x7FU >> length;
    if (text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0) != 0x80) {
            return 0;
        }
        codePoint = codePoint << 6 | (byteAt(text, i) & 0x3FU);
    }
    return codePoint <= kSequenceLimits[length - 2] ? 0 : length;
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// Decodes the sequence at the start of `text`, which isn't empty. Returns its length, or 0 when the bytes
// there aren't a sequence that UTF-16 can hold and that comes back as the same bytes.
std::size_t decodeSequence(std::string_view text, char32_t& codePoint) {
    const std::size_t length = decodeForm(text, codePoint);
    // The code points that stand for raw bytes are taken as raw bytes themselves, so that they survive.
    if (length == 0 || standsForByte(codePoint) || codePoint > kLastCodePoint) {
        return 0;
    }
    // Two halves in sequences of their own would come back as the one sequence of the whole.
    const std::string_view rest = text.substr(length);
    char32_t next = 0;
    if (isHighSurrogate(codePoint) && !rest.empty() && decodeForm(rest, next) > 0 && isLowSurrogate(next)) {
        return 0;
    }
    return length;
}

void appendUnits(std::u16string& out, char32_t codePoint) {
    if (codePoint > 0xFFFF) {
        out += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        out += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    } else {
        out += static_cast<char16_t>(codePoint);
    }
}

void appendSequence(std::string& out, char32_t codePoint) {
    if (standsForByte(codePoint)) {
        out += static_cast<char>(codePoint - kRawByteBase);
        return;
    }
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
        return;
    }
    const int length = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    out += static_cast<char>((0xF00 >> length & 0xFF) | codePoint >> 6 * (length - 1));
    for (int shift = 6 * (length - 2); shift >= 0; shift -= 6) {
        out += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    }
}

}  // namespace

std::u16string utf8ToWide(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        char32_t codePoint = 0;
        const std::size_t length = decodeSequence(text, codePoint);
        appendUnits(wide, length == 0 ? kRawByteBase + byteAt(text, 0) : codePoint);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return wide;
}

std::string wideToUtf8(std::u16string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = text[i];
        if (isHighSurrogate(codePoint) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[++i] - 0xDC00U);
        }
        appendSequence(utf8, codePoint);
    }
    return utf8;
}

const char16_t* WideTextConverter::wide() {
    if (wide_ == nullptr && utf8_ != nullptr) {
        ownedWide_ = utf8ToWide(utf8_);
        wide_ = ownedWide_.c_str();
    }
    return wide_;
}

const char* WideTextConverter::utf8() {
    if (utf8_ == nullptr && wide_ != nullptr) {
        ownedUtf8_ = wideToUtf8(wide_);
        utf8_ = ownedUtf8_.c_str();
    }
    return utf8_;
}

}  // namespace OUtils
