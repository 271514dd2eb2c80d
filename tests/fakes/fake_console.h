#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "support/p_console.h"

// A console that keeps its lines, without prefixes unless options are set.
class FakeConsole : public PConsole {
public:
    FakeConsole() { setOptions(0); }

    int write(const char* text, std::int32_t length) override {
        const std::lock_guard lock(mutex_);
        text_.append(text, static_cast<std::size_t>(length));
        ++writes_;
        return 0;
    }
    int clear() override {
        const std::lock_guard lock(mutex_);
        text_.clear();
        return 0;
    }

    // Everything that was written, line ends included.
    std::string text() const {
        const std::lock_guard lock(mutex_);
        return text_;
    }
    // The lines without their ends; a last one without an end as well.
    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        const std::string all = text();
        for (std::size_t start = 0; start < all.size();) {
            const std::size_t end = std::min(all.find("\r\n", start), all.size());
            lines.push_back(all.substr(start, end - start));
            start = end + 2;
        }
        return lines;
    }
    bool hasLine(std::string_view line) const {
        for (const std::string& candidate : lines()) {
            if (candidate == line) {
                return true;
            }
        }
        return false;
    }
    // How often write was called.
    int writes() const {
        const std::lock_guard lock(mutex_);
        return writes_;
    }

private:
    mutable std::mutex mutex_;
    std::string text_;
    int writes_ = 0;
};
