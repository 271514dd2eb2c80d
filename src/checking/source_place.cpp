#include "checking/source_place.h"

#include <algorithm>

SourceLines::SourceLines(std::string_view text) : text_(text), starts_{0} {
    for (std::size_t at = text.find_first_of("\r\n"); at != std::string_view::npos;
         at = text.find_first_of("\r\n", at)) {
        at += text.substr(at, 2) == "\r\n" ? 2 : 1;
        starts_.push_back(at);
    }
}

SourcePlace SourceLines::placeOf(std::size_t offset) const {
    constexpr unsigned kContinuation = 0x80;  // of a character of several bytes, with the mask 0xC0
    const std::size_t end = std::min(offset, text_.size());
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), end);
    const std::string_view before = text_.substr(*(after - 1), end - *(after - 1));
    const auto characters = std::count_if(before.begin(), before.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != kContinuation;
    });
    return {static_cast<std::int32_t>(after - starts_.begin()), static_cast<std::int32_t>(characters) + 1};
}
