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

std::string formatText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string text(length < 0 ? 0 : static_cast<std::size_t>(length), '\0');
    if (length > 0) {
        std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    }
    va_end(arguments);
    return text;
}

std::vector<std::string> splitText(std::string_view text, char separator) {
    std::vector<std::string> list;
    if (text.empty()) {
        return list;
    }
    for (;;) {
        const std::size_t end = text.find(separator);
        list.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return list;
        }
        text.remove_prefix(end + 1);
    }
}

int splitText(const char* text, char separator, std::vector<std::string>& outList) {
    outList = splitText(text == nullptr ? std::string_view() : std::string_view(text), separator);
    return static_cast<int>(outList.size());
}

std::optional<std::string> extractBetween(std::string_view text, char open, char close) {
    const std::size_t first = text.find(open);
    const std::size_t last = text.rfind(close);
    if (first == std::string_view::npos || last == std::string_view::npos || last <= first) {
        return std::nullopt;
    }
    return std::string(text.substr(first + 1, last - first - 1));
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

std::int32_t textToInteger(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\r\v\f");
    text.remove_prefix(start == std::string_view::npos ? text.size() : start);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
        value = std::min<std::int64_t>(value * 10 + (text.front() - '0'), std::int64_t{INT32_MAX} + 1);
    }
    value = negative ? -value : std::min<std::int64_t>(value, INT32_MAX);
    return static_cast<std::int32_t>(value);
}

std::int32_t textToInteger(const char* text) {
    return text == nullptr ? 0 : textToInteger(std::string_view(text));
}

}  // namespace OUtils
