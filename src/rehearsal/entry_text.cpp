#include "rehearsal/entry_text.h"

#include <algorithm>
#include <iterator>

#include "base/failure.h"
#include "base/text_functions.h"
#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "rehearsal/machine_format.h"

namespace {

struct Escape {
    char letter;
    char meaning;
};

constexpr Escape kEscapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'0', '\0'}};
constexpr std::string_view kDigits = "0123456789abcdef";

std::string escapedByte(char byte) {
    for (const Escape& escape : kEscapes) {
        if (escape.meaning == byte) {
            return {'\\', escape.letter};
        }
    }
    const auto value = static_cast<unsigned char>(byte);
    return {'\\', 'x', kDigits[value >> 4U], kDigits[value & 15U]};
}

// A line feed, a carriage return and a TAB are visible to others, but not in one line.
bool isVisible(std::string_view character) {
    return !character.empty() && static_cast<unsigned char>(character.front()) >= ' ' &&
           OUtils::visibleText(character) == character;
}

bool isPlain(std::string_view text, std::string_view stop) {
    const bool hasOuterBlank = text.empty() || text.front() == ' ' || text.back() == ' ';
    if (hasOuterBlank || std::string_view("\"#[").find(text.front()) != std::string_view::npos) {
        return false;
    }
    if (!stop.empty() && (std::string(text) + std::string(stop)).find(stop) != text.size()) {
        return false;
    }
    return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; }) &&
           OUtils::visibleText(text) == text;
}

}  // namespace

void failAtLine(int number, const std::string& text) {
    fail("line " + std::to_string(number) + ": " + text);
}

std::string quotedText(std::string_view text) {
    std::string quoted = "\"";
    while (!text.empty()) {
        const std::size_t length = std::max<std::size_t>(OUtils::utf8CharacterLength(text), 1);
        const std::string_view character = text.substr(0, length);
        if (isVisible(character) && character != "\"" && character != "\\") {
            quoted += character;
        } else {
            for (const char byte : character) {
                quoted += escapedByte(byte);
            }
        }
        text.remove_prefix(length);
    }
    return quoted + "\"";
}

std::string entryText(std::string_view text, std::string_view stop) {
    return isPlain(text, stop) ? std::string(text) : quotedText(text);
}

std::string EntryReader::takeText(std::initializer_list<std::string_view> stops) {
    if (rest_.starts_with('"')) {
        std::string text = takeQuoted();
        const bool isFollowed = std::ranges::any_of(
            stops, [this](std::string_view stop) { return !stop.empty() && rest_.starts_with(stop); });
        if (!rest_.empty() && !isFollowed) {
            failAtLine(number_, "something follows the closing quote");
        }
        return text;
    }
    std::size_t end = rest_.size();
    for (const std::string_view stop : stops) {
        end = std::min(end, stop.empty() ? end : rest_.find(stop));
    }
    const std::string_view text = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return std::string(OUtils::trimWhiteSpace(text));
}

bool EntryReader::take(std::string_view word) {
    if (!rest_.starts_with(word)) {
        return false;
    }
    rest_.remove_prefix(word.size());
    while (rest_.starts_with(' ')) {
        rest_.remove_prefix(1);
    }
    return true;
}

std::string EntryReader::takeQuoted() {
    std::string text;
    rest_.remove_prefix(1);
    while (!rest_.starts_with('"')) {
        if (rest_.empty()) {
            failAtLine(number_, "the closing quote is missing");
        }
        const char c = rest_.front();
        rest_.remove_prefix(1);
        text += c == '\\' ? takeEscaped() : c;
    }
    rest_.remove_prefix(1);
    return text;
}

char EntryReader::takeEscaped() {
    const char letter = rest_.empty() ? ' ' : rest_.front();
    for (const Escape& escape : kEscapes) {
        if (escape.letter == letter) {
            rest_.remove_prefix(1);
            return escape.meaning;
        }
    }
    const std::string digits = OUtils::toLowerAscii(rest_.substr(0, 3));
    const std::size_t high = digits.size() < 3 ? std::string_view::npos : kDigits.find(digits[1]);
    const std::size_t low = digits.size() < 3 ? std::string_view::npos : kDigits.find(digits[2]);
    if (letter != 'x' || high == std::string_view::npos || low == std::string_view::npos) {
        failAtLine(number_, "this is no escape; a backslash between quotes is written twice");
    }
    rest_.remove_prefix(3);
    return static_cast<char>(high * 16 + low);
}
