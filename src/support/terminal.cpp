#include "support/terminal.h"

#include "platform/clock.h"

namespace {

TerminalRead resultOf(platform::ReadStatus status) {
    switch (status) {
        case platform::ReadStatus::kLine:
            return TerminalRead::Line;
        case platform::ReadStatus::kInterrupted:
            return TerminalRead::Interrupted;
        case platform::ReadStatus::kEnd:
            break;
    }
    return TerminalRead::End;
}

}  // namespace

bool SystemTerminal::noted(bool succeeded) {
    if (!succeeded) {
        outputFailed_ = true;
    }
    return succeeded;
}

bool SystemTerminal::write(std::string_view text) {
    return noted(device_.write(text));
}

bool SystemTerminal::flush() {
    return noted(device_.flush());
}

TerminalRead SystemTerminal::readLine(std::string& out, std::size_t maxBytes) {
    flush();
    const TerminalRead result = resultOf(device_.readLine(out, maxBytes));
    if (result != TerminalRead::Line) {
        out.clear();
    }
    return result;
}

TerminalRead SystemTerminal::readKey(int& outKey) {
    flush();
    const TerminalRead result = resultOf(device_.readKey(outKey));
    if (result != TerminalRead::Line) {
        outKey = 0;
    }
    return result;
}

void SystemTerminal::interruptInput() {
    device_.interruptInput();
}

bool SystemTerminal::windowSize(int& outColumns, int& outRows) {
    outColumns = 0;
    outRows = 0;
    return device_.windowSize(outColumns, outRows);
}

bool SystemTerminal::isInputTerminal() {
    return device_.isInputTerminal();
}

bool SystemTerminal::isOutputTerminal() {
    return device_.isOutputTerminal();
}

void SystemTerminal::sleepMilliseconds(std::uint32_t milliseconds) {
    platform::sleepMilliseconds(milliseconds);
}
