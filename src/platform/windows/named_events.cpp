#include "platform/named_events.h"

#include "platform/clock.h"
#include "platform/windows/private_security.h"
#include "platform/windows/protected_path.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

class WindowsNamedEvent : public NamedEvent {
public:
    explicit WindowsNamedEvent(HANDLE event) : event_(event) {}

    bool wait(std::uint32_t milliseconds) override {
        return WaitForSingleObject(event_.get(), milliseconds) == WAIT_OBJECT_0;
    }

private:
    Handle event_;
};

constexpr std::uint32_t kLookMilliseconds = 50;

// An open file that nobody else can open and that the system removes when it is closed, by this process or
// for it.
class WindowsNamedLock : public NamedLock {
public:
    explicit WindowsNamedLock(HANDLE file) : file_(file) {}

private:
    Handle file_;
};

// In the system's directory, where only administrators make files. Empty on failure.
std::wstring lockPath(std::string_view name) {
    std::wstring directory(MAX_PATH, L'\0');
    const UINT length = GetSystemWindowsDirectoryW(directory.data(), MAX_PATH);
    if (name.empty() || name.find_first_of("/\\:") != std::string_view::npos || length == 0 ||
        length >= MAX_PATH) {
        return {};
    }
    directory.resize(length);
    return directory + L"\\" + wideOf(name) + L".lock";
}

LockResult tryLock(const wchar_t* path, std::unique_ptr<NamedLock>& outLock) {
    static PrivateSecurity security;
    const HANDLE file = CreateFileW(path, GENERIC_WRITE | DELETE, 0, security.attributes(), OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        outLock = std::make_unique<WindowsNamedLock>(file);
        return LockResult::kTaken;
    }
    const DWORD error = GetLastError();
    // A file of another administrator, or one that is just going away, refuses access.
    const bool isHeld =
        error == ERROR_SHARING_VIOLATION ||
        (error == ERROR_ACCESS_DENIED &&
         (GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES || GetLastError() == ERROR_ACCESS_DENIED));
    return isHeld ? LockResult::kBusy : LockResult::kUnavailable;
}

class WindowsNamedEvents : public NamedEvents {
public:
    std::unique_ptr<NamedEvent> create(std::string_view name) override {
        const std::wstring wide = wideOf(name);
        // Without a name it would be an event that nobody else can find. Once signalled it stays so, for
        // every process that waits.
        SetLastError(ERROR_SUCCESS);
        const HANDLE event = wide.empty() ? nullptr : CreateEventW(nullptr, TRUE, FALSE, wide.c_str());
        const bool isForeign = GetLastError() == ERROR_ALREADY_EXISTS && !isOwnedByTrusted(event);
        auto result = event != nullptr ? std::make_unique<WindowsNamedEvent>(event) : nullptr;
        return isForeign ? nullptr : std::move(result);
    }

    bool signal(std::string_view name) override {
        const Handle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, wideOf(name).c_str()));
        return event && SetEvent(event.get()) != 0;
    }

    LockResult lock(std::string_view name, std::uint32_t milliseconds,
                    std::unique_ptr<NamedLock>& outLock) override {
        outLock.reset();
        const std::wstring path = lockPath(name);
        const std::uint64_t start = monotonicMilliseconds();
        for (;;) {
            const LockResult result =
                path.empty() ? LockResult::kUnavailable : tryLock(path.c_str(), outLock);
            if (result != LockResult::kBusy || monotonicMilliseconds() - start >= milliseconds) {
                return result;
            }
            sleepMilliseconds(kLookMilliseconds);
        }
    }
};

}  // namespace

NamedEvents& systemNamedEvents() {
    static WindowsNamedEvents events;
    return events;
}

}  // namespace platform
