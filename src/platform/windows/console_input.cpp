#include "platform/windows/console_input.h"

#include <algorithm>

namespace platform {

namespace {

constexpr DWORD kPiece = 4096;             // characters of a console
constexpr int kWakeAttempts = 2000;        // of 1 ms each
constexpr int kAttemptsBeforeEnter = 100;  // then a key press is made up
constexpr wchar_t kEndOfConsoleInput = 0x1A;

void pressEnter(HANDLE console) {
    INPUT_RECORD records[2] = {};
    for (INPUT_RECORD& record : records) {
        record.EventType = KEY_EVENT;
        record.Event.KeyEvent.wRepeatCount = 1;
        record.Event.KeyEvent.wVirtualKeyCode = VK_RETURN;
        record.Event.KeyEvent.uChar.UnicodeChar = L'\r';
    }
    records[0].Event.KeyEvent.bKeyDown = TRUE;
    DWORD written = 0;
    WriteConsoleInputW(console, records, 2, &written);
}

}  // namespace

RawConsoleMode::RawConsoleMode(HANDLE console) : console_(console) {
    changed_ = GetConsoleMode(console, &mode_) != 0 && SetConsoleMode(console, 0) != 0;
}

RawConsoleMode::~RawConsoleMode() {
    if (changed_) {
        SetConsoleMode(console_, mode_);
    }
}

ConsoleInput::ConsoleInput(HANDLE handle)
    : handle_(handle),
      kind_(kindOf(handle)),
      interruptEvent_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      stream_(handle) {}

ConsoleInput::Kind ConsoleInput::kindOf(HANDLE handle) {
    DWORD mode = 0;
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        return Kind::kNone;
    }
    if (GetConsoleMode(handle, &mode) != 0) {
        return Kind::kConsole;
    }
    return GetFileType(handle) == FILE_TYPE_DISK ? Kind::kFile : Kind::kStream;
}

ReadStatus ConsoleInput::readLine(std::string& outLine, std::size_t maxBytes) {
    outLine.clear();
    std::size_t searched = 0;
    for (;;) {
        if (interrupted_) {
            return ReadStatus::kInterrupted;
        }
        const std::size_t lineFeed = text_.find('\n', position_ + searched);
        searched = unread();
        if (lineFeed != std::string::npos || searched >= maxBytes) {
            const std::size_t whole = lineFeed == std::string::npos ? searched : lineFeed + 1 - position_;
            outLine = text_.substr(position_, std::min(whole, maxBytes));
            position_ += outLine.size();
            return ReadStatus::kLine;
        }
        const ReadStatus status = fill();
        if (status == ReadStatus::kEnd && unread() > 0) {
            maxBytes = std::min(maxBytes, unread());
        } else if (status != ReadStatus::kLine) {
            return status;
        }
    }
}

ReadStatus ConsoleInput::readKey(int& outKey) {
    outKey = 0;
    if (kind_ == Kind::kConsole) {
        const ReadStatus status = keys_.empty() ? waitForConsoleKey() : ReadStatus::kLine;
        if (status != ReadStatus::kLine || interrupted_) {
            return interrupted_ ? ReadStatus::kInterrupted : status;
        }
        outKey = static_cast<unsigned char>(keys_.front());
        keys_.erase(0, 1);
        return ReadStatus::kLine;
    }
    std::string byte;
    const ReadStatus status = readLine(byte, 1);
    if (status == ReadStatus::kLine) {
        outKey = static_cast<unsigned char>(byte.front());
    }
    return status;
}

void ConsoleInput::beginKeys() {
    if (kind_ == Kind::kConsole) {
        rawMode_.emplace(handle_);
    }
}

void ConsoleInput::endKeys() {
    rawMode_.reset();
}

// Gets more text. kLine: there may be more now; kEnd: there won't be.
ReadStatus ConsoleInput::fill() {
    if (ended_ || kind_ == Kind::kNone) {
        return ReadStatus::kEnd;
    }
    text_.erase(0, position_);
    position_ = 0;
    std::string bytes;
    ReadStatus status = ReadStatus::kEnd;
    if (kind_ == Kind::kConsole) {
        status = readConsoleText(bytes);
    } else if (kind_ == Kind::kStream) {
        status = stream_.read(bytes);
    } else if (readPiece(handle_, bytes)) {
        status = ReadStatus::kLine;
    }
    if (status == ReadStatus::kLine) {
        appendTranslated(bytes);
    } else if (status == ReadStatus::kEnd) {
        ended_ = true;
        text_.append(heldReturn_ ? 1 : 0, '\r');
        heldReturn_ = false;
    }
    return status;
}

