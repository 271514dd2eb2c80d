#include "base/text_functions.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace OUtils {

namespace {

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

void copyText(char* out, const char* text, std::int64_t capacity) {
    if (out == nullptr || capacity < 1) {
        return;
    }
    const std::size_t length = text == nullptr ? 0 : strnlen(text, static_cast<std::size_t>(capacity) - 1);
    if (length > 0) {
        std::memmove(out, text, length);
    }
    out[length] = '\0';
}

int formatText(char* out, std::int64_t capacity, const char* format, ...) {
    if (out == nullptr || capacity < 1) {
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(out, static_cast<std::size_t>(capacity), format, arguments);
    va_end(arguments);
    if (length < 0) {
        out[0] = '\0';
        return -1;
    }
    return length >= capacity ? -1 : length;
}

int splitText(const char* text, char separator, std::vector<std::string>& outList) {
    outList.clear();
    if (text == nullptr || *text == '\0') {
        return 0;
    }
    const char* start = text;
    for (const char* at = text;; ++at) {
        if (*at == separator || *at == '\0') {
            outList.emplace_back(start, at);
            start = at + 1;
        }
        if (*at == '\0') {
            break;
        }
    }
    return static_cast<int>(outList.size());
}

int extractBetween(const char* text, char open, char close, char* out, std::int64_t capacity) {
    copyText(out, "", capacity);
    const char* first = text == nullptr ? nullptr : std::strchr(text, open);
    const char* last = first == nullptr ? nullptr : std::strrchr(first + 1, close);
    if (last == nullptr) {
        return 0;
    }
    const std::string between(first + 1, last);
    copyText(out, between.c_str(), capacity);
    return 1;
}

bool equalsIgnoreCase(const char* a, const char* b) {
    return a != nullptr && b != nullptr && equalsIgnoreCase(std::string_view(a), std::string_view(b));
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && startsWithIgnoreCase(a, b);
}

bool startsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [](char a, char b) { return lowerAscii(a) == lowerAscii(b); });
}

std::string toLowerAscii(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowerAscii);
    return lower;
}

bool isWhiteSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimWhiteSpace(std::string_view text) {
    while (!text.empty() && isWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::int32_t textToInteger(const char* text) {
    if (text == nullptr) {
        return 0;
    }
    while (isWhiteSpace(*text) || *text == '\v' || *text == '\f') {
        ++text;
    }
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') {
        ++text;
    }
    std::int64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        value = std::min<std::int64_t>(value * 10 + (*text - '0'), std::int64_t{INT32_MAX} + 1);
    }
    value = negative ? -value : std::min<std::int64_t>(value, INT32_MAX);
    return static_cast<std::int32_t>(value);
}

}  // namespace OUtils
