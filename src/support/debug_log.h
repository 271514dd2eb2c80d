#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "base/errors.h"

class PConsole;

// The debug log of a run, as a value that everything below the session keeps a copy of. All copies share one
// target, so a log can be handed out before anyone knows where it goes. Without a target lines are
// dropped; callers never have to check.
class DebugLog {
public:
    // Without a target.
    DebugLog();
    // The console is borrowed and outlives every copy.
    DebugLog(PConsole& console, std::int32_t level = 0);  // NOLINT(google-explicit-constructor)

    // From now on all copies write there. The console is borrowed; null drops the lines.
    void setTarget(PConsole* console, std::int32_t level) const;

    // 0 to 4: how much is logged beyond the usual lines.
    std::int32_t level() const { return target_->level; }

    // One line, formatted as by printf; the message is cut at PConsole::kMessageLimit bytes.
    void print(const char* format, ...) const TANDREL_PRINTF(2, 3);
    // One line with this text as it is, cut likewise.
    void line(std::string_view text) const;

private:
    struct Target {
        PConsole* console = nullptr;
        std::int32_t level = 0;
    };

    std::shared_ptr<Target> target_;
};
