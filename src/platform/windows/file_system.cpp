#include "platform/file_system.h"

#include <windows.h>

#include <aclapi.h>
#include <ntsecapi.h>

#include <cwchar>

#include "platform/windows/directory.h"
#include "platform/windows/file.h"
#include "platform/windows/link_test.h"
#include "platform/windows/private_security.h"
#include "platform/windows/protected_path.h"
#include "platform/windows/system_error.h"
#include "platform/windows/volume.h"

namespace platform {

namespace {

constexpr int kRefusedName = ERROR_INVALID_NAME;

struct DispositionFlags {
    DWORD disposition;
    DWORD flags;
};

// Without the flag, creating a file in the place of a link to nothing would create the link's target.
DispositionFlags flagsOf(Disposition disposition) {
    switch (disposition) {
        case Disposition::kOpenExisting:
            return {OPEN_EXISTING, 0};
        case Disposition::kOpenOrCreate:
            return {OPEN_ALWAYS, 0};
        case Disposition::kCreateAlways:
            return {CREATE_ALWAYS, 0};
        case Disposition::kCreateNew:
        case Disposition::kCreatePrivate:
            return {CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT};
    }
    return {OPEN_EXISTING, 0};
}

DWORD accessOf(std::uint32_t access) {
    return ((access & kRead) != 0 ? GENERIC_READ : 0) | ((access & kWrite) != 0 ? GENERIC_WRITE : 0);
}

DWORD shareOf(std::uint32_t share) {
    return ((share & kShareRead) != 0 ? FILE_SHARE_READ : 0) |
           ((share & kShareWrite) != 0 ? FILE_SHARE_WRITE : 0) |
           ((share & kShareDelete) != 0 ? FILE_SHARE_DELETE : 0);
}

// Calls `operation` with the path as the system takes it; devices are refused before.
template <typename Operation>
int onPath(std::string_view path, Operation operation) {
    const std::wstring wide = systemPath(path);
    return namesDevice(wide) ? kRefusedName : statusOf(operation(wide.c_str()));
}

template <typename Operation>
int onTwoPaths(std::string_view from, std::string_view to, Operation operation) {
    const std::wstring wideFrom = systemPath(from);
    const std::wstring wideTo = systemPath(to);
    return namesDevice(wideFrom) || namesDevice(wideTo)
               ? kRefusedName
               : statusOf(operation(wideFrom.c_str(), wideTo.c_str()));
}

// Opens the entry itself, also a link, and calls `operation` with it and the path to give it.
template <typename Operation>
int onEntry(std::string_view path, std::string_view to, DWORD access, Operation operation) {
    const std::wstring wide = systemPath(path);
    const std::wstring wideTo = systemPath(to);
    if (namesDevice(wide) || namesDevice(wideTo)) {
        return kRefusedName;
    }
    const Handle entry(
        CreateFileW(wide.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return entry ? operation(entry.get(), wideTo) : failureNumber();
}

// What the directory says about an entry. A file that is locked or protected against its own reader answers
// only to a search, which in turn must not see a wildcard.
bool entryOf(std::string_view path, DWORD& outAttributes, std::int64_t& outSize) {
    const std::wstring wide = systemPath(path);
    if (namesDevice(wide)) {
        return false;
    }
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (GetFileAttributesExW(wide.c_str(), GetFileExInfoStandard, &data) != 0) {
        outAttributes = data.dwFileAttributes;
        outSize = static_cast<std::int64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
        return true;
    }
    const DWORD error = GetLastError();
    if ((error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) ||
        wide.find_first_of(L"*?", wide.starts_with(L"\\\\?\\") ? 4 : 0) != std::wstring::npos) {
        return false;
    }
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(wide.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    outAttributes = found.dwFileAttributes;
    outSize = static_cast<std::int64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
    return true;
}

bool isMissingError(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_INVALID_DRIVE || error == ERROR_BAD_NETPATH;
}

// The kind of link or other special entry that a path names; 0 when it can't be found out.
DWORD tagOf(const std::wstring& path) {
    const Handle entry(CreateFileW(
        path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
        OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    FILE_ATTRIBUTE_TAG_INFO info;
    const bool isKnown =
        entry && GetFileInformationByHandleEx(entry.get(), FileAttributeTagInfo, &info, sizeof(info)) != 0;
    return isKnown ? info.ReparseTag : 0;
}

bool isLinkItself(HANDLE handle) {
    FILE_ATTRIBUTE_TAG_INFO info;
    return GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &info, sizeof(info)) == 0 ||
           isLink(info.FileAttributes, info.ReparseTag);
}

// The path without the prefix that the system puts in front of what it resolved.
std::wstring withoutPrefix(const std::wstring& path) {
    constexpr std::wstring_view kNetwork = L"\\\\?\\UNC\\";
    constexpr std::wstring_view kPlain = L"\\\\?\\";
    if (path.starts_with(kNetwork)) {
        return L"\\\\" + path.substr(kNetwork.size());
    }
    return path.starts_with(kPlain) ? path.substr(kPlain.size()) : path;
}

// Of a file or a directory.
int finalPathOf(const std::wstring& path, std::wstring& outPath) {
    const Handle file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file) {
        return failureNumber();
    }
    const DWORD size = GetFinalPathNameByHandleW(file.get(), nullptr, 0, FILE_NAME_NORMALIZED);
    std::wstring final(size, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file.get(), final.data(), size, FILE_NAME_NORMALIZED);
    if (length == 0 || length >= size) {
        return failureNumber();
    }
    final.resize(length);
    outPath = withoutPrefix(final);
    return 0;
}

// What was given to the object itself goes; what the directory hands down comes.
int inheritAccessList(std::wstring path) {
    ACL nothing{};
    if (InitializeAcl(&nothing, sizeof(nothing), ACL_REVISION) == 0) {
        return failureNumber();
    }
    return static_cast<int>(SetNamedSecurityInfoW(
        path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | UNPROTECTED_DACL_SECURITY_INFORMATION,
        nullptr, nullptr, &nothing, nullptr));
}

int listInto(const std::wstring& pattern, std::vector<DirectoryEntry>& outEntries) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch,
                                           nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        const int error = failureNumber();
        // An empty root directory has not even the entry "."; that isn't a failure.
        return error == ERROR_FILE_NOT_FOUND ? 0 : error;
    }
    do {
        if (isListableName(found.cFileName)) {
            outEntries.push_back({utf8Of(found.cFileName), isTrueDirectory(found.dwFileAttributes)});
        }
    } while (FindNextFileW(search, &found) != 0);
    const int error = failureNumber();
    FindClose(search);
    return error == ERROR_NO_MORE_FILES ? 0 : error;
}

// 16 digits that nobody can guess.
bool randomName(std::wstring& outName) {
    std::uint64_t random = 0;
    if (RtlGenRandom(&random, sizeof(random)) == FALSE) {
        return false;
    }
    wchar_t digits[17];
    swprintf(digits, 17, L"%016llx", static_cast<unsigned long long>(random));
    outName = digits;
    return true;
}

class WindowsFileSystem : public FileSystem {
public:
    int open(std::string_view path, const OpenOptions& options, std::unique_ptr<File>& outFile) override {
        outFile.reset();
        const std::wstring wide = systemPath(path);
        if (namesDevice(wide)) {
            return kRefusedName;
        }
        SECURITY_ATTRIBUTES* security = nullptr;
        if (options.disposition == Disposition::kCreatePrivate) {
            static PrivateSecurity privateSecurity;
            security = privateSecurity.attributes();
            if (security == nullptr) {
                return ERROR_INVALID_SECURITY_DESCR;
            }
        }
        const DispositionFlags how = flagsOf(options.disposition);
        const DWORD flags = FILE_ATTRIBUTE_NORMAL | how.flags |
                            (options.sequential ? FILE_FLAG_SEQUENTIAL_SCAN : 0) |
                            (options.followLinks ? 0 : FILE_FLAG_OPEN_REPARSE_POINT);
        // A private file may be given the rights of another one.
        const DWORD access = accessOf(options.access) | (security != nullptr ? WRITE_DAC : 0);
        const HANDLE handle = CreateFileW(wide.c_str(), access, shareOf(options.share), security,
                                          how.disposition, flags, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            return failureNumber();
        }
        auto file = std::make_unique<WindowsFile>(handle);
        if (!options.followLinks && isLinkItself(handle)) {
            return ERROR_CANT_ACCESS_FILE;
        }
        outFile = std::move(file);
        return 0;
    }

    bool exists(std::string_view path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size);
    }

    PathKind kindOf(std::string_view path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        if (!entryOf(path, attributes, size)) {
            const bool isMissing = isMissingError(GetLastError());
            return isMissing && !namesDevice(systemPath(path)) ? PathKind::kNothing : PathKind::kOther;
        }
        if (isLink(attributes, tagOf(systemPath(path)))) {
            return PathKind::kLink;
        }
        return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::kDirectory : PathKind::kFile;
    }

    bool isDirectory(std::string_view path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    }

    bool isOrdinaryDirectory(std::string_view path) override {
        constexpr DWORD kMarks = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && isTrueDirectory(attributes) && (attributes & kMarks) == 0;
    }

    std::int64_t fileSize(std::string_view path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ? size : -1;
    }

    int resolveFile(std::string_view path, std::string& outPath) override {
        outPath.clear();
        DWORD attributes = 0;
        std::int64_t size = 0;
        if (!entryOf(path, attributes, size)) {
            return ERROR_FILE_NOT_FOUND;
        }
        if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            return ERROR_DIRECTORY;
        }
        if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
            outPath = path;
            return 0;
        }
        std::wstring final;
        const int status = finalPathOf(systemPath(path), final);
        outPath = utf8Of(final);
        return status;
    }

