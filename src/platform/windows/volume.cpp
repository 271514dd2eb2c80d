#include "platform/windows/volume.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <limits>

#include "platform/file_system.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

bool isDirectory(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// The nearest directory that is there, with a separator at its end: the system asks for one on other
// machines. Where there is none, what is left of the path.
std::wstring presentDirectory(std::wstring path) {
    while (!isDirectory(path)) {
        const std::size_t end = path.find_last_not_of(L'\\');
        const std::size_t separator = end == std::wstring::npos ? end : path.find_last_of(L'\\', end);
        if (separator == std::wstring::npos) {
            break;
        }
        path.resize(separator + 1);
    }
    return path.ends_with(L'\\') ? path : path + L'\\';
}

std::wstring volumePathOf(const wchar_t* directory) {
    std::wstring volume(std::wcslen(directory) + MAX_PATH, L'\0');
    if (GetVolumePathNameW(directory, volume.data(), static_cast<DWORD>(volume.size())) == 0) {
        return directory;
    }
    volume.resize(volume.find(L'\0'));
    return volume;
}

std::int64_t bytesOf(const ULARGE_INTEGER& number) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min<std::uint64_t>(number.QuadPart, kMost));
}

}  // namespace

int volumeOf(const std::wstring& path, Volume& outVolume) {
    outVolume = {};
    const std::wstring present = presentDirectory(fullPath(path));
    const wchar_t* const directory = present.c_str();
    ULARGE_INTEGER free{};
    ULARGE_INTEGER total{};
    if (GetDiskFreeSpaceExW(directory, &free, &total, nullptr) == 0) {
        return failureNumber();
    }
    const std::wstring volume = volumePathOf(directory);
    // A directory with a quota of its own is as good as a volume, and shows the quota as its size.
    std::wstring key = volume + L' ' + std::to_wstring(total.QuadPart);
    std::ranges::transform(key, key.begin(), [](wchar_t c) { return std::towlower(c); });
    outVolume = {utf8Of(volume), utf8Of(key), bytesOf(free)};
    return 0;
}

}  // namespace platform
