#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

using TextLines = std::vector<std::string_view>;

// One pair of blocks of a change description: lines to look for, and lines to put behind them. Neither is
// empty.
struct ChangePair {
    TextLines search;
    TextLines addition;
};

// What a file of changes says: pairs of blocks, each a line with a decimal count and that many lines. Lines
// that hold nothing but white space may follow the last pair.
namespace ChangeDescription {

inline constexpr std::size_t kLineLimit = 1023;  // bytes

// None without a pair, and when a block is broken: a count that is no number from 1 on, fewer lines than
// that, a line above the limit. The views are those of `lines`.
std::optional<std::vector<ChangePair>> parse(const TextLines& lines);

// Puts the additions behind the first occurrences of what is looked for, one pair after the other: each goes
// on where the one before it ended, and none is tried behind one that isn't found. True when anything
// changed.
bool apply(const std::vector<ChangePair>& pairs, const TextLines& lines, TextLines& outLines);

// The way back: drops the additions where they stand behind what is looked for.
bool revert(const std::vector<ChangePair>& pairs, const TextLines& lines, TextLines& outLines);

}  // namespace ChangeDescription
