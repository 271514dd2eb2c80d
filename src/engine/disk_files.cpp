#include "engine/disk_files.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engine/report.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"

namespace {

constexpr std::int32_t kFileDebugLevel = 3;
constexpr std::uint32_t kBlockSize = 256 * 1024;

// Of a file's content, between two looks at the front end's events. A few milliseconds of work.
constexpr std::size_t kBytesPerLook = 4 * 1024 * 1024;

}  // namespace

// False when the file can't be read whole.
bool DiskFiles::digestOf(PFileStream& file, std::int64_t size, Md5Digest& out) {
    std::vector<unsigned char> block(static_cast<std::size_t>(std::min<std::int64_t>(size + 1, kBlockSize)));
    Md5 md5;
    std::int64_t total = 0;
    std::size_t sinceLook = 0;
    for (std::uint32_t done = 1; done > 0;) {
        if (file.read(block.data(), static_cast<std::uint32_t>(block.size()), done) != 0) {
            return false;
        }
        md5.update(block.data(), done);
        total += done;
        sinceLook += done;
        if (sinceLook >= kBytesPerLook) {
            report_.pumpEventsWhileCopying();
            sinceLook = 0;
        }
    }
    out = md5.finish();
    return total == size;
}

FileOnDisk DiskFiles::compare(std::string_view path, std::int64_t contentSize, const Md5Digest& digest) {
    FileOnDisk found;
    PFileStream file(files_);
    const std::uint32_t mode =
        PFileStream::kOpenExisting | PFileStream::kSequential | PFileStream::kRefuseLinks;
    found.status = file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead, mode);
    if (found.status != 0) {
        found.exists = files_.kindOf(path) == platform::PathKind::kLink;
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

int DiskFiles::putInPlace(ReplacingFile& file, std::string_view path, bool exists) {
    const int status = file.putInPlace();
    if (status != 0 && file.isComplete() && exists && inUse_.deleteFileInUse(path)) {
        return file.putInPlace();
    }
    return status;
}

int DiskFiles::writeContent(PFileStream& stream, std::string_view content, std::uint32_t& outWritten) {
    while (outWritten < content.size()) {
        const std::string_view part = content.substr(outWritten, kBytesPerLook);
        if (outWritten > 0) {
            report_.setFileProgress(outWritten, static_cast<std::int64_t>(content.size()));
        }
        std::uint32_t done = 0;
        const int status = stream.write(part.data(), static_cast<std::uint32_t>(part.size()), done);
        outWritten += done;
        if (status != 0 || done < part.size()) {
            return status;
        }
    }
    return 0;
}

bool DiskFiles::write(std::string_view path, bool exists, std::string_view content,
                      platform::FileRights rights) {
    ReplacingFile file(files_);
    const auto size = static_cast<std::uint32_t>(content.size());
    int status = file.open(path, rights);
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.line("+ Creating file \"" + std::string(path) + "\" (size = " +
                       std::to_string(static_cast<int>(size)) + ", iores = " + std::to_string(status) + ")");
    }
    failure_ = status;
    if (status != 0) {
        return false;
    }
    std::uint32_t written = 0;
    status = writeContent(file.stream(), content, written);
    if (status == 0 && written == size) {
        status = putInPlace(file, path, exists);  // a full disk may only be noticed here
    }
    failure_ = status;
    if (status == 0 && written == size) {
        return true;
    }
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.print("- ERROR: Writing file failed (iores = %d, written = %d)", status,
                        static_cast<int>(written));
    }
    return false;
}
