#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "support/byte_progress.h"

namespace platform {
class ConsoleDevice;
}

// A line at a terminal that says how far long work is: percent, rate and name. It stands where the cursor is,
// at the start of a line, and leaves nothing behind. What is done within a second shows none.
class ProgressLine {
public:
    using Milliseconds = std::function<std::uint64_t()>;

    // `terminal` outlives the object. Where it is none nothing is written.
    explicit ProgressLine(platform::ConsoleDevice& terminal,
                          Milliseconds now = platform::monotonicMilliseconds);
    ~ProgressLine() { end(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Each piece of work begins with this.
    void begin(std::string_view name);
    // Shown a few times in a second. The end is that everything is done, or end().
    void show(std::int64_t done, std::int64_t total);
    void end();

private:
    void draw(std::int64_t done, std::int64_t total, std::uint64_t now);

    platform::ConsoleDevice& terminal_;
    const Milliseconds now_;
    std::string name_;
    std::uint64_t start_ = 0;
    std::uint64_t shownAt_ = 0;
    std::size_t width_ = 0;  // of what is on the screen, in columns
};
