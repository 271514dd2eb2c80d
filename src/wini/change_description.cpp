#include "wini/change_description.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/text_functions.h"

namespace ChangeDescription {

namespace {

bool isBlank(std::string_view line) {
    return OUtils::trimWhiteSpace(line).empty();
}

std::optional<std::size_t> countOf(std::string_view line) {
    const std::string_view text = OUtils::trimWhiteSpace(line);
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && count > 0;
    return isNumber ? std::optional(count) : std::nullopt;
}

// Takes the block at `position` and goes behind it.
bool takeBlock(const TextLines& lines, std::size_t& position, TextLines& outBlock) {
    if (position == lines.size()) {
        return false;
    }
    const auto count = countOf(lines[position++]);
    if (!count.has_value() || *count > lines.size() - position) {
        return false;
    }
    const auto first = lines.begin() + static_cast<std::ptrdiff_t>(position);
    outBlock.assign(first, first + static_cast<std::ptrdiff_t>(*count));
    position += *count;
    return std::ranges::all_of(outBlock, [](std::string_view line) { return line.size() <= kLineLimit; });
}

// For each line of the block, how many lines before it and with it are the block's beginning again: so that
// no line of the file is looked at more than twice, however alike the lines are.
std::vector<std::size_t> borders(const TextLines& block) {
    std::vector<std::size_t> result(block.size(), 0);
    std::size_t length = 0;
    for (std::size_t i = 1; i < block.size(); ++i) {
        while (length > 0 && block[i] != block[length]) {
            length = result[length - 1];
        }
        length += block[i] == block[length] ? 1 : 0;
        result[i] = length;
    }
    return result;
}

// The position behind the first occurrence of the block from `start` on; none when there is none.
std::optional<std::size_t> findBehind(const TextLines& lines, std::size_t start, const TextLines& block) {
    const std::vector<std::size_t> border = borders(block);
    std::size_t length = 0;
    for (std::size_t i = start; i < lines.size(); ++i) {
        while (length > 0 && lines[i] != block[length]) {
            length = border[length - 1];
        }
        length += lines[i] == block[length] ? 1 : 0;
        if (length == block.size()) {
            return i + 1;
        }
    }
    return std::nullopt;
}

bool standsAt(const TextLines& lines, std::size_t position, const TextLines& block) {
    return block.size() <= lines.size() - position &&
           std::equal(block.begin(), block.end(), lines.begin() + static_cast<std::ptrdiff_t>(position));
}

void copyRange(const TextLines& lines, std::size_t first, std::size_t last, TextLines& outLines) {
    outLines.insert(outLines.end(), lines.begin() + static_cast<std::ptrdiff_t>(first),
                    lines.begin() + static_cast<std::ptrdiff_t>(last));
}

// Copies the lines, and behind each search block that is found in its turn lets `change` act; it may move the
// position on. True when one of them changed something.
template <typename Change>
bool edit(const std::vector<ChangePair>& pairs, const TextLines& lines, TextLines& outLines, Change change) {
    outLines.clear();
    std::size_t position = 0;
    bool changed = false;
    for (const ChangePair& pair : pairs) {
        const auto behind = findBehind(lines, position, pair.search);
        if (!behind.has_value()) {
            break;
        }
        copyRange(lines, position, *behind, outLines);
        position = *behind;
        changed = change(pair, position) || changed;
    }
    copyRange(lines, position, lines.size(), outLines);
    return changed;
}

}  // namespace

std::optional<std::vector<ChangePair>> parse(const TextLines& lines) {
    std::vector<ChangePair> pairs;
    std::size_t position = 0;
    const auto isRestBlank = [&] {
        return std::all_of(lines.begin() + static_cast<std::ptrdiff_t>(position), lines.end(), isBlank);
    };
    // Only where a line is blank the rest is looked through, and such a line is no count.
    while (position < lines.size() && !isBlank(lines[position])) {
        ChangePair& pair = pairs.emplace_back();
        if (!takeBlock(lines, position, pair.search) || !takeBlock(lines, position, pair.addition)) {
            return std::nullopt;
        }
    }
    return pairs.empty() || !isRestBlank() ? std::nullopt : std::optional(std::move(pairs));
}

bool apply(const std::vector<ChangePair>& pairs, const TextLines& lines, TextLines& outLines) {
    return edit(pairs, lines, outLines, [&](const ChangePair& pair, std::size_t&) {
        copyRange(pair.addition, 0, pair.addition.size(), outLines);
        return true;
    });
}

bool revert(const std::vector<ChangePair>& pairs, const TextLines& lines, TextLines& outLines) {
    return edit(pairs, lines, outLines, [&](const ChangePair& pair, std::size_t& position) {
        const bool stands = standsAt(lines, position, pair.addition);
        position += stands ? pair.addition.size() : 0;
        return stands;
    });
}

}  // namespace ChangeDescription
