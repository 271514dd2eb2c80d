#include "platform/windows/file.h"

#include <vector>

#include "platform/windows/link_test.h"
#include "platform/windows/system_error.h"

namespace platform {

namespace {

DWORD moveMethodOf(Origin origin) {
    switch (origin) {
        case Origin::kStart:
            return FILE_BEGIN;
        case Origin::kCurrent:
            return FILE_CURRENT;
        case Origin::kEnd:
            return FILE_END;
    }
    return FILE_BEGIN;
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The attributes of a plain file that may be replaced.
int attributesOf(HANDLE source, DWORD& outAttributes) {
    FILE_ATTRIBUTE_TAG_INFO info;
    if (GetFileInformationByHandleEx(source, FileAttributeTagInfo, &info, sizeof(info)) == 0) {
        return failureNumber();
    }
    constexpr DWORD kRefused = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_READONLY;
    outAttributes = info.FileAttributes;
    return (outAttributes & kRefused) != 0 || isLink(outAttributes, info.ReparseTag)
               ? static_cast<int>(ERROR_ACCESS_DENIED)
               : 0;
}

// A descriptor with the access list alone.
int readAccessList(HANDLE from, std::vector<unsigned char>& outDescriptor) {
    DWORD size = 0;
    GetKernelObjectSecurity(from, DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    outDescriptor.resize(size);
    return statusOf(
        GetKernelObjectSecurity(from, DACL_SECURITY_INFORMATION, outDescriptor.data(), size, &size));
}

// The access list, unchanged.
int copyAccessList(HANDLE from, HANDLE to) {
    std::vector<unsigned char> descriptor;
    const int status = readAccessList(from, descriptor);
    return status != 0 ? status
                       : statusOf(SetKernelObjectSecurity(to, DACL_SECURITY_INFORMATION, descriptor.data()));
}

constexpr DWORD kSettable = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

int setAttributes(HANDLE file, DWORD attributes) {
    FILE_BASIC_INFO info{};  // times of 0 stay as they are
    info.FileAttributes = (attributes & kSettable) != 0 ? attributes & kSettable : FILE_ATTRIBUTE_NORMAL;
    return statusOf(SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof(info)));
}

HANDLE openRightsSource(std::string_view path) {
    return CreateFileW(systemPath(path).c_str(), READ_CONTROL | FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                       OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

}  // namespace

int WindowsFile::read(void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    DWORD done = 0;
    const int status = statusOf(ReadFile(handle_.get(), buffer, size, &done, nullptr));
    outDone = done;
    return status;
}

int WindowsFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    DWORD done = 0;
    const int status = statusOf(WriteFile(handle_.get(), buffer, size, &done, nullptr));
    outDone = done;
    return status == 0 && done < size ? static_cast<int>(ERROR_DISK_FULL) : status;
}

int WindowsFile::seek(std::int64_t distance, Origin origin, std::int64_t& outPosition) {
    LARGE_INTEGER wanted;
    LARGE_INTEGER reached;
    wanted.QuadPart = distance;
    if (SetFilePointerEx(handle_.get(), wanted, &reached, moveMethodOf(origin)) == 0) {
        return failureNumber();
    }
    outPosition = reached.QuadPart;
    return 0;
}

std::int64_t WindowsFile::size() {
    LARGE_INTEGER size;
    return GetFileSizeEx(handle_.get(), &size) != 0 ? size.QuadPart : -1;
}

int WindowsFile::truncateHere() {
    return statusOf(SetEndOfFile(handle_.get()));
}

int WindowsFile::flush() {
    return statusOf(FlushFileBuffers(handle_.get()));
}

// The disposition of the opening has decided: the list of the directory, or the private one.
int WindowsFile::setRights(FileRights) {
    return handle_ ? 0 : static_cast<int>(ERROR_INVALID_HANDLE);
}

int WindowsFile::takeRightsOf(std::string_view path) {
    const Handle source(openRightsSource(path));
    if (!source) {
        return failureNumber();
    }
    DWORD attributes = 0;
    int status = attributesOf(source.get(), attributes);
    if (status == 0) {
        status = copyAccessList(source.get(), handle_.get());
    }
    return status != 0 ? status : setAttributes(handle_.get(), attributes);
}

std::string rightsOfFile(std::string_view path) {
    const Handle source(openRightsSource(path));
    DWORD attributes = 0;
    std::vector<unsigned char> descriptor;
    if (!source || attributesOf(source.get(), attributes) != 0 ||
        readAccessList(source.get(), descriptor) != 0) {
        return "";
    }
    return std::to_string(attributes & kSettable).append(1, ' ').append(descriptor.begin(), descriptor.end());
}

// A name makes a program here.
int WindowsFile::makeExecutable() {
    return handle_ ? 0 : static_cast<int>(ERROR_INVALID_HANDLE);
}

int WindowsFile::close() {
    if (!handle_) {
        return ERROR_INVALID_HANDLE;
    }
    return statusOf(handle_.close());
}

}  // namespace platform
