#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "platform/console_device.h"

// Standard streams in memory: scripted lines and keys in, texts out. The input ends after the script. For one
// thread.
class MemoryConsoleDevice : public platform::ConsoleDevice {
public:
    std::deque<std::string> lines;  // a line feed is added to each when it is read
    std::deque<int> keys;
    std::string output;   // all that was written
    std::string pending;  // the end of it that nobody has flushed
    std::string errors;
    std::string writtenUnechoed;                  // the part of the output written while nothing is echoed
    std::size_t outputLimit = std::string::npos;  // output beyond these bytes fails
    bool errorFails = false;
    int columns = 0;  // 0: the output is not a terminal
    int rows = 0;
    bool inputIsTerminal = false;
    bool isOwnWindow = false;
    bool interrupted = false;
    bool echo = true;
    std::function<void()> beforeRead;  // called at each read of a line or key
    std::function<void()> onSleep;
    std::uint64_t slept = 0;  // milliseconds
    int linesRead = 0;
    int keysRead = 0;
    int flushes = 0;  // without those of the reads

    bool put(std::string_view text) override {
        const std::size_t room = outputLimit - std::min(outputLimit, output.size());
        failed_ = failed_ || text.size() > room;
        if (!failed_) {
            output += text;
            pending += text;
            writtenUnechoed += echo ? "" : text;
        }
        return !failed_;
    }
    bool flush() override {
        ++flushes;
        return flushPending();
    }
    bool putError(std::string_view text) override {
        if (!errorFails) {
            errors += text;
        }
        return !errorFails;
    }

    platform::ReadStatus readLine(std::string& outLine, std::size_t maxBytes) override {
        outLine.clear();
        startReading();
        if (interrupted) {
            return platform::ReadStatus::kInterrupted;
        }
        if (rest_.empty()) {
            if (lines.empty()) {
                return platform::ReadStatus::kEnd;
            }
            rest_ = lines.front() + "\n";
            lines.pop_front();
            ++linesRead;
        }
        outLine = rest_.substr(0, maxBytes);
        rest_.erase(0, outLine.size());
        return platform::ReadStatus::kLine;
    }
    platform::ReadStatus readKey(int& outKey) override {
        outKey = 0;
        startReading();
        if (interrupted) {
            return platform::ReadStatus::kInterrupted;
        }
        if (keys.empty()) {
            return platform::ReadStatus::kEnd;
        }
        outKey = keys.front();
        keys.pop_front();
        ++keysRead;
        return platform::ReadStatus::kLine;
    }
    void beginKeys() override { echo = false; }
    void endKeys() override { echo = true; }
    void interruptInput() override { interrupted = true; }

    bool windowSize(int& outColumns, int& outRows) override {
        outColumns = columns > 0 ? columns : 0;
        outRows = columns > 0 ? rows : 0;
        return columns > 0;
    }
    bool isInputTerminal() override { return inputIsTerminal; }
    bool isOutputTerminal() override { return columns > 0; }
    bool ownsWindow() override { return isOwnWindow; }

    void sleepMilliseconds(std::uint32_t milliseconds) override {
        slept += milliseconds;
        if (onSleep) {
            onSleep();
        }
    }

private:
    void startReading() {
        flushPending();
        if (beforeRead) {
            beforeRead();
        }
    }
    bool flushPending() {
        pending.clear();
        return !failed_;
    }

    std::string rest_;
    bool failed_ = false;
};
