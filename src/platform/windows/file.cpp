#include "platform/windows/file.h"

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

int WindowsFile::close() {
    if (!handle_) {
        return ERROR_INVALID_HANDLE;
    }
    return statusOf(handle_.close());
}

}  // namespace platform
