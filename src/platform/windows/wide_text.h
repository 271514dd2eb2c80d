#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// The texts of this system's calls. Above this folder text is UTF-8; bytes that are not UTF-8 and lone
// surrogates survive both ways.
namespace platform {

// The whole text; zero bytes inside become zero characters.
std::wstring wideOf(std::string_view utf8);
std::string utf8Of(const wchar_t* wide);
std::string utf8Of(std::wstring_view wide);

// A path as the file calls take it: with `\` only, and with the prefix that lifts the length limit when the
// path comes near it.
std::wstring systemPath(std::string_view utf8);

// The path from its root on, or the path itself when the system can't form that.
std::wstring fullPath(const std::wstring& path);

// True when a component of the path is the name of a device ("nul", "COM1.log") or the path leads to the
// device name space: nothing of that kind is a file.
bool namesDevice(std::wstring_view path);

// Owns a handle of the system; null and INVALID_HANDLE_VALUE both mean none.
class Handle {
public:
    explicit Handle(HANDLE handle = nullptr) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    explicit operator bool() const { return handle_ != nullptr; }
    HANDLE get() const { return handle_; }
    // False when the system reports a failure; the handle is given up in any case.
    bool close() {
        const HANDLE handle = handle_;
        handle_ = nullptr;
        return handle == nullptr || CloseHandle(handle) != 0;
    }

private:
    HANDLE handle_;
};

}  // namespace platform
