#include "platform/posix/posix_console.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/clock.h"

namespace platform {

namespace {

constexpr std::size_t kOutputBufferSize = 32768;
constexpr std::size_t kInputChunkSize = 4096;
constexpr int kBackspaceKey = 8;

}  // namespace

PosixConsole::PosixConsole(int input, int output, int error)
    : input_(input), output_(output), error_(error), wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    // A reader that goes away shows as a failed write, which is reported; it must not end the process.
    std::signal(SIGPIPE, SIG_IGN);
}

bool PosixConsole::put(std::string_view bytes) {
    const std::lock_guard lock(outputMutex_);
    if (outputFailed_) {
        return false;
    }
    pendingOutput_ += bytes;
    if (!bytes.empty()) {
        atLineStart_ = bytes.back() == '\n' || bytes.back() == '\r';
    }
    return pendingOutput_.size() < kOutputBufferSize || flushLocked();
}

bool PosixConsole::flush() {
    const std::lock_guard lock(outputMutex_);
    return flushLocked();
}

bool PosixConsole::flushLocked() {
    if (outputFailed_) {
        return false;
    }
    std::size_t ignored = 0;
    outputFailed_ = writeAll(output_, pendingOutput_.data(), pendingOutput_.size(), ignored) != 0;
    pendingOutput_.clear();
    return !outputFailed_;
}

bool PosixConsole::putError(std::string_view bytes) {
    std::size_t ignored = 0;
    return writeAll(error_, bytes.data(), bytes.size(), ignored) == 0;
}

ReadStatus PosixConsole::readLine(std::string& outLine, std::size_t maxBytes) {
    outLine.clear();
    flush();
    while (!interrupted_ && !takeLinePart(outLine, maxBytes)) {
        const ReadStatus status = fillInput();
        if (status == ReadStatus::kEnd) {
            return outLine.empty() ? ReadStatus::kEnd : ReadStatus::kLine;
        }
    }
    if (interrupted_) {
        outLine.clear();
        return ReadStatus::kInterrupted;
    }
    return ReadStatus::kLine;
}

bool PosixConsole::isAtLineStart() {
    const std::lock_guard lock(outputMutex_);
    return atLineStart_;
}

std::optional<ReadStatus> PosixConsole::editLine(std::string_view prompt, LineCompletion completion,
                                                 std::string& outLine, std::size_t maxBytes) {
    outLine.clear();
    if (!isInputTerminal() || !isOutputTerminal()) {
        return std::nullopt;
    }
    // The editor knows one line; what is above it is printed as always.
    const std::size_t lineStart = prompt.rfind('\n') + 1;  // 0 without a line feed
    if (lineStart == 0 && !isAtLineStart()) {
        return std::nullopt;
    }
    if (!editor_) {
        editor_.emplace(input_, output_);
    }
    const auto readOne = [this](char& byte) { return readByte(byte); };
    if (!editor_->canEdit()) {
        return std::nullopt;
    }
    write(prompt.substr(0, lineStart));
    flush();
    const ReadStatus status = editor_->edit(prompt.substr(lineStart), completion, readOne, outLine);
    outLine.resize(std::min(outLine.size(), maxBytes));
    return interrupted_ ? ReadStatus::kInterrupted : status;
}

ReadStatus PosixConsole::readByte(char& outByte) {
    while (!interrupted_ && inputPosition_ == pendingInput_.size()) {
        const ReadStatus status = fillInput();
        if (status != ReadStatus::kLine) {
            return status;
        }
    }
    if (interrupted_) {
        return ReadStatus::kInterrupted;
    }
    outByte = pendingInput_[inputPosition_++];
    return ReadStatus::kLine;
}

// True when the line is complete.
bool PosixConsole::takeLinePart(std::string& outLine, std::size_t maxBytes) {
    const char* start = pendingInput_.data() + inputPosition_;
    std::size_t length = std::min(pendingInput_.size() - inputPosition_, maxBytes - outLine.size());
    const void* lineFeed = std::memchr(start, '\n', length);
    if (lineFeed != nullptr) {
        length = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - start) + 1;
    }
    outLine.append(start, length);
    inputPosition_ += length;
    return lineFeed != nullptr || outLine.size() == maxBytes;
}

// Called with an empty buffer only.
ReadStatus PosixConsole::fillInput() {
    inputPosition_ = 0;
    pendingInput_.clear();
    for (;;) {
        const ReadStatus status = waitForInput();
        if (status != ReadStatus::kLine) {
            return status;
        }
        char chunk[kInputChunkSize];
        const ssize_t done = retryInterrupted([&] { return read(input_, chunk, sizeof chunk); });
        if (done > 0) {
            pendingInput_.assign(chunk, static_cast<std::size_t>(done));
            return ReadStatus::kLine;
        }
        if (done == 0 || errno != EAGAIN) {
            return ReadStatus::kEnd;
        }
    }
}

ReadStatus PosixConsole::waitForInput() {
    pollfd waits[] = {{wakeUp_.get(), POLLIN, 0}, {input_, POLLIN, 0}};
    if (retryInterrupted([&] { return poll(waits, 2, -1); }) < 0) {
        return ReadStatus::kEnd;
    }
    return interrupted_ ? ReadStatus::kInterrupted : ReadStatus::kLine;
}

ReadStatus PosixConsole::readKey(int& outKey) {
    outKey = 0;
    flush();
    if (!interrupted_ && inputPosition_ == pendingInput_.size()) {
        // What arrives while echo is off is taken at once: a pasted password must not meet the echo between
        // two keys.
        const RawTerminalMode raw(input_);
        const ReadStatus status = fillInput();
        if (status == ReadStatus::kEnd) {
            return status;
        }
    }
    return interrupted_ ? ReadStatus::kInterrupted : takeKey(outKey);
}

ReadStatus PosixConsole::takeKey(int& outKey) {
    const unsigned char key = static_cast<unsigned char>(pendingInput_[inputPosition_++]);
    termios settings{};
    // A disabled key has the value of an ordinary byte, which must not be taken for it.
    const bool isSpecial = tcgetattr(input_, &settings) == 0 && key != _POSIX_VDISABLE;
    if (isSpecial && key == settings.c_cc[VEOF]) {
        return ReadStatus::kEnd;
    }
    outKey = isSpecial && key == settings.c_cc[VERASE] ? kBackspaceKey : key;
    return ReadStatus::kLine;
}

void PosixConsole::interruptInput() {
    interrupted_ = true;
    const std::uint64_t one = 1;
    std::size_t ignored = 0;
    writeAll(wakeUp_.get(), reinterpret_cast<const char*>(&one), sizeof one, ignored);
}

bool PosixConsole::windowSize(int& outColumns, int& outRows) {
    outColumns = 0;
    outRows = 0;
    winsize size{};
    if (ioctl(output_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return false;
    }
    outColumns = size.ws_col;
    outRows = size.ws_row;
    return true;
}

bool PosixConsole::isInputTerminal() {
    return isatty(input_) == 1;
}

bool PosixConsole::isOutputTerminal() {
    return isatty(output_) == 1;
}

void PosixConsole::sleepMilliseconds(std::uint32_t milliseconds) {
    platform::sleepMilliseconds(milliseconds);
}

ConsoleDevice& systemConsole() {
    // Never destroyed: the thread that serves signals may print until the process is gone.
    static PosixConsole& console = []() -> PosixConsole& {
        auto* device = new PosixConsole(STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO);
        std::atexit([] { systemConsole().flush(); });
        return *device;
    }();
    return console;
}

}  // namespace platform
