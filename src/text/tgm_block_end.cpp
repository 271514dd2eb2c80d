#include "text/tgm_block_end.h"

#include <map>
#include <optional>

namespace {

using Machine = TGMBlockEndMachine;
using State = TGMBlockEndMachine::State;

// A numbered or lettered list line in a list of bullets, or the other way round.
bool isMixedList(TGMNodeType blockType, TGMNodeType type) {
    const auto isOrdered = [](TGMNodeType t) { return t == kTgmNumberedList || t == kTgmLetteredList; };
    return (isOrdered(blockType) && type == kTgmUnorderedList) ||
           (blockType == kTgmUnorderedList && isOrdered(type));
}

// The end of a block, if it can be found without a look at the lines after it.
std::optional<std::size_t> endWithoutSearch(const std::vector<TGMLine>& lines, std::size_t start) {
    const TGMNodeType type = lines[start].type();
    if (type == kTgmBlank || isTgmHeading(type)) {
        return start;
    }
    if (start + 1 == lines.size()) {
        return start + 1;
    }
    return std::nullopt;
}

// The last line of a block that is still open at the end of the text.
std::size_t endAtLastLine(std::size_t lineCount, State state) {
    return state == State::kBlank ? lineCount - 2 : lineCount - 1;
}

// The blocks that have no end yet, by the state of their machine. Blocks in the same state form a chain
// through `next_`.
class OpenBlocks {
public:
    explicit OpenBlocks(std::vector<std::size_t>& ends) : ends_(ends), next_(ends.size()) {}

    std::size_t size() const { return chains_.size(); }

    void open(const Machine& machine, std::size_t start) { join(chains_, machine, {start, start}); }

    void step(const TGMLine& line, std::size_t index) {
        Chains going;
        for (const auto& [machine, chain] : chains_) {
            Machine moved = machine;
            if (moved.step(line) == State::kEnd) {
                close(chain, index - 1);
            } else {
                join(going, moved, chain);
            }
        }
        chains_.swap(going);
    }

    void closeAll() {
        for (const auto& [machine, chain] : chains_) {
            close(chain, endAtLastLine(ends_.size(), machine.getState()));
        }
        chains_.clear();
    }

private:
    struct Chain {
        std::size_t first;
        std::size_t last;
    };
    using Chains = std::map<Machine, Chain>;

    void join(Chains& chains, const Machine& machine, const Chain& chain) {
        const auto [place, isNew] = chains.try_emplace(machine, chain);
        if (!isNew) {
            next_[place->second.last] = chain.first;
            place->second.last = chain.last;
        }
    }

    void close(const Chain& chain, std::size_t end) {
        for (std::size_t start = chain.first; start != chain.last; start = next_[start]) {
            ends_[start] = end;
        }
        ends_[chain.last] = end;
    }

    std::vector<std::size_t>& ends_;
    std::vector<std::size_t> next_;
    Chains chains_;
};

}  // namespace

State Machine::step(const TGMLine& line) {
    switch (state_) {
        case State::kSame:
            state_ = stepSame(line);
            break;
        case State::kBlank:
            state_ = stepBlank(line);
            break;
        case State::kDeeper:
            state_ = stepDeeper(line);
            break;
        case State::kLazy:
            state_ = stepLazy(line);
            break;
        case State::kEnd:
            break;
    }
    return state_;
}

State Machine::stepSame(const TGMLine& line) const {
    const TGMNodeType type = line.type();
    if (type == kTgmBlank) {
        return State::kBlank;
    }
    if (type == kTgmPlain) {
        return State::kLazy;
    }
    if (line.indent() < blockIndent_) {
        return State::kEnd;
    }
    if (blockType_ == kTgmPlain && (type == kTgmQuote || (isTgmList(type) && !lazyLists_))) {
        return State::kEnd;
    }
    return line.indent() > blockIndent_ ? State::kDeeper : State::kSame;
}

State Machine::stepBlank(const TGMLine& line) {
    seenBlank_ = true;
    if (line.type() == kTgmBlank) {
        return State::kBlank;
    }
    if (line.indent() == blockIndent_) {
        return line.type() == blockType_ && blockType_ != kTgmPlain ? State::kSame : State::kEnd;
    }
    return line.indent() > blockIndent_ ? State::kDeeper : State::kEnd;
}

State Machine::stepDeeper(const TGMLine& line) const {
    if (line.type() == kTgmBlank) {
        return State::kBlank;
    }
    if (line.indent() < blockIndent_) {
        return line.type() == kTgmPlain ? State::kLazy : State::kEnd;
    }
    return State::kDeeper;
}

State Machine::stepLazy(const TGMLine& line) const {
    const TGMNodeType type = line.type();
    if (type == kTgmPlain) {
        return State::kLazy;
    }
    if (type == kTgmBlank) {
        return State::kBlank;
    }
    if (blockType_ == kTgmPlain && type == kTgmQuote) {
        return State::kEnd;
    }
    if (line.indent() != blockIndent_) {
        return line.indent() > blockIndent_ ? State::kDeeper : State::kEnd;
    }
    return stepLazyAtBlockIndent(type);
}

State Machine::stepLazyAtBlockIndent(TGMNodeType type) const {
    if (type == blockType_) {
        return State::kSame;
    }
    if (!seenBlank_ && isMixedList(blockType_, type)) {
        return State::kSame;
    }
    if (blockType_ == kTgmPlain && lazyLists_ && !seenBlank_ && isTgmList(type)) {
        return State::kLazy;
    }
    return State::kEnd;
}

std::size_t findTgmBlockEnd(const std::vector<TGMLine>& lines, std::size_t start, bool lazyLists,
                            TGMWorkBudget& budget) {
    if (const auto end = endWithoutSearch(lines, start)) {
        return *end;
    }
    Machine machine(lines[start], lazyLists);
    for (std::size_t index = start + 1; index < lines.size(); ++index) {
        if (!budget.spend(kTgmLineVisitCost) || machine.step(lines[index]) == State::kEnd) {
            return index - 1;
        }
    }
    return endAtLastLine(lines.size(), machine.getState());
}

std::vector<std::size_t> findAllTgmBlockEnds(const std::vector<TGMLine>& lines, bool lazyLists,
                                             TGMWorkBudget& budget) {
    std::vector<std::size_t> ends(lines.size());
    OpenBlocks open(ends);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (!budget.spend(open.size() * kTgmOpenBlockCost)) {
            ends.resize(index);
            return ends;
        }
        open.step(lines[index], index);
        if (const auto end = endWithoutSearch(lines, index)) {
            ends[index] = *end;
        } else {
            open.open(Machine(lines[index], lazyLists), index);
        }
    }
    open.closeAll();
    return ends;
}
