#include "platform/windows/directory.h"

#include <winternl.h>

#include <cstring>
#include <utility>

#include "platform/windows/file.h"
#include "platform/windows/link_test.h"
#include "platform/windows/system_error.h"

namespace platform {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kWalkAccess = FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES;

int tagOf(HANDLE handle, FILE_ATTRIBUTE_TAG_INFO& outInfo) {
    return statusOf(GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &outInfo, sizeof(outInfo)));
}

// Takes the handle over.
int asDirectory(HANDLE handle, std::unique_ptr<Directory>& outDirectory) {
    auto directory = std::make_unique<WindowsDirectory>(handle);
    FILE_ATTRIBUTE_TAG_INFO info;
    if (const int status = tagOf(handle, info); status != 0) {
        return status;
    }
    if (!isTrueDirectory(info.FileAttributes)) {
        return ERROR_DIRECTORY;
    }
    outDirectory = std::move(directory);
    return 0;
}

int deleteOpen(HANDLE handle) {
    FILE_DISPOSITION_INFO info{};
    info.DeleteFile = TRUE;
    return statusOf(SetFileInformationByHandle(handle, FileDispositionInfo, &info, sizeof(info)));
}

// The entries of one filled buffer.
template <typename Visit>
void visitEntries(const std::vector<unsigned char>& buffer, Visit visit) {
    for (std::size_t offset = 0;;) {
        const auto* entry = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(buffer.data() + offset);
        visit(*entry, std::wstring_view(entry->FileName, entry->FileNameLength / sizeof(wchar_t)));
        if (entry->NextEntryOffset == 0) {
            return;
        }
        offset += entry->NextEntryOffset;
    }
}

