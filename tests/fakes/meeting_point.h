#pragma once

#include <condition_variable>
#include <mutex>

// Nobody passes before `count` threads have come; then it serves the next ones. Stands in for std::barrier,
// whose threads can miss each other's wake-up in one of the standard libraries that the system is built with.
class MeetingPoint {
public:
    explicit MeetingPoint(int count) : count_(count) {}

    void arriveAndWait() {
        std::unique_lock lock(mutex_);
        const int round = round_;
        if (++arrived_ == count_) {
            arrived_ = 0;
            ++round_;
            changed_.notify_all();
            return;
        }
        changed_.wait(lock, [this, round] { return round_ != round; });
    }

private:
    const int count_;
    std::mutex mutex_;
    std::condition_variable changed_;
    int arrived_ = 0;
    int round_ = 0;
};
