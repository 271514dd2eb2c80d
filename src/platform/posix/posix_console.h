#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>

#include "platform/console_device.h"
#include "platform/posix/line_editor.h"
#include "platform/posix/system_calls.h"
#include "platform/posix/terminal_mode.h"

namespace platform {

// A console on three descriptors, which stay the caller's. Output may come from several threads, input is
// read by one.
class PosixConsole : public ConsoleDevice {
public:
    PosixConsole(int input, int output, int error);

    bool flush() override;
    ReadStatus readLine(std::string& outLine, std::size_t maxBytes) override;
    std::optional<ReadStatus> editLine(std::string_view prompt, LineCompletion completion,
                                       std::string& outLine, std::size_t maxBytes) override;
    ReadStatus readKey(int& outKey) override;
    void beginKeys() override { keys_.emplace(input_); }
    void endKeys() override { keys_.reset(); }
    void interruptInput() override;
    bool windowSize(int& outColumns, int& outRows) override;
    bool isInputTerminal() override;
    bool isOutputTerminal() override;
    void sleepMilliseconds(std::uint32_t milliseconds) override;

protected:
    bool put(std::string_view bytes) override;
    bool putError(std::string_view bytes) override;

private:
    bool flushLocked();
    bool isAtLineStart();
    ReadStatus readByte(char& outByte);
    ReadStatus fillInput();
    ReadStatus waitForInput();
    bool takeLinePart(std::string& outLine, std::size_t maxBytes);
    ReadStatus takeKey(int& outKey);

    const int input_;
    const int output_;
    const int error_;

    std::mutex outputMutex_;
    std::string pendingOutput_;
    bool outputFailed_ = false;
    bool atLineStart_ = true;

    std::string pendingInput_;
    std::size_t inputPosition_ = 0;
    std::optional<LineEditor> editor_;     // from the first edited line on
    std::optional<RawTerminalMode> keys_;  // from beginKeys to endKeys
    std::atomic<bool> interrupted_{false};
    Descriptor wakeUp_;  // readable from the first interruptInput on
};

}  // namespace platform
