#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "support/terminal.h"

// A terminal with scripted input that keeps what is printed. When the script is used up the input is at its
// end. For one thread.
class FakeTerminal : public Terminal {
public:
    std::deque<std::string> lines;  // a line feed is added to each when it is read
    std::deque<int> keys;
    std::string output;
    int columns = 0;  // 0: the output is no terminal
    int rows = 0;
    bool inputIsTerminal = false;
    std::size_t outputLimit = std::string::npos;  // bytes after which the output has failed
    std::function<void()> beforeRead;             // called at each read of a line or key
    std::uint64_t slept = 0;                      // milliseconds
    std::function<void()> onSleep;
    int linesRead = 0;
    int keysRead = 0;
    int flushes = 0;
    bool echo = true;
    std::string writtenUnechoed;  // the part of the output that was written while nothing is echoed

    bool write(std::string_view text) override {
        const std::size_t room = outputLimit - std::min(outputLimit, output.size());
        failed_ = failed_ || text.size() > room;
        if (!failed_) {
            output += text;
            writtenUnechoed += echo ? "" : text;
        }
        return !failed_;
    }
    bool flush() override {
        ++flushes;
        return !failed_;
    }
    bool outputFailed() override { return failed_; }

    TerminalRead readLine(std::string& out, std::size_t maxBytes) override {
        out.clear();
        if (beforeRead) {
            beforeRead();
        }
        if (interrupted_) {
            return TerminalRead::Interrupted;
        }
        if (rest_.empty()) {
            if (lines.empty()) {
                return TerminalRead::End;
            }
            rest_ = lines.front() + "\n";
            lines.pop_front();
            ++linesRead;
        }
        out = rest_.substr(0, maxBytes);
        rest_.erase(0, out.size());
        return TerminalRead::Line;
    }

    TerminalRead readKey(int& outKey) override {
        outKey = 0;
        if (beforeRead) {
            beforeRead();
        }
        if (interrupted_) {
            return TerminalRead::Interrupted;
        }
        if (keys.empty()) {
            return TerminalRead::End;
        }
        outKey = keys.front();
        keys.pop_front();
        ++keysRead;
        return TerminalRead::Line;
    }

    void beginKeys() override { echo = false; }
    void endKeys() override { echo = true; }
    void interruptInput() override { interrupted_ = true; }

    bool windowSize(int& outColumns, int& outRows) override {
        outColumns = columns;
        outRows = rows;
        return columns > 0;
    }
    bool isInputTerminal() override { return inputIsTerminal; }
    bool isOutputTerminal() override { return columns > 0; }
    void sleepMilliseconds(std::uint32_t milliseconds) override {
        slept += milliseconds;
        if (onSleep) {
            onSleep();
        }
    }

private:
    std::string rest_;
    bool interrupted_ = false;
    bool failed_ = false;
};
