#include "call_gate.h"

#include <cstdio>
#include <cstdlib>

namespace {

// A run of the sample product makes some thousands.
constexpr long kMostCalls = 2'000'000;

}  // namespace

void CallGate::startAtLogLine(std::string text) {
    startLine_ = std::move(text);
    counts_ = false;
}

void CallGate::noteLogText(std::string_view text) {
    const std::lock_guard lock(mutex_);
    counts_ = counts_ || text.find(startLine_) != std::string_view::npos;
}

void CallGate::pass() {
    if (++passed_ == kMostCalls) {
        std::printf("FINDING %s: the run doesn't end; it has made %ld calls\n", run_.c_str(), kMostCalls);
        std::fflush(stdout);
        std::_Exit(1);
    }
}

bool CallGate::refuses(CallClass callClass, const std::string& call) {
    pass();
    const std::lock_guard lock(mutex_);
    if (!counts_) {
        return false;
    }
    const int number = callClass == CallClass::kChanging ? ++changing_ : ++reading_;
    if (callClass == CallClass::kChanging && watcher_) {
        watcher_(number, call, false);
    }
    const bool fails = plan_.call > 0 && plan_.callClass == callClass &&
                       (plan_.lasting ? number >= plan_.call : number == plan_.call);
    if (fails && failedCall_.empty()) {
        failedCall_ = call;
    }
    return fails;
}

void CallGate::reportTornWrite(const std::string& call) {
    const std::lock_guard lock(mutex_);
    if (counts_ && watcher_) {
        watcher_(changing_, call, true);
    }
}

int CallGate::count(CallClass callClass) const {
    const std::lock_guard lock(mutex_);
    return callClass == CallClass::kChanging ? changing_ : reading_;
}

std::string CallGate::failedCall() const {
    const std::lock_guard lock(mutex_);
    return failedCall_;
}
