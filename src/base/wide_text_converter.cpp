#include "base/wide_text_converter.h"

namespace OUtils {

namespace {

constexpr char32_t kRawByteBase = 0x100000;
constexpr char32_t kLastCodePoint = 0x10FFFF;
// The largest code points of sequences of 1 to 5 bytes: a longer sequence below its limit is overlong.
constexpr char32_t kSequenceLimits[] = {0x7F, 0x7FF, 0xFFFF, 0x1FFFFF, 0x3FFFFFF};

int sequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC0 || lead >= 0xFE) {
        return 0;
    }
    int length = 2;
    for (unsigned char bit = 0x20; (lead & bit) != 0; bit = static_cast<unsigned char>(bit >> 1)) {
        ++length;
    }
    return length;
}

// Decodes what stands at `text` as one sequence. Returns its length, or 0 when the bytes there aren't a
// sequence or are an overlong one.
int decodeForm(const unsigned char* text, char32_t& codePoint) {
    const int length = sequenceLength(text[0]);
    if (length < 2) {
        codePoint = text[0];
        return length;
    }
    codePoint = text[0] & (0x7FU >> length);
    for (int i = 1; i < length; ++i) {
        if ((text[i] & 0xC0) != 0x80) {
            return 0;
        }
        codePoint = codePoint << 6 | (text[i] & 0x3FU);
    }
    return codePoint <= kSequenceLimits[length - 2] ? 0 : length;
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// Decodes one sequence at `text`. Returns its length, or 0 when the bytes there aren't a sequence that
// UTF-16 can hold and that comes back as the same bytes.
int decodeSequence(const unsigned char* text, char32_t& codePoint) {
    const int length = decodeForm(text, codePoint);
    // The code points that stand for raw bytes are taken as raw bytes themselves, so that they survive.
    const bool rawByte = codePoint >= kRawByteBase && codePoint <= kRawByteBase + 0xFF;
    if (rawByte || codePoint > kLastCodePoint) {
        return 0;
    }
    // Two halves in sequences of their own would come back as the one sequence of the whole.
    char32_t next = 0;
    if (length > 0 && isHighSurrogate(codePoint) && decodeForm(text + length, next) > 0 &&
        isLowSurrogate(next)) {
        return 0;
    }
    return length;
}

int encodeSequence(char32_t codePoint, char* out) {
    if (codePoint >= kRawByteBase && codePoint <= kRawByteBase + 0xFF) {
        out[0] = static_cast<char>(codePoint - kRawByteBase);
        return 1;
    }
    if (codePoint < 0x80) {
        out[0] = static_cast<char>(codePoint);
        return 1;
    }
    const int length = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    for (int i = length - 1; i > 0; --i) {
        out[i] = static_cast<char>(0x80 | (codePoint & 0x3F));
        codePoint >>= 6;
    }
    out[0] = static_cast<char>((0xF00 >> length & 0xFF) | codePoint);
    return length;
}

}  // namespace

std::int64_t utf8ToWide(const char* text, char16_t* out, std::int64_t capacity) {
    std::int64_t count = 0;
    const auto* in = reinterpret_cast<const unsigned char*>(text == nullptr ? "" : text);
    while (*in != 0) {
        char32_t codePoint = 0;
        const int length = decodeSequence(in, codePoint);
        if (length == 0) {
            codePoint = kRawByteBase + *in;
        }
        in += length == 0 ? 1 : length;
        const int units = codePoint > 0xFFFF ? 2 : 1;
        if (out != nullptr) {
            if (count + units >= capacity) {
                break;
            }
            if (units == 2) {
                out[count] = static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
                out[count + 1] = static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
            } else {
                out[count] = static_cast<char16_t>(codePoint);
            }
        }
        count += units;
    }
    if (out != nullptr && capacity > 0) {
        out[count] = 0;
    }
    return count;
}

std::int64_t wideToUtf8(const char16_t* text, char* out, std::int64_t capacity) {
    static constexpr char16_t kEmpty[] = {0};
    std::int64_t count = 0;
    const char16_t* in = text == nullptr ? kEmpty : text;
    while (*in != 0) {
        char32_t codePoint = *in++;
        if (isHighSurrogate(codePoint) && isLowSurrogate(*in)) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (*in++ - 0xDC00U);
        }
        char sequence[4];
        const int length = encodeSequence(codePoint, sequence);
        if (out != nullptr) {
            if (count + length >= capacity) {
                break;
            }
            for (int i = 0; i < length; ++i) {
                out[count + i] = sequence[i];
            }
        }
        count += length;
    }
    if (out != nullptr && capacity > 0) {
        out[count] = '\0';
    }
    return count;
}

const char16_t* WideTextConverter::wide() {
    if (wide_ == nullptr && utf8_ != nullptr) {
        const std::int64_t size = utf8ToWide(utf8_, nullptr, 0) + 1;
        ownedWide_ = std::make_unique<char16_t[]>(static_cast<std::size_t>(size));
        utf8ToWide(utf8_, ownedWide_.get(), size);
        wide_ = ownedWide_.get();
    }
    return wide_;
}

const char* WideTextConverter::utf8() {
    if (utf8_ == nullptr && wide_ != nullptr) {
        const std::int64_t size = wideToUtf8(wide_, nullptr, 0) + 1;
        ownedUtf8_ = std::make_unique<char[]>(static_cast<std::size_t>(size));
        wideToUtf8(wide_, ownedUtf8_.get(), size);
        utf8_ = ownedUtf8_.get();
    }
    return utf8_;
}

}  // namespace OUtils