    int linkTarget(std::string_view /*path*/, std::string& outTarget) override {
        outTarget.clear();
        return ERROR_NOT_SUPPORTED;
    }

    int takeDirectoryRights(std::string_view path) override {
        const std::wstring wide = systemPath(path);
        return namesDevice(wide) ? kRefusedName : inheritAccessList(wide);
    }

    std::string rightsOf(std::string_view path) override {
        return namesDevice(systemPath(path)) ? "" : rightsOfFile(path);
    }

    int removeFile(std::string_view path) override { return onPath(path, DeleteFileW); }

    int moveFile(std::string_view from, std::string_view to) override {
        return onTwoPaths(from, to, [](const wchar_t* a, const wchar_t* b) { return MoveFileExW(a, b, 0); });
    }

    int replaceFile(std::string_view from, std::string_view to) override {
        return onTwoPaths(from, to, [](const wchar_t* a, const wchar_t* b) {
            return MoveFileExW(a, b, MOVEFILE_REPLACE_EXISTING);
        });
    }

    int takeFileAway(std::string_view path, std::string_view to) override {
        return onEntry(path, to, kTakeAccess, [](HANDLE entry, const std::wstring& wide) {
            return takeOpenFileAway(entry, wide, false);
        });
    }

    int takeDirectoryAway(std::string_view path, std::string_view to) override {
        return onEntry(path, to, kTakeDirectoryAccess, takeOpenDirectoryAway);
    }

