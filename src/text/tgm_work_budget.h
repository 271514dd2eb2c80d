#pragma once

#include <cstddef>
#include <cstdint>

#include "text/tgm_limits.h"

// Counts the work on one text, quotes included, against what its length allows.
class TGMWorkBudget {
public:
    // `length` is that of the whole text, in bytes.
    explicit TGMWorkBudget(std::size_t length) : limit_(kTgmBaseWork + kTgmWorkPerByte * length) {}

    // False when this is more than what is left; from then on every call fails.
    bool spend(std::uint64_t work) {
        spent_ += work;
        return spent_ <= limit_;
    }

    bool isExhausted() const { return spent_ > limit_; }
    std::uint64_t getSpent() const { return spent_; }
    std::uint64_t getLimit() const { return limit_; }

private:
    std::uint64_t limit_;
    std::uint64_t spent_ = 0;
};
