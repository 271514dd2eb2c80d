#include "engine/file_comparer.h"

#include <algorithm>
#include <vector>

#include "support/p_file_stream.h"

namespace {

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

}  // namespace

FileOnDisk FileComparer::compare(const char* path, std::int64_t contentSize, const Md5Digest& digest) {
    FileOnDisk found;
    PFileStream file(files_);
    const std::uint32_t mode = PFileStream::kOpenExisting | PFileStream::kSequential;
    if (file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead, mode) != 0) {
        return found;
    }
    found.exists = true;
    const std::int64_t size = file.getSize();
    // Content of another size has another digest; reading it would tell nothing new.
    if (size < 0 || size >= kSizeLimit || size != contentSize) {
        return found;
    }
    Md5Digest digestOnDisk{};
    found.differs = !digestOf(file, size, digestOnDisk) || digestOnDisk != digest;
    return found;
}
