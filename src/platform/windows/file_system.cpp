#include "platform/file_system.h"

#include "platform/windows/file.h"
#include "platform/windows/private_security.h"
#include "platform/windows/system_error.h"

namespace platform {

namespace {

constexpr int kRefusedName = ERROR_INVALID_NAME;

struct DispositionFlags {
    DWORD disposition;
    DWORD flags;
};

// Without the flag, creating a file where a link to nothing lies would create the link's target.
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
int onPath(const char* path, Operation operation) {
    const std::wstring wide = systemPath(path);
    return namesDevice(wide) ? kRefusedName : statusOf(operation(wide.c_str()));
}

template <typename Operation>
int onTwoPaths(const char* from, const char* to, Operation operation) {
    const std::wstring wideFrom = systemPath(from);
    const std::wstring wideTo = systemPath(to);
    return namesDevice(wideFrom) || namesDevice(wideTo)
               ? kRefusedName
               : statusOf(operation(wideFrom.c_str(), wideTo.c_str()));
}

// What the directory tells of an entry. A file that is locked or protected against its own reader answers
// only to a search, which in turn must not see a wildcard.
bool entryOf(const char* path, DWORD& outAttributes, std::int64_t& outSize) {
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

bool isDotEntry(const wchar_t* name) {
    return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

// A junction or another link would lead a walk out of its tree.
bool isTrueDirectory(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
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
        if (!isDotEntry(found.cFileName)) {
            outEntries.push_back({utf8Of(found.cFileName), isTrueDirectory(found.dwFileAttributes)});
        }
    } while (FindNextFileW(search, &found) != 0);
    const int error = failureNumber();
    FindClose(search);
    return error == ERROR_NO_MORE_FILES ? 0 : error;
}

class WindowsFileSystem : public FileSystem {
public:
    int open(const char* path, const OpenOptions& options, std::unique_ptr<File>& outFile) override {
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
        const DWORD hint = options.sequential ? FILE_FLAG_SEQUENTIAL_SCAN : 0;
        const HANDLE handle =
            CreateFileW(wide.c_str(), accessOf(options.access), shareOf(options.share), security,
                        how.disposition, FILE_ATTRIBUTE_NORMAL | how.flags | hint, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            return failureNumber();
        }
        outFile = std::make_unique<WindowsFile>(handle);
        return 0;
    }

    bool exists(const char* path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size);
    }

    bool isDirectory(const char* path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    }

    bool isOrdinaryDirectory(const char* path) override {
        constexpr DWORD kMarks = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && isTrueDirectory(attributes) && (attributes & kMarks) == 0;
    }

    std::int64_t fileSize(const char* path) override {
        DWORD attributes = 0;
        std::int64_t size = 0;
        return entryOf(path, attributes, size) && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ? size : -1;
    }

    int removeFile(const char* path) override { return onPath(path, DeleteFileW); }

    int moveFile(const char* from, const char* to) override {
        return onTwoPaths(from, to, [](const wchar_t* a, const wchar_t* b) { return MoveFileExW(a, b, 0); });
    }

    int replaceFile(const char* from, const char* to) override {
        return onTwoPaths(from, to, [](const wchar_t* a, const wchar_t* b) {
            return MoveFileExW(a, b, MOVEFILE_REPLACE_EXISTING);
        });
    }

    int createDirectory(const char* path) override {
        return onPath(path, [](const wchar_t* wide) { return CreateDirectoryW(wide, nullptr); });
    }

    int removeDirectory(const char* path) override { return onPath(path, RemoveDirectoryW); }

    int list(const char* path, std::vector<DirectoryEntry>& outEntries) override {
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

    int makeExecutable(const char* path) override { return exists(path) ? 0 : ERROR_FILE_NOT_FOUND; }

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

    bool temporaryName(const char* prefix, std::uint32_t number, std::string& outPath) override {
        std::string directory;
        if (number == 0 || !temporaryDirectory(directory)) {
            return false;
        }
        // The system uses the low half, and creates a file of its own choice when that is zero.
        const UINT unique = (number & 0xFFFF) != 0 ? number : number >> 16;
        wchar_t path[MAX_PATH];
        if (GetTempFileNameW(wideOf(directory.c_str()).c_str(), wideOf(prefix).c_str(), unique, path) == 0) {
            return false;
        }
        outPath = utf8Of(path);
        return true;
    }
};

}  // namespace

FileSystem& systemFileSystem() {
    static WindowsFileSystem fileSystem;
    return fileSystem;
}

}  // namespace platform
