#include "platform/windows/wide_text.h"

#include <algorithm>

#include "base/wide_text_converter.h"

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's wide text is UTF-16");

namespace {

// Directories are limited to 260 characters less room for a short file name; one limit for both kinds.
constexpr std::size_t kLongestPlainPath = 247;

bool isBackslash(wchar_t character) {
    return character == L'\\' || character == L'/';
}

bool equalsIgnoringCase(std::wstring_view text, std::wstring_view upperCase) {
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(), [](wchar_t a, wchar_t b) {
        return (a >= L'a' && a <= L'z' ? static_cast<wchar_t>(a - L'a' + L'A') : a) == b;
    });
}

// COM1 to COM9 and LPT1 to LPT9, with the superscript digits that the system takes for digits.
bool isNumberedDevice(std::wstring_view name) {
    if (name.size() != 4) {
        return false;
    }
    const std::wstring_view stem = name.substr(0, 3);
    const wchar_t digit = name[3];
    return (equalsIgnoringCase(stem, L"COM") || equalsIgnoringCase(stem, L"LPT")) &&
           ((digit >= L'0' && digit <= L'9') || digit == 0xB9 || digit == 0xB2 || digit == 0xB3);
}

// With an extension, a stream or blanks after the name it still means the device.
bool isDeviceName(std::wstring_view component) {
    std::wstring_view name = component.substr(0, component.find_first_of(L".:"));
    while (!name.empty() && name.back() == L' ') {
        name.remove_suffix(1);
    }
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
        if (equalsIgnoringCase(name, device)) {
            return true;
        }
    }
    return isNumberedDevice(name);
}

}  // namespace

std::wstring wideOf(std::string_view utf8) {
    const std::u16string wide = OUtils::utf8ToWide(utf8);
    return {wide.begin(), wide.end()};
}

std::string utf8Of(const wchar_t* wide) {
    return utf8Of(std::wstring_view(wide));
}

std::string utf8Of(std::wstring_view wide) {
    return OUtils::wideToUtf8({reinterpret_cast<const char16_t*>(wide.data()), wide.size()});
}

std::wstring fullPath(const std::wstring& path) {
    std::wstring full(path.size() + MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (length == 0) {
            return path;
        }
        if (length < full.size()) {
            full.resize(length);
            return full;
        }
        full.resize(length);
    }
}

std::wstring systemPath(std::string_view utf8) {
    std::wstring path = wideOf(utf8);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    if (path.size() <= kLongestPlainPath || path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\")) {
        return path;
    }
    path = fullPath(path);
    if (path.starts_with(L"\\\\.\\")) {
        return path;
    }
    return path.starts_with(L"\\\\") ? L"\\\\?\\UNC" + path.substr(1) : L"\\\\?\\" + path;
}

bool namesDevice(std::wstring_view path) {
    if (path.size() >= 4 && isBackslash(path[0]) && isBackslash(path[1]) && path[2] == L'.' &&
        isBackslash(path[3])) {
        return true;
    }
    while (!path.empty()) {
        const std::size_t end = path.find_first_of(L"\\/");
        if (isDeviceName(path.substr(0, end))) {
            return true;
        }
        path.remove_prefix(end == std::wstring_view::npos ? path.size() : end + 1);
    }
    return false;
}

}  // namespace platform