// Where an entry has a tag, the system gives it in place of a size that such entries don't have.
PathKind kindOfEntry(const FILE_ID_BOTH_DIR_INFO& entry) {
    const bool isDirectory = (entry.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool hasTag = (entry.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (isLink(entry.FileAttributes, entry.EaSize)) {
        return PathKind::kLink;
    }
    if (hasTag && (isDirectory || entry.EaSize == 0)) {
        return PathKind::kOther;
    }
    return isDirectory ? PathKind::kDirectory : PathKind::kFile;
}

DiskEntry diskEntryOf(const FILE_ID_BOTH_DIR_INFO& entry, std::wstring_view name) {
    DiskEntry found;
    found.name = utf8Of(name);
    found.kind = kindOfEntry(entry);
    found.size = found.kind == PathKind::kFile ? entry.EndOfFile.QuadPart : -1;
    found.isNameable = isListableName(name);
    return found;
}

int moveOpen(HANDLE entry, const std::wstring& to) {
    const std::size_t textSize = to.size() * sizeof(wchar_t);
    std::vector<unsigned char> buffer(sizeof(FILE_RENAME_INFO) + textSize);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    info->ReplaceIfExists = FALSE;
    info->FileNameLength = static_cast<DWORD>(textSize);
    std::memcpy(info->FileName, to.data(), textSize);  // the rest is zero, its end too
    return statusOf(
        SetFileInformationByHandle(entry, FileRenameInfo, info, static_cast<DWORD>(buffer.size())));
}

// Whether all entries of one filled buffer are those that every directory has.
bool hasNoEntry(const std::vector<unsigned char>& buffer) {
    for (std::size_t offset = 0;;) {
        const auto* entry = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(buffer.data() + offset);
        const std::wstring_view name(entry->FileName, entry->FileNameLength / sizeof(wchar_t));
        if (name != L"." && name != L"..") {
            return false;
        }
        if (entry->NextEntryOffset == 0) {
            return true;
        }
        offset += entry->NextEntryOffset;
    }
}

// Entries whose names no path can mean count as well.
int emptinessOf(HANDLE directory) {
    std::vector<unsigned char> buffer(64 * 1024);
    const auto size = static_cast<DWORD>(buffer.size());
    for (auto part = FileIdBothDirectoryRestartInfo;; part = FileIdBothDirectoryInfo) {
        if (GetFileInformationByHandleEx(directory, part, buffer.data(), size) == 0) {
            const int error = failureNumber();
            return error == ERROR_NO_MORE_FILES || error == ERROR_FILE_NOT_FOUND ? 0 : error;
        }
        if (!hasNoEntry(buffer)) {
            return ERROR_DIR_NOT_EMPTY;
        }
    }
}

// A program that runs can be renamed but not deleted. Nobody may open it for writing either, which shows it.
int runningStatusOf(HANDLE entry) {
    const Handle probe(ReOpenFile(entry, FILE_WRITE_DATA, kShareAll, FILE_FLAG_OPEN_REPARSE_POINT));
    const DWORD error = probe ? ERROR_SUCCESS : GetLastError();
    return error == ERROR_SHARING_VIOLATION ? static_cast<int>(error) : 0;
}

}  // namespace

int takeOpenFileAway(HANDLE entry, const std::wstring& to, bool takesDirectoryLinks) {
    FILE_ATTRIBUTE_TAG_INFO info;
    if (const int status = tagOf(entry, info); status != 0) {
        return status;
    }
    const bool isDirectory = (info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool canGo = !isDirectory || (takesDirectoryLinks && isLink(info.FileAttributes, info.ReparseTag));
    if (!canGo || (info.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    const int status = isDirectory ? 0 : runningStatusOf(entry);
    return status != 0 ? status : moveOpen(entry, to);
}

int takeOpenDirectoryAway(HANDLE entry, const std::wstring& to) {
    FILE_ATTRIBUTE_TAG_INFO info;
    int status = tagOf(entry, info);
    if (status == 0 && !isTrueDirectory(info.FileAttributes)) {
        status = ERROR_DIRECTORY;
    } else if (status == 0 && (info.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        status = ERROR_ACCESS_DENIED;
    }
    status = status != 0 ? status : emptinessOf(entry);
    return status != 0 ? status : moveOpen(entry, to);
}

bool isListableName(std::wstring_view name) {
    constexpr std::wstring_view kLeadingElsewhere(L"/\\:\0", 4);
    return !name.empty() && name != L"." && name != L".." &&
           name.find_first_of(kLeadingElsewhere) == std::wstring_view::npos && wideOf(utf8Of(name)) == name;
}

int WindowsDirectory::open(const std::wstring& path, std::unique_ptr<Directory>& outDirectory) {
    outDirectory.reset();
    const HANDLE handle = CreateFileW(path.c_str(), kWalkAccess, kShareAll, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    return handle == INVALID_HANDLE_VALUE ? failureNumber() : asDirectory(handle, outDirectory);
}

int WindowsDirectory::openEntry(std::string_view name, DWORD access, HANDLE& outHandle) {
    std::wstring wide = wideOf(name);
    if (!isListableName(wide) || wide.size() > MAXSHORT) {
        return ERROR_INVALID_NAME;
    }
    const auto size = static_cast<USHORT>(wide.size() * sizeof(wchar_t));
    UNICODE_STRING text{size, size, wide.data()};
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &text, OBJ_CASE_INSENSITIVE, handle_.get(), nullptr);
    IO_STATUS_BLOCK block{};
    const NTSTATUS status =
        NtOpenFile(&outHandle, access | SYNCHRONIZE, &attributes, &block, kShareAll,
                   FILE_OPEN_REPARSE_POINT | FILE_OPEN_FOR_BACKUP_INTENT | FILE_SYNCHRONOUS_IO_NONALERT);
    return status >= 0 ? 0 : static_cast<int>(RtlNtStatusToDosError(status));
}

template <typename Visit>
int WindowsDirectory::forEachEntry(Visit visit) {
    std::vector<unsigned char> buffer(64 * 1024);
    const auto size = static_cast<DWORD>(buffer.size());
    for (auto part = FileIdBothDirectoryRestartInfo;; part = FileIdBothDirectoryInfo) {
        if (GetFileInformationByHandleEx(handle_.get(), part, buffer.data(), size) == 0) {
            const int error = failureNumber();
            // An empty root directory has not even the entry "."; that isn't a failure.
            return error == ERROR_NO_MORE_FILES || error == ERROR_FILE_NOT_FOUND ? 0 : error;
        }
        visitEntries(buffer, visit);
    }
}

int WindowsDirectory::list(std::vector<DirectoryEntry>& outEntries) {
    outEntries.clear();
    return forEachEntry([&](const FILE_ID_BOTH_DIR_INFO& entry, std::wstring_view name) {
        if (isListableName(name)) {
            outEntries.push_back({utf8Of(name), isTrueDirectory(entry.FileAttributes)});
        }
    });
}

int WindowsDirectory::listDisk(std::vector<DiskEntry>& outEntries) {
    outEntries.clear();
    return forEachEntry([&](const FILE_ID_BOTH_DIR_INFO& entry, std::wstring_view name) {
        if (name != L"." && name != L"..") {
            outEntries.push_back(diskEntryOf(entry, name));
        }
    });
}

int WindowsDirectory::openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) {
    outDirectory.reset();
    HANDLE entry = nullptr;
    const int status = openEntry(name, kWalkAccess, entry);
    return status != 0 ? status : asDirectory(entry, outDirectory);
}

template <typename Refusal>
int WindowsDirectory::remove(std::string_view name, Refusal refusal) {
    HANDLE opened = nullptr;
    if (const int status = openEntry(name, DELETE | FILE_READ_ATTRIBUTES, opened); status != 0) {
        return status;
    }
    const Handle entry(opened);
    FILE_ATTRIBUTE_TAG_INFO info;
    if (const int status = tagOf(entry.get(), info); status != 0) {
        return status;
    }
    const int status = refusal(info);
    return status != 0 ? status : deleteOpen(entry.get());
}

// A link to a directory has the attribute of one; it is removed like a link to a file.
int WindowsDirectory::removeFile(std::string_view name) {
    return remove(name, [](const FILE_ATTRIBUTE_TAG_INFO& info) {
        const bool isDirectory = (info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isRefused = isDirectory && !isLink(info.FileAttributes, info.ReparseTag);
        return static_cast<int>(isRefused ? ERROR_ACCESS_DENIED : ERROR_SUCCESS);
    });
}

int WindowsDirectory::removeDirectory(std::string_view name) {
    return remove(name, [](const FILE_ATTRIBUTE_TAG_INFO& info) {
        return static_cast<int>(isTrueDirectory(info.FileAttributes) ? ERROR_SUCCESS : ERROR_DIRECTORY);
    });
}

int WindowsDirectory::openFile(std::string_view name, std::unique_ptr<File>& outFile) {
    outFile.reset();
    HANDLE entry = nullptr;
    if (const int status = openEntry(name, FILE_GENERIC_READ, entry); status != 0) {
        return status;
    }
    auto file = std::make_unique<WindowsFile>(entry);
    FILE_ATTRIBUTE_TAG_INFO info;
    if (const int status = tagOf(entry, info); status != 0) {
        return status;
    }
    if ((info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
        isLink(info.FileAttributes, info.ReparseTag)) {
        return ERROR_ACCESS_DENIED;
    }
    outFile = std::move(file);
    return 0;
}

int WindowsDirectory::takeFileAway(std::string_view name, std::string_view to) {
    HANDLE opened = nullptr;
    if (const int status = openEntry(name, kTakeAccess, opened); status != 0) {
        return status;
    }
    const Handle entry(opened);
    return takeOpenFileAway(entry.get(), systemPath(to), true);
}

int WindowsDirectory::takeDirectoryAway(std::string_view name, std::string_view to) {
    HANDLE opened = nullptr;
    if (const int status = openEntry(name, kTakeDirectoryAccess, opened); status != 0) {
        return status;
    }
    const Handle entry(opened);
    return takeOpenDirectoryAway(entry.get(), systemPath(to));
}

}  // namespace platform
