#include "engine/overall_progress.h"

#include <algorithm>

void OverallProgress::plan(JobStage stage, std::int64_t weight) {
    stages_.push_back({stage, std::max<std::int64_t>(weight, 0)});
    total_ += stages_.back().weight;
}

void OverallProgress::begin(JobStage stage) {
    before_ += weight_;
    weight_ = 0;
    done_ = 0;
    kind_ = stage;
    const auto first = stages_.begin() + static_cast<std::ptrdiff_t>(next_);
    const auto found =
        std::find_if(first, stages_.end(), [stage](const Stage& planned) { return planned.kind == stage; });
    if (found != stages_.end()) {
        for (auto passed = first; passed != found; ++passed) {
            before_ += passed->weight;
        }
        weight_ = found->weight;
        next_ = static_cast<std::size_t>(found - stages_.begin()) + 1;
    }
    show(0);
}

void OverallProgress::share(int percent) {
    if (!advancesByWeight()) {
        show(weight_ * std::clamp(percent, 0, 100) / 100);
    }
}

void OverallProgress::advance(std::int64_t weight) {
    done_ = std::min(done_ + std::max<std::int64_t>(weight, 0), weight_);
    show(done_);
}

void OverallProgress::finish() {
    before_ = total_;
    weight_ = 0;
    next_ = stages_.size();
    isFinished_ = true;
    show(0);
}

// Below 100 until the end, whatever was planned.
void OverallProgress::show(std::int64_t inStage) {
    if (total_ <= 0 && !isFinished_) {
        return;
    }
    const double share =
        total_ > 0 ? static_cast<double>(before_ + inStage) / static_cast<double>(total_) : 0;
    const int percent = isFinished_ ? 100 : std::min(static_cast<int>(share * 100), 99);
    if (percent > shown_ && display_) {
        shown_ = percent;
        display_(percent);
    }
}