void ConsoleInput::appendTranslated(const std::string& bytes) {
    for (const char byte : bytes) {
        if (heldReturn_ && byte != '\n') {
            text_ += '\r';
        }
        heldReturn_ = byte == '\r';
        if (!heldReturn_) {
            text_ += byte;
        }
    }
}

ReadStatus ConsoleInput::readConsoleText(std::string& outBytes) {
    std::wstring wide(kPiece, L'\0');
    DWORD length = 0;
    readingConsole_ = true;
    if (interrupted_) {
        readingConsole_ = false;
        return ReadStatus::kInterrupted;
    }
    SetLastError(ERROR_SUCCESS);
    const BOOL read = ReadConsoleW(handle_, wide.data(), kPiece - 1, &length, nullptr);
    const DWORD error = GetLastError();
    readingConsole_ = false;
    if (interrupted_) {
        return ReadStatus::kInterrupted;
    }
    if (length == 0 && error == ERROR_OPERATION_ABORTED) {
        return ReadStatus::kLine;  // Ctrl-C ends the read; whether it ends the run, its handler decides
    }
    if (read == 0 || length == 0 || wide.front() == kEndOfConsoleInput) {
        return ReadStatus::kEnd;
    }
    if (IS_HIGH_SURROGATE(wide[length - 1])) {
        DWORD more = 0;
        ReadConsoleW(handle_, wide.data() + length, 1, &more, nullptr);
        length += more;
    }
    outBytes = utf8Of(std::wstring_view(wide.data(), length));
    return ReadStatus::kLine;
}

ReadStatus ConsoleInput::waitForConsoleKey() {
    const RawConsoleMode raw(handle_);
    const HANDLE waitFor[2] = {interruptEvent_.get(), handle_};
    while (keys_.empty()) {
        const DWORD which = WaitForMultipleObjects(2, waitFor, FALSE, INFINITE);
        if (which == WAIT_OBJECT_0 || interrupted_) {
            return ReadStatus::kInterrupted;
        }
        if (which != WAIT_OBJECT_0 + 1 || !takeKeyEvent()) {
            return ReadStatus::kEnd;
        }
    }
    return ReadStatus::kLine;
}

// Takes one event from the console; keys with a character go to `keys_`. False when the console no longer
// exists.
bool ConsoleInput::takeKeyEvent() {
    INPUT_RECORD record;
    DWORD count = 0;
    if (ReadConsoleInputW(handle_, &record, 1, &count) == 0) {
        return false;
    }
    const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
    const wchar_t character = key.uChar.UnicodeChar;
    // A character composed with the Alt key comes with the key's release.
    if (count == 0 || record.EventType != KEY_EVENT || character == 0 ||
        (!key.bKeyDown && key.wVirtualKeyCode != VK_MENU)) {
        return true;
    }
    if (IS_HIGH_SURROGATE(character)) {
        highSurrogate_ = character;
        return true;
    }
    std::wstring text;
    if (highSurrogate_ != 0) {
        text += highSurrogate_;
        highSurrogate_ = 0;
    }
    text += character;
    for (int i = 0; i < std::max<int>(key.wRepeatCount, 1); i++) {
        keys_ += utf8Of(text);
    }
    return true;
}

void ConsoleInput::interrupt() {
    interrupted_ = true;
    SetEvent(interruptEvent_.get());
    if (kind_ == Kind::kConsole) {
        wakeConsoleRead();
    } else {
        stream_.interrupt();
    }
}

// The read may be about to begin, so that one attempt could come too early. Consoles that know nothing of
// cancelling end the read at a line's end, and get one.
void ConsoleInput::wakeConsoleRead() {
    for (int attempt = 0; attempt < kWakeAttempts && readingConsole_; attempt++) {
        CancelIoEx(handle_, nullptr);
        if (attempt == kAttemptsBeforeEnter) {
            pressEnter(handle_);
        }
        Sleep(1);
    }
}

}  // namespace platform
