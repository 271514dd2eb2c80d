#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "support/debug_output.h"

// Catches the debug output of one test.
class DebugLines {
public:
    DebugLines() {
        const std::lock_guard lock(mutex);
        lines.clear();
        former_ = OUtils::setDebugSink([](const char* text) {
            const std::lock_guard inner(mutex);
            lines.emplace_back(text);
        });
    }
    ~DebugLines() { OUtils::setDebugSink(former_); }

    static int count(const std::string& line) {
        const std::lock_guard lock(mutex);
        return static_cast<int>(std::count(lines.begin(), lines.end(), line));
    }

private:
    static inline std::mutex mutex;
    static inline std::vector<std::string> lines;
    OUtils::DebugSink former_ = nullptr;
};