    int createDirectory(std::string_view path) override {
        return onPath(path, [](const wchar_t* wide) { return CreateDirectoryW(wide, nullptr); });
    }

    int removeDirectory(std::string_view path) override { return onPath(path, RemoveDirectoryW); }

    int list(std::string_view path, std::vector<DirectoryEntry>& outEntries) override {
        outEntries.clear();
        std::wstring pattern = systemPath(path);
        if (namesDevice(pattern)) {
            return kRefusedName;
        }
        if (!isDirectory(path)) {
            return exists(path) ? ERROR_DIRECTORY : ERROR_PATH_NOT_FOUND;
        }
        pattern += pattern.ends_with(L'\\') ? L"*" : L"\\*";
        return listInto(pattern, outEntries);
    }

    int openDirectory(std::string_view path, std::unique_ptr<Directory>& outDirectory) override {
        outDirectory.reset();
        std::wstring wide = systemPath(path);
        // A separator at the end would have the system follow a link. A drive's root needs its own.
        while (wide.size() > 1 && wide.back() == L'\\' && wide[wide.size() - 2] != L':') {
            wide.pop_back();
        }
        return namesDevice(wide) ? kRefusedName : WindowsDirectory::open(wide, outDirectory);
    }

    int makeExecutable(std::string_view path) override {
        return kindOf(path) == PathKind::kFile ? 0 : static_cast<int>(ERROR_FILE_NOT_FOUND);
    }

