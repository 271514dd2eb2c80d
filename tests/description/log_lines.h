#pragma once

#include <string>
#include <vector>

#include "support/debug_log.h"
#include "support/p_console.h"

// A log whose lines a test looks at, without numbers, times and line ends.
class LogLines : public PConsole {
public:
    LogLines() { setOptions(0); }

    std::vector<std::string> lines;

    // What a class under test takes as the session's log.
    DebugLog console() { return log_; }
    // From now on the log has no target.
    void detach() { log_.setTarget(nullptr, 0); }

    int write(const char* text, std::int32_t length) override {
        pending_.append(text, static_cast<std::size_t>(length));
        std::size_t end = 0;
        while ((end = pending_.find("\r\n")) != std::string::npos) {
            lines.push_back(pending_.substr(0, end));
            pending_.erase(0, end + 2);
        }
        return 0;
    }

private:
    DebugLog log_{*this};
    std::string pending_;
};
