#include "platform/windows/console_output.h"

#include <algorithm>

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr std::size_t kMuch = 64 * 1024;     // bytes
constexpr std::size_t kConsolePiece = 8000;  // characters; older consoles refuse more than 64 KiB at once

// The number of bytes at the end that begin a character whose rest is still to come.
std::size_t unfinishedTail(std::string_view text) {
    const std::size_t look = std::min<std::size_t>(3, text.size());
    for (std::size_t back = 1; back <= look; back++) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if (byte < 0x80) {
            return 0;
        }
        if (byte >= 0xC0) {
            const std::size_t wanted = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
            return wanted > back ? back : 0;
        }
    }
    return 0;
}

std::string withLineEnds(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    for (const char character : text) {
        if (character == '\n') {
            result += '\r';
        }
        result += character;
    }
    return result;
}

}  // namespace

ConsoleOutput::ConsoleOutput(HANDLE handle) : handle_(handle) {
    DWORD mode = 0;
    failed_ = handle == nullptr || handle == INVALID_HANDLE_VALUE;
    terminal_ = !failed_ && GetConsoleMode(handle, &mode) != 0;
}

bool ConsoleOutput::write(std::string_view text) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (failed_) {
        return false;
    }
    pending_ += text;
    return pending_.size() < kMuch || flushLocked();
}

bool ConsoleOutput::flush() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return flushLocked();
}

bool ConsoleOutput::flushLocked() {
    if (!failed_ && !(terminal_ ? writeToTerminal() : writeToFile())) {
        failed_ = true;
        pending_.clear();
    }
    return !failed_;
}

bool ConsoleOutput::writeToTerminal() {
    const std::size_t tail = unfinishedTail(pending_);
    const std::wstring text =
        wideOf(std::string_view(withLineEnds(std::string_view(pending_).substr(0, pending_.size() - tail))));
    pending_.erase(0, pending_.size() - tail);
    std::size_t position = 0;
    while (position < text.size()) {
        std::size_t piece = std::min(kConsolePiece, text.size() - position);
        if (piece > 1 && IS_HIGH_SURROGATE(text[position + piece - 1])) {
            piece--;
        }
        DWORD done = 0;
        if (WriteConsoleW(handle_, text.data() + position, static_cast<DWORD>(piece), &done, nullptr) == 0 ||
            done == 0) {
            return false;
        }
        position += done;
    }
    return true;
}

bool ConsoleOutput::writeToFile() {
    const std::string text = withLineEnds(pending_);
    pending_.clear();
    std::size_t position = 0;
    while (position < text.size()) {
        DWORD done = 0;
        if (WriteFile(handle_, text.data() + position, static_cast<DWORD>(text.size() - position), &done,
                      nullptr) == 0 ||
            done == 0) {
            return false;
        }
        position += done;
    }
    return true;
}

bool ConsoleOutput::windowSize(int& outColumns, int& outRows) const {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!terminal_ || GetConsoleScreenBufferInfo(handle_, &info) == 0) {
        return false;
    }
    outColumns = info.srWindow.Right - info.srWindow.Left + 1;
    outRows = info.srWindow.Bottom - info.srWindow.Top + 1;
    return true;
}

}  // namespace platform
