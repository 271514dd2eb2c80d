#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "platform/console_device.h"

// Standard streams that exist in memory only: scripted lines and keys in, texts out. For one thread.
class FakeConsoleDevice : public platform::ConsoleDevice {
public:
    std::deque<std::string> lines;  // given as they are
    std::deque<int> keys;
    std::string pending;  // written but not flushed
    std::string output;
    std::string errors;
    bool outputFails = false;
    bool errorFails = false;
    int columns = 0;  // 0: the output is no terminal
    int rows = 0;
    bool inputIsTerminal = false;
    bool interrupted = false;
    bool echo = true;

    bool write(std::string_view text) override {
        if (!outputFails) {
            pending += text;
        }
        return !outputFails;
    }
    bool flush() override {
        if (!outputFails) {
            output += pending;
            pending.clear();
        }
        return !outputFails;
    }
    bool writeError(std::string_view text) override {
        if (!errorFails) {
            errors += text;
        }
        return !errorFails;
    }

    platform::ReadStatus readLine(std::string& outLine, std::size_t maxBytes) override {
        if (interrupted) {
            return platform::ReadStatus::kInterrupted;
        }
        if (lines.empty()) {
            return platform::ReadStatus::kEnd;
        }
        outLine = lines.front().substr(0, maxBytes);
        lines.front().erase(0, outLine.size());
        if (lines.front().empty()) {
            lines.pop_front();
        }
        return platform::ReadStatus::kLine;
    }
    platform::ReadStatus readKey(int& outKey) override {
        if (interrupted) {
            return platform::ReadStatus::kInterrupted;
        }
        if (keys.empty()) {
            return platform::ReadStatus::kEnd;
        }
        outKey = keys.front();
        keys.pop_front();
        return platform::ReadStatus::kLine;
    }
    void beginKeys() override { echo = false; }
    void endKeys() override { echo = true; }
    void interruptInput() override { interrupted = true; }

    bool windowSize(int& outColumns, int& outRows) override {
        if (columns > 0) {
            outColumns = columns;
            outRows = rows;
        }
        return columns > 0;
    }
    bool isInputTerminal() override { return inputIsTerminal; }
    bool isOutputTerminal() override { return columns > 0; }
};
