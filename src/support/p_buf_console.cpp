#include "support/p_buf_console.h"

#include <algorithm>
#include <utility>

PBufConsole::PBufConsole(int lineCapacity) : capacity_(static_cast<std::size_t>(std::max(lineCapacity, 1))) {}

int PBufConsole::write(const char* text, std::int32_t length) {
    const std::lock_guard lock(mutex_);
    for (std::int32_t i = 0; i < length; ++i) {
        if (text[i] == '\n') {
            finishLine();
        } else if (text[i] != '\r' && pending_.size() < kLineLimit) {
            pending_ += text[i];
        }
    }
    return 0;
}

void PBufConsole::finishLine() {
    if (lines_.size() < capacity_) {
        lines_.push_back(std::move(pending_));
    } else {
        lines_[oldest_] = std::move(pending_);
        oldest_ = (oldest_ + 1) % capacity_;
    }
    pending_.clear();
}

int PBufConsole::clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
    pending_.clear();
    oldest_ = 0;
    return 0;
}

int PBufConsole::getLineCount() {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(lines_.size());
}

bool PBufConsole::getLine(int index, std::string& outLine) {
    const std::lock_guard lock(mutex_);
    outLine.clear();
    if (index < 0 || static_cast<std::size_t>(index) >= lines_.size()) {
        return false;
    }
    outLine = lines_[(oldest_ + static_cast<std::size_t>(index)) % lines_.size()];
    return true;
}
