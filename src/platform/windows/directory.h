#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/windows/wide_text.h"

namespace platform {

// Whether a path can mean the entry with this name: it neither leads elsewhere nor comes back from UTF-8 as
// another name.
bool isListableName(std::wstring_view name);

// Give an entry that was opened with kTakeAccess the free path `to`, which is in the system's form, if it
// could be removed: a file or a link, or an empty directory. A link to a directory counts as a file if
// `takesDirectoryLinks`. 0 or the error number.
inline constexpr DWORD kTakeAccess = DELETE | FILE_READ_ATTRIBUTES;
inline constexpr DWORD kTakeDirectoryAccess = kTakeAccess | FILE_LIST_DIRECTORY;
int takeOpenFileAway(HANDLE entry, const std::wstring& to, bool takesDirectoryLinks);
int takeOpenDirectoryAway(HANDLE entry, const std::wstring& to);

// An open directory's handle as a Directory. Entries are opened relative to it, never by a path.
class WindowsDirectory : public Directory {
public:
    // Opens the directory at `path`, which is in the system's form. A link is refused. 0 or the error number.
    static int open(const std::wstring& path, std::unique_ptr<Directory>& outDirectory);

    explicit WindowsDirectory(HANDLE handle) : handle_(handle) {}

    int list(std::vector<DirectoryEntry>& outEntries) override;
    int listDisk(std::vector<DiskEntry>& outEntries) override;
    int openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) override;
    int removeFile(std::string_view name) override;
    int removeDirectory(std::string_view name) override;
    int openFile(std::string_view name, std::unique_ptr<File>& outFile) override;
    int takeFileAway(std::string_view name, std::string_view to) override;
    int takeDirectoryAway(std::string_view name, std::string_view to) override;

private:
    // Calls `visit` with each entry, those that every directory has included.
    template <typename Visit>
    int forEachEntry(Visit visit);
    int openEntry(std::string_view name, DWORD access, HANDLE& outHandle);
    // Removes the entry if `refusal`, which is given what it is, has no error number against that.
    template <typename Refusal>
    int remove(std::string_view name, Refusal refusal);

    Handle handle_;
};

}  // namespace platform