    bool temporaryDirectory(std::string& outPath) override {
        std::wstring path(MAX_PATH + 1, L'\0');
        DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
        while (length >= path.size()) {
            path.resize(length + 1);
            length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
        }
        path.resize(length);
        while (!path.empty() && (path.back() == L'\\' || path.back() == L'/')) {
            path.pop_back();
        }
        outPath = utf8Of(path);
        return !path.empty();
    }

    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override {
        std::string directory;
        if (number == 0 || !temporaryDirectory(directory)) {
            return false;
        }
        // The system uses the low half, and creates a file of its own choice when that is zero.
        const UINT unique = (number & 0xFFFF) != 0 ? number : number >> 16;
        wchar_t path[MAX_PATH];
        if (GetTempFileNameW(wideOf(directory).c_str(), wideOf(prefix).c_str(), unique, path) == 0) {
            return false;
        }
        outPath = utf8Of(path);
        return true;
    }

    int realPath(std::string_view path, std::string& outPath) override {
        outPath.clear();
        const std::wstring wide = systemPath(path);
        if (namesDevice(wide)) {
            return kRefusedName;
        }
        std::wstring final;
        const int status = finalPathOf(wide, final);
        outPath = utf8Of(final);
        return status;
    }

    bool isProtected(std::string_view path, Protection protection) override {
        const std::wstring wide = systemPath(path);
        std::wstring final;
        return !namesDevice(wide) && finalPathOf(wide, final) == 0 && isProtectedPath(final, protection);
    }

    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override {
        outPath.clear();
        static PrivateSecurity security;
        std::wstring tail;
        if (security.attributes() == nullptr || !randomName(tail)) {
            return ERROR_INVALID_SECURITY_DESCR;
        }
        const std::string path = std::string(parent) + "\\" + std::string(prefix) + utf8Of(tail);
        const int status =
            onPath(path, [](const wchar_t* wide) { return CreateDirectoryW(wide, security.attributes()); });
        if (status == 0) {
            outPath = path;
        }
        return status;
    }

    std::vector<std::string> otherPrivatePlaces() override {
        std::vector<std::string> places;
        std::wstring directory(MAX_PATH, L'\0');
        const UINT length = GetSystemWindowsDirectoryW(directory.data(), MAX_PATH);
        if (length > 0 && length < MAX_PATH) {
            directory.resize(length);
            places.push_back(utf8Of(directory) + "\\Temp");
        }
        if (const wchar_t* programs = _wgetenv(L"ProgramFiles"); programs != nullptr && *programs != L'\0') {
            places.push_back(utf8Of(programs));
        }
        return places;
    }

    int findVolume(std::string_view path, Volume& outVolume) override {
        const std::wstring wide = systemPath(path);
        outVolume = {};
        return namesDevice(wide) ? kRefusedName : volumeOf(wide, outVolume);
    }

    int removeAtRestart(std::string_view path) override {
        return onPath(path, [](const wchar_t* wide) {
            return MoveFileExW(wide, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
        });
    }
};

}  // namespace

FileSystem& systemFileSystem() {
    static WindowsFileSystem fileSystem;
    return fileSystem;
}

}  // namespace platform
