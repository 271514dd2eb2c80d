#include "packager/equal_contents.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/p_file_stream.h"

namespace {

constexpr std::uint32_t kBlockSize = 64 * 1024;

class ReadFile {
public:
    ReadFile(platform::FileSystem& files, const std::string& path) : stream_(files), block_(kBlockSize) {
        status_ = stream_.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                                   PFileStream::kOpenExisting | PFileStream::kSequential);
    }

    // Fills the block as far as the file goes. False after a failure.
    bool readBlock() {
        size_ = 0;
        std::uint32_t done = 1;
        while (status_ == 0 && done > 0 && size_ < kBlockSize) {
            status_ = stream_.read(block_.data() + size_, kBlockSize - size_, done);
            size_ += done;
        }
        return status_ == 0;
    }
    bool hasSameBlock(const ReadFile& other) const {
        return size_ == other.size_ && std::memcmp(block_.data(), other.block_.data(), size_) == 0;
    }
    void addTo(Md5& digest) const { digest.update(block_.data(), size_); }
    bool isOver() const { return size_ < kBlockSize; }

private:
    PFileStream stream_;
    std::vector<unsigned char> block_;
    std::uint32_t size_ = 0;
    int status_ = 0;
};

}  // namespace

bool haveEqualContents(platform::FileSystem& files, const std::string& first, const std::string& second) {
    ReadFile a(files, first);
    ReadFile b(files, second);
    while (a.readBlock() && b.readBlock() && a.hasSameBlock(b)) {
        if (a.isOver()) {
            return true;
        }
    }
    return false;
}

std::optional<Md5Digest> contentDigest(platform::FileSystem& files, const std::string& path) {
    ReadFile file(files, path);
    Md5 digest;
    while (file.readBlock()) {
        file.addTo(digest);
        if (file.isOver()) {
            return digest.finish();
        }
    }
    return std::nullopt;
}
