#include "checking/source_place.h"

#include <algorithm>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kBlock = 1024;

std::size_t countCharacters(std::string_view text) {
    constexpr unsigned kContinuation = 0x80;  // of a character of several bytes, with the mask 0xC0
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != kContinuation; }));
}

}  // namespace

SourceLines::SourceLines(std::string_view text)
    : text_(text), starts_{text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0} {
    for (std::size_t at = text.find_first_of("\r\n"); at != std::string_view::npos;
         at = text.find_first_of("\r\n", at)) {
        at += text.substr(at, 2) == "\r\n" ? 2 : 1;
        starts_.push_back(at);
    }
    std::size_t count = 0;
    for (std::size_t at = 0; at <= text.size(); at += kBlock) {
        characters_.push_back(count);
        count += countCharacters(text.substr(at, kBlock));
    }
}

SourcePlace SourceLines::placeOf(std::size_t offset) const {
    const std::size_t end = std::clamp(offset, starts_.front(), text_.size());
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), end);
    const std::size_t column = charactersBefore(end) - charactersBefore(*(after - 1)) + 1;
    return {static_cast<std::int32_t>(after - starts_.begin()), static_cast<std::int32_t>(column)};
}

std::size_t SourceLines::charactersBefore(std::size_t offset) const {
    const std::size_t block = offset / kBlock;
    return characters_[block] + countCharacters(text_.substr(block * kBlock, offset % kBlock));
}
