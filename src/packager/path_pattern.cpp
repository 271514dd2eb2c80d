#include "packager/path_pattern.h"

#include <algorithm>
#include <cstddef>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "base/utf8_character.h"

namespace {

constexpr std::string_view kAnyParts = "**";

std::size_t characterLength(std::string_view text) {
    return std::max<std::size_t>(OUtils::utf8CharacterLength(text), 1);
}

// Matches two sequences. Of the places where the rest could go on, only that after the last star needs to be
// remembered: an earlier star can't make up for what fails after a later one. `isStar(i)` says whether
// element i of the pattern stands for any number of elements of the text, `fits(i, j)` whether it stands for
// element j.
template <typename IsStar, typename Fits>
bool matchWithStars(std::size_t patternSize, std::size_t textSize, IsStar isStar, Fits fits) {
    std::size_t pattern = 0;
    std::size_t text = 0;
    std::size_t afterStar = 0;  // 0: there was none
    std::size_t retry = 0;
    while (text < textSize) {
        if (pattern < patternSize && isStar(pattern)) {
            afterStar = ++pattern;
            retry = text;
        } else if (pattern < patternSize && fits(pattern, text)) {
            ++pattern;
            ++text;
        } else if (afterStar > 0) {
            pattern = afterStar;
            text = ++retry;
        } else {
            return false;
        }
    }
    while (pattern < patternSize && isStar(pattern)) {
        ++pattern;
    }
    return pattern == patternSize;
}

std::vector<std::string_view> charactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    while (!text.empty()) {
        characters.push_back(text.substr(0, characterLength(text)));
        text.remove_prefix(characters.back().size());
    }
    return characters;
}

bool partMatches(std::string_view pattern, std::string_view part) {
    if (pattern.find_first_of("*?") == std::string_view::npos) {
        return pattern == part;
    }
    const std::vector<std::string_view> wanted = charactersOf(pattern);
    const std::vector<std::string_view> found = charactersOf(part);
    return matchWithStars(
        wanted.size(), found.size(), [&](std::size_t i) { return wanted[i] == "*"; },
        [&](std::size_t i, std::size_t j) { return wanted[i] == "?" || wanted[i] == found[j]; });
}

std::vector<std::string_view> partsOf(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of("/\\"), path.size());
        if (end > 0) {
            parts.push_back(path.substr(0, end));
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

}  // namespace

PathPattern::PathPattern(std::string_view text) {
    for (const std::string_view part : partsOf(text)) {
        parts_.emplace_back(part);
    }
    isForLastPart_ = parts_.size() == 1 && !OUtils::isSeparator(text.front());
}

// A name on the disk may contain `\`, which separates nothing there.
bool PathPattern::matches(std::string_view path) const {
    if (parts_.empty()) {
        return false;
    }
    if (isForLastPart_) {
        return partMatches(parts_.front(), path.substr(path.rfind('/') + 1));
    }
    std::vector<std::string_view> found;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        found.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return matchWithStars(
        parts_.size(), found.size(), [&](std::size_t i) { return parts_[i] == kAnyParts; },
        [&](std::size_t i, std::size_t j) { return partMatches(parts_[i], found[j]); });
}

PathPatterns::PathPatterns(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        const std::string_view one = OUtils::trimWhiteSpace(text.substr(0, end));
        if (!one.empty()) {
            patterns_.push_back({std::string(one), PathPattern(one)});
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool PathPatterns::matchAny(std::string_view path) {
    bool found = false;
    for (Row& row : patterns_) {
        const bool matches = (!found || !row.isUsed) && row.pattern.matches(path);
        row.isUsed = row.isUsed || matches;
        found = found || matches;
    }
    return found;
}

std::vector<std::string> PathPatterns::unused() const {
    std::vector<std::string> texts;
    for (const Row& row : patterns_) {
        if (!row.isUsed) {
            texts.push_back(row.text);
        }
    }
    return texts;
}
