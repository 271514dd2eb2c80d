#pragma once

// Counts one more as long as it lives, whatever ends it.
class ScopedCount {
public:
    explicit ScopedCount(int& count) : count_(count) { ++count_; }
    ~ScopedCount() { --count_; }
    ScopedCount(const ScopedCount&) = delete;
    ScopedCount& operator=(const ScopedCount&) = delete;

private:
    int& count_;
};
