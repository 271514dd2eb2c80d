#include "engine/disk_files.h"

#include <algorithm>
#include <string>
#include <vector>

#include "support/p_file_stream.h"

namespace {

constexpr std::int32_t kFileDebugLevel = 3;
constexpr std::uint32_t kBlockSize = 256 * 1024;

// False when the file can't be read whole.
bool digestOf(PFileStream& file, std::int64_t size, Md5Digest& out) {
    std::vector<unsigned char> block(static_cast<std::size_t>(std::min<std::int64_t>(size + 1, kBlockSize)));
    Md5 md5;
    std::int64_t total = 0;
    for (std::uint32_t done = 1; done > 0;) {
        if (file.read(block.data(), static_cast<std::uint32_t>(block.size()), done) != 0) {
            return false;
        }
        md5.update(block.data(), done);
        total += done;
    }
    out = md5.finish();
    return total == size;
}

int openForWriting(PFileStream& file, std::string_view path) {
    return file.openFile(path, PFileStream::kGenericWrite, PFileStream::kShareRead,
                         PFileStream::kCreateAlways | PFileStream::kSequential);
}

}  // namespace

FileOnDisk DiskFiles::compare(std::string_view path, std::int64_t contentSize, const Md5Digest& digest) {
    FileOnDisk found;
    PFileStream file(files_);
    const std::uint32_t mode = PFileStream::kOpenExisting | PFileStream::kSequential;
    if (file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead, mode) != 0) {
        return found;
    }
    found.exists = true;
    const std::int64_t size = file.getSize();
    // Content of another size has another digest; reading it would add nothing.
    if (size < 0 || size >= kSizeLimit || size != contentSize) {
        return found;
    }
    Md5Digest digestOnDisk{};
    found.differs = !digestOf(file, size, digestOnDisk) || digestOnDisk != digest;
    return found;
}

int DiskFiles::open(PFileStream& file, std::string_view path, bool exists) {
    const int status = openForWriting(file, path);
    if (status != 0 && exists && inUse_.deleteFileInUse(path)) {
        return openForWriting(file, path);
    }
    return status;
}

bool DiskFiles::write(std::string_view path, bool exists, std::string_view content) {
    PFileStream file(files_);
    const auto size = static_cast<std::uint32_t>(content.size());
    int status = open(file, path, exists);
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.print("+ Creating file \"%s\" (size = %d, iores = %d)", std::string(path).c_str(),
                        static_cast<int>(size), status);
    }
    if (status != 0) {
        return false;
    }
    std::uint32_t written = 0;
    status = size == 0 ? 0 : file.write(content.data(), size, written);
    const int closed = file.close();  // a full disk may only be noticed here
    status = status != 0 ? status : closed;
    if (status == 0 && written == size) {
        return true;
    }
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.print("- ERROR: Writing file failed (iores = %d, written = %d)", status,
                        static_cast<int>(written));
    }
    return false;
}
