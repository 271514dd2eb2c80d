#pragma once

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <vector>

#include "text/tgm_limits.h"
#include "text/tgm_line.h"

// Decides line by line whether a block goes on. Two machines that compare equal (neither is less) will decide
// alike from then on.
class TGMBlockEndMachine {
public:
    enum class State : std::uint8_t { kSame, kBlank, kDeeper, kLazy, kEnd };

    TGMBlockEndMachine(const TGMLine& start, bool lazyLists)
        : blockIndent_(start.indent()), blockType_(start.type()), lazyLists_(lazyLists) {}

    // Returns the state after the line. With kEnd the line isn't part of the block, and the machine is done.
    State step(const TGMLine& line);
    State getState() const { return state_; }

    bool operator<(const TGMBlockEndMachine& other) const { return key() < other.key(); }

private:
    State stepSame(const TGMLine& line) const;
    State stepBlank(const TGMLine& line);
    State stepDeeper(const TGMLine& line) const;
    State stepLazy(const TGMLine& line) const;
    State stepLazyAtBlockIndent(TGMNodeType type) const;

    std::tuple<std::uint32_t, TGMNodeType, State, bool, bool> key() const {
        return {blockIndent_, blockType_, state_, seenBlank_, lazyLists_};
    }

    std::uint32_t blockIndent_;
    TGMNodeType blockType_;
    State state_ = State::kSame;
    bool seenBlank_ = false;
    bool lazyLists_;
};

// The last line of the block that begins at `start`; one past the end when `start` is the last line and
// neither blank nor a heading. The block may go beyond the item or list that contains `start`. Charges each
// line that it looks at; once the budget is exhausted the result means nothing.
std::size_t findTgmBlockEnd(const std::vector<TGMLine>& lines, std::size_t start, bool lazyLists,
                            TGMWorkBudget& budget);

// The same for every line at once, in one pass: machines that reach the same state go on as one. When the
// budget runs out the list is as long as the number of the line where that happened, and its values mean
// nothing.
std::vector<std::size_t> findAllTgmBlockEnds(const std::vector<TGMLine>& lines, bool lazyLists,
                                             TGMWorkBudget& budget);
