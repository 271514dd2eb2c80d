#include "platform/windows/library_search.h"

#include <algorithm>

namespace platform {

namespace {

constexpr DWORD kSystemOnly = 0x800;  // LOAD_LIBRARY_SEARCH_SYSTEM32

std::wstring systemDirectory() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const UINT length = GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(length);
    }
}

std::wstring searchPath() {
    std::wstring value(1024, L'\0');
    for (;;) {
        const DWORD length = GetEnvironmentVariableW(L"PATH", value.data(), static_cast<DWORD>(value.size()));
        if (length < value.size()) {
            value.resize(length);
            return value;
        }
        value.resize(length);
    }
}

bool isAbsolute(std::wstring_view directory) {
    return directory.starts_with(L"\\\\") ||
           (directory.size() >= 3 && directory[1] == L':' && (directory[2] == L'\\' || directory[2] == L'/'));
}

// Empty entries and relative ones mean the current directory or lie below it.
std::wstring programDirectories() {
    std::wstring directories = systemDirectory();
    const std::wstring path = searchPath();
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(L';', start), path.size());
        const std::wstring_view directory = std::wstring_view(path).substr(start, end - start);
        if (isAbsolute(directory)) {
            directories.append(L";").append(directory);
        }
        start = end + 1;
    }
    return directories;
}

}  // namespace

void searchLibrariesInSystemOnly() {
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    // Windows 7 has it only since an update. What stays without it is the directory of the program.
    const auto setDirectories = reinterpret_cast<SetDirectories>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetDefaultDllDirectories")));
    if (setDirectories == nullptr || setDirectories(kSystemOnly) == 0) {
        SetDllDirectoryW(L"");
    }
}

HMODULE loadSystemLibrary(std::wstring_view name) {
    const std::wstring path = systemDirectory().append(L"\\").append(name);
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

std::wstring findProgram(const std::wstring& name) {
    const std::wstring directories = programDirectories();
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = SearchPathW(directories.c_str(), name.c_str(), L".exe",
                                         static_cast<DWORD>(path.size()), path.data(), nullptr);
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(length);
    }
}

}  // namespace platform
