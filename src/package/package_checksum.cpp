#include "package/package_checksum.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "package/package_layout.h"

namespace {

// Nothing reads it. A packaging tool that finds this text in the built image knows that the image understands
// version 2, so the compiler must not drop it.
const char* volatile signingMark;

void storeSigningMark() {
    signingMark = "SupportsSignedInstallers";
}

// Small enough to stay in the processor's cache while it is hashed.
constexpr std::uint32_t kBlockSize = 65536;

struct Trailer {
    std::string_view tag;
    std::int64_t position = 0;  // of the tag in the file
    std::int64_t start = 0;     // of the bytes that the digest covers
};

int openForHashing(PFileStream& stream, std::string_view path) {
    return stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                           PFileStream::kOpenExisting | PFileStream::kSequential);
}

// False also when fewer bytes are left.
bool readExactly(PFileStream& stream, void* buffer, std::uint32_t size) {
    std::uint32_t done = 0;
    return stream.read(buffer, size, done) == 0 && done == size;
}

// Searches backwards, so that the last tag wins.
std::optional<Trailer> findTrailer(std::string_view tail, std::int64_t fileSize) {
    const std::string_view tags[] = {PackageLayout::kTagVersion1, PackageLayout::kTagVersion2};
    const auto tailStart = fileSize - static_cast<std::int64_t>(tail.size());
    for (std::size_t i = tail.size(); i-- > 0;) {
        for (const std::string_view tag : tags) {
            if (tail.substr(i).starts_with(tag)) {
                const bool isVersion1 = tag == PackageLayout::kTagVersion1;
                return Trailer{tag, tailStart + static_cast<std::int64_t>(i),
                               isVersion1 ? 0 : static_cast<std::int64_t>(PackageLayout::kVersion2Start)};
            }
        }
    }
    return std::nullopt;
}

std::optional<Trailer> readTrailer(PFileStream& stream) {
    const std::int64_t fileSize = stream.getSize();
    if (fileSize < static_cast<std::int64_t>(PackageLayout::kMinCheckedSize)) {
        return std::nullopt;
    }
    const auto tailSize = std::min<std::int64_t>(fileSize, PackageLayout::kSearchedTail);
    std::string tail(static_cast<std::size_t>(tailSize), '\0');
    if (stream.seek(fileSize - tailSize) != 0 ||
        !readExactly(stream, tail.data(), static_cast<std::uint32_t>(tailSize))) {
        return std::nullopt;
    }
    return findTrailer(tail, fileSize);
}

bool hashBytes(PFileStream& stream, std::int64_t length, Md5Digest& outDigest, const ByteProgress& progress) {
    const auto block = std::make_unique<unsigned char[]>(kBlockSize);
    Md5 md5;
    for (std::int64_t done = 0; done < length;) {
        const auto size = static_cast<std::uint32_t>(std::min<std::int64_t>(length - done, kBlockSize));
        if (!readExactly(stream, block.get(), size)) {
            return false;
        }
        md5.update(block.get(), size);
        done += size;
        if (progress) {
            progress(done, length);
        }
    }
    outDigest = md5.finish();
    return true;
}

int hashToEnd(PFileStream& stream, Md5Digest& outDigest) {
    const auto block = std::make_unique<unsigned char[]>(kBlockSize);
    Md5 md5;
    for (;;) {
        std::uint32_t done = 0;
        const int status = stream.read(block.get(), kBlockSize, done);
        if (status != 0) {
            return status;
        }
        if (done == 0) {
            break;
        }
        md5.update(block.get(), done);
    }
    outDigest = md5.finish();
    return 0;
}

int hashFile(std::string_view path, std::int64_t start, platform::FileSystem& files, Md5Digest& outDigest) {
    PFileStream stream(files);
    int status = openForHashing(stream, path);
    if (status == 0) {
        status = stream.seek(start);
    }
    return status == 0 ? hashToEnd(stream, outDigest) : status;
}

int appendBytes(std::string_view path, std::string_view bytes, platform::FileSystem& files) {
    PFileStream stream(files);
    int status =
        stream.openFile(path, PFileStream::kReadWrite, PFileStream::kShareRead, PFileStream::kOpenExisting);
    if (status != 0) {
        return status;
    }
    std::uint32_t written = 0;
    status = stream.seekFromEnd(0);
    if (status == 0) {
        status = stream.write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), written);
    }
    const int closed = stream.close();
    return status != 0 ? status : closed;
}

}  // namespace

bool verifyInstallerChecksum(std::string_view path, platform::FileSystem& files,
                             const ByteProgress& progress) {
    storeSigningMark();
    PFileStream stream(files);
    if (openForHashing(stream, path) != 0) {
        return false;
    }
    const std::optional<Trailer> trailer = readTrailer(stream);
    if (!trailer.has_value()) {
        return false;
    }
    const std::int64_t length = trailer->position - trailer->start;
    Md5Digest computed;
    if (length < 1 || stream.seek(trailer->start) != 0 || !hashBytes(stream, length, computed, progress)) {
        return false;
    }
    // The stream is at the tag now, which is compared once more in case the file has changed.
    char tag[PackageLayout::kTagVersion1Size];
    Md5Digest stored;
    return readExactly(stream, tag, static_cast<std::uint32_t>(trailer->tag.size())) &&
           std::string_view(tag, trailer->tag.size()) == trailer->tag &&
           readExactly(stream, stored.data(), static_cast<std::uint32_t>(stored.size())) &&
           stored == computed;
}

int appendInstallerChecksum(std::string_view path, ChecksumVersion version, platform::FileSystem& files) {
    storeSigningMark();
    const bool isVersion1 = version == ChecksumVersion::kVersion1;
    Md5Digest digest;
    const int status = hashFile(path, isVersion1 ? 0 : PackageLayout::kVersion2Start, files, digest);
    if (status != 0) {
        return status;
    }
    std::string trailer = isVersion1 ? PackageLayout::kTagVersion1 : PackageLayout::kTagVersion2;
    trailer.append(reinterpret_cast<const char*>(digest.data()), digest.size());
    return appendBytes(path, trailer, files);
}

ChecksumVersion checksumVersionFor(std::string_view oldChecksumming) {
    return oldChecksumming.starts_with('1') ? ChecksumVersion::kVersion1 : ChecksumVersion::kVersion2;
}
