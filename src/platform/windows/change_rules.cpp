#include "platform/change_rules.h"

#include <windows.h>

#include "platform/path_identity.h"
#include "platform/windows/directory.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

int numberOf(Refusal refusal) {
    switch (refusal) {
        case Refusal::kMissing:
        case Refusal::kNoProgram:
            return ERROR_FILE_NOT_FOUND;
        case Refusal::kMissingDirectory:
        case Refusal::kNoDirectory:
            return ERROR_PATH_NOT_FOUND;
        case Refusal::kExists:
            return ERROR_FILE_EXISTS;
        case Refusal::kTaken:
            return ERROR_ALREADY_EXISTS;
        case Refusal::kNotADirectory:
        case Refusal::kResolvesDirectory:
        case Refusal::kOpensNoDirectory:
            return ERROR_DIRECTORY;
        case Refusal::kNotEmpty:
            return ERROR_DIR_NOT_EMPTY;
        case Refusal::kOtherVolume:
            return ERROR_NOT_SAME_DEVICE;
        case Refusal::kOpensLink:
            return ERROR_CANT_ACCESS_FILE;
        case Refusal::kTooManyLinks:
            return ERROR_CANT_RESOLVE_FILENAME;
        case Refusal::kClosed:
            return ERROR_INVALID_HANDLE;
        case Refusal::kBeforeStart:
            return ERROR_NEGATIVE_SEEK;
        case Refusal::kDevice:
        case Refusal::kBadName:
            return ERROR_INVALID_NAME;
        case Refusal::kDiskFull:
            return ERROR_DISK_FULL;
        case Refusal::kNotKept:
            return ERROR_FILE_TOO_LARGE;
        case Refusal::kNoLink:
        case Refusal::kLinking:
            return ERROR_NOT_SUPPORTED;
        case Refusal::kAtRestart:
            return 0;
        case Refusal::kOpensDirectory:
        case Refusal::kIsDirectory:
        case Refusal::kReplacesDirectory:
        case Refusal::kRoot:
        case Refusal::kDenied:
        case Refusal::kNotOpenFor:
        case Refusal::kBadAccess:
            return ERROR_ACCESS_DENIED;
    }
    return ERROR_INVALID_PARAMETER;
}

// Opening with a right asks for it and changes nothing. 0 or the status.
int statusOfOpening(const std::wstring& path, DWORD access) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle opened(CreateFileW(path.data(), access, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return opened ? 0 : failureNumber();
}

std::wstring directoryOf(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L'\\');
    return separator == std::wstring::npos ? L"." : path.substr(0, separator + 1);
}

// A program that runs can't be opened for writing, which shows it.
int removalRefusal(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.data());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return failureNumber();
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    const bool isDirectory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const int status = isDirectory ? 0 : statusOfOpening(path, FILE_WRITE_DATA);
    return status == ERROR_SHARING_VIOLATION ? static_cast<int>(ERROR_ACCESS_DENIED) : 0;
}

// The path without the prefix that lifts the limit of its length.
std::wstring plainPath(const std::wstring& path) {
    constexpr std::wstring_view kNetwork = L"\\\\?\\UNC\\";
    constexpr std::wstring_view kLocal = L"\\\\?\\";
    if (path.starts_with(kNetwork)) {
        return L"\\\\" + path.substr(kNetwork.size());
    }
    return path.starts_with(kLocal) ? path.substr(kLocal.size()) : path;
}

// Up to the separator behind the drive, or behind the share of another machine.
std::size_t rootLength(const std::wstring& path) {
    std::size_t at = path.find(L'\\');
    if (path.starts_with(L"\\\\")) {
        at = path.find(L'\\', 2);
        at = at == std::wstring::npos ? at : path.find(L'\\', at + 1);
    }
    return at == std::wstring::npos ? path.size() : at + 1;
}

class WindowsChangeRules : public ChangeRules {
public:
    int statusOf(Refusal refusal) const override { return numberOf(refusal); }

    int wouldRefuse(Intent intent, std::string_view path) override {
        const std::wstring wide = systemPath(path);
        if (namesDevice(wide)) {
            return ERROR_INVALID_NAME;
        }
        switch (intent) {
            case Intent::kWriteFile:
                return statusOfOpening(wide, FILE_WRITE_DATA);
            case Intent::kMakeEntry:
                return statusOfOpening(directoryOf(wide), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY);
            case Intent::kMoveEntry:
                return statusOfOpening(wide, DELETE);
            case Intent::kRemoveEntry: {
                const int status = statusOfOpening(wide, DELETE);
                return status != 0 ? status : removalRefusal(wide);
            }
        }
        return 0;
    }

    int partsOf(std::string_view path, PathParts& outParts) override {
        outParts = {};
        const std::wstring wide = systemPath(path);
        if (wide.empty()) {
            return ERROR_PATH_NOT_FOUND;
        }
        if (namesDevice(wide)) {
            return ERROR_INVALID_NAME;
        }
        const std::wstring full = plainPath(fullPath(wide));
        const std::size_t length = rootLength(full);
        outParts.root = utf8Of(full.substr(0, length));
        for (std::size_t at = length; at < full.size();) {
            const std::size_t end = std::min(full.find(L'\\', at), full.size());
            if (end > at) {
                outParts.parts.push_back(utf8Of(full.substr(at, end - at)));
            }
            at = end + 1;
        }
        return 0;
    }

    char separator() const override { return '\\'; }
    std::string nameKey(std::string_view name) const override { return pathIdentity(name); }
    bool distinguishesCase() const override { return false; }
    bool isPlainName(std::string_view name) const override { return isListableName(wideOf(name)); }
    bool movesDirectories() const override { return true; }

    // The directory's rights aren't known here; only that they are the same for two new files.
    std::string rightsOfNew(FileRights rights) const override {
        return rights == FileRights::kPrivate ? "new and private" : "new";
    }
    std::string rightsOfUnset() const override { return "new"; }
    std::string asProgram(const std::string& rights) const override { return rights; }
    bool isProgram(const std::string& /*rights*/) const override { return false; }
    std::string withDirectoryRights(const std::string& /*rights*/) const override { return "new"; }
};

}  // namespace

ChangeRules& systemChangeRules() {
    static WindowsChangeRules rules;
    return rules;
}

}  // namespace platform
