#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "support/p_console.h"

// The reading side of a console that keeps its lines.
class PReadableConsole {
public:
    virtual ~PReadableConsole() = default;

    // How many lines are held.
    virtual int getLineCount() = 0;
    // The line at `index`, the oldest first, without its line end. False without such a line.
    virtual bool getLine(int index, std::string& outLine) = 0;
};

// Keeps the last lines in a ring in memory. Usable by any thread. A line is held as soon as its line feed is
// written; carriage returns are dropped.
class PBufConsole : public PConsole, public PReadableConsole {
public:
    // The bytes that are kept of a line.
    static constexpr std::size_t kLineLimit = 510;

    // `lineCapacity` below 1 counts as 1.
    explicit PBufConsole(int lineCapacity = 1024);

    int write(const char* text, std::int32_t length) override;
    int clear() override;  // 0
    int getLineCount() override;
    bool getLine(int index, std::string& outLine) override;

private:
    void finishLine();

    std::mutex mutex_;
    std::size_t capacity_;
    std::vector<std::string> lines_;
    std::size_t oldest_ = 0;
    std::string pending_;
};
