#pragma once

#include <histedit.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/console_device.h"

namespace platform {

// Lines that a person edits at a terminal, by the library libedit. It remembers the lines that were given.
// For one thread.
class LineEditor {
public:
    // Gets one byte of what is typed. A result other than kLine ends the line.
    using ReadByte = std::function<ReadStatus(char& outByte)>;

    // Both are the same terminal, and stay the caller's.
    LineEditor(int input, int output);

    // False where $TERM names no terminal that can move its cursor, or the system has no UTF-8.
    static bool canEdit();

    // Writes the prompt at the start of a line of the terminal, and lets the line be edited. kEnd also where
    // the library can't start. `outLine` is empty unless the result is kLine.
    ReadStatus edit(std::string_view prompt, LineCompletion completion, const ReadByte& readByte,
                    std::string& outLine);

private:
    struct EndHistory {
        void operator()(History* history) const { history_end(history); }
    };

    void remember(const std::string& line);

    const int input_;
    const int output_;
    std::unique_ptr<History, EndHistory> history_;
};

}  // namespace platform
