#include "support/run_outcome.h"

void RunOutcome::note(RunEnd end, std::string_view why) {
    if (end_ == RunEnd::kDone) {
        end_ = end;
        why_ = why;
    }
}

void RunOutcome::noteTakenBack() {
    if (end_ == RunEnd::kFailed) {
        end_ = RunEnd::kTakenBack;
    }
}

void RunOutcome::add(const RunOutcome& later) {
    note(later.end_, later.why_);
    isRestartWanted_ = isRestartWanted_ || later.isRestartWanted_;
}

RunEnd RunOutcome::end() const {
    return end_ == RunEnd::kDone && isRestartWanted_ ? RunEnd::kRestartWanted : end_;
}

int RunOutcome::exitCode(int usual) const {
    const RunEnd known = end_ == RunEnd::kDone && usual != 0 ? RunEnd::kNotStarted : end();
    return static_cast<int>(known);
}
