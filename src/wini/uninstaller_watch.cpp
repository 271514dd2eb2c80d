#include "wini/uninstaller_watch.h"

#include "platform/named_events.h"
#include "platform/processes.h"

namespace {

constexpr std::uint32_t kLookMilliseconds = 100;

}  // namespace

UninstallerWatch::Phase UninstallerWatch::phase() const {
    const bool canHear = start_ != nullptr && end_ != nullptr;
    if (hasEnded_ && (exitCode_ != 0 || endSignalled_ || !canHear)) {
        return Phase::kOver;
    }
    if (startSignalled_) {
        return Phase::kSignalled;
    }
    return hasEnded_ ? Phase::kUnclear : Phase::kRunning;
}

// Only the time in here counts: what the front end does in between, such as asking the user, isn't held
// against the uninstaller.
void UninstallerWatch::look() {
    const Phase before = phase();
    const std::uint64_t begin = clock_();
    waitForNext();
    waited_ += clock_() - begin;
    // An event may forget its signal once it was waited for.
    startSignalled_ = startSignalled_ || (start_ != nullptr && start_->wait(0));
    endSignalled_ = endSignalled_ || (end_ != nullptr && end_->wait(0));
    if (phase() != before) {
        waited_ = 0;
        extent_ = 1;
    }
}

void UninstallerWatch::waitForNext() {
    if (!hasEnded_) {
        hasEnded_ = program_.wait(kLookMilliseconds);
        exitCode_ = hasEnded_ ? program_.exitCode() : 0;
    } else if (phase() == Phase::kUnclear) {
        startSignalled_ = start_->wait(kLookMilliseconds);
    } else if (phase() == Phase::kSignalled) {
        endSignalled_ = end_->wait(kLookMilliseconds);
    }
}
