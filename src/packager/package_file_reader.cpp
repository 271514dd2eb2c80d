#include "packager/package_file_reader.h"

#include <algorithm>

#include "base/errors.h"
#include "package/little_endian.h"
#include "package/package_layout.h"
#include "package/package_stamp.h"

namespace {

constexpr std::size_t kFirstHead = 65536;

const char* loadProblem(int code) {
    switch (code) {
        case Cabinet::kNotOpened:
        case Cabinet::kSeekFailed:
        case Cabinet::kReadFailed:
            return "it can't be read";
        case Cabinet::kBadMagic0:
        case Cabinet::kBadMagic1:
        case Cabinet::kBadMagic2:
            return "there is no payload";
        case Cabinet::kBadEntryMagic:
        case Cabinet::kNoEndRecord:
            return "its catalogue is damaged";
        case Cabinet::kOutOfMemory:
            return "there is not enough memory for it";
        default:
            return "its compressed stream is damaged";
    }
}

}  // namespace

void PackageFileReader::locate(const std::string& path) {
    path_ = path;
    PFileStream stream(files_);
    const int status = stream.openFile(path.c_str(), PFileStream::kGenericRead, PFileStream::kShareRead,
                                       PFileStream::kOpenExisting);
    if (status != 0) {
        throw InstallerError("%s: the package can't be read (error %d)", path.c_str(), status);
    }
    fileSize_ = stream.getSize();
    findImageEnd(stream);
    if (!readLeadBlock(stream)) {
        throw InstallerError(
            hasImage() ? "%s: there is no payload behind this program" : "%s: this is no package",
            path.c_str());
    }
}

// Reads more and more of the file until the image's headers are there: their tables may stand at the image's
// end.
void PackageFileReader::findImageEnd(PFileStream& stream) {
    for (std::size_t size = kFirstHead;; size *= 4) {
        readHead(stream, size);
        const ExecutableImage image = measureExecutableImage(head_, static_cast<std::uint64_t>(fileSize_));
        if (image.problem == ImageProblem::kCut && static_cast<std::int64_t>(head_.size()) < fileSize_) {
            continue;
        }
        if (image.problem == ImageProblem::kCut) {
            throw InstallerError("%s: this program is incomplete: copy it anew", path_.c_str());
        }
        imageKind_ = image.kind;
        offset_ = static_cast<std::int64_t>(image.end);
        break;
    }
    if (hasImage() && static_cast<std::int64_t>(head_.size()) < offset_) {
        readHead(stream, static_cast<std::size_t>(offset_));
    }
}

void PackageFileReader::readHead(PFileStream& stream, std::size_t size) {
    size = std::min(size, static_cast<std::size_t>(std::max<std::int64_t>(fileSize_, 0)));
    head_.resize(size);
    std::size_t filled = 0;
    std::uint32_t done = 1;
    int status = stream.seek(0);
    while (status == 0 && done > 0 && filled < size) {
        const auto piece = static_cast<std::uint32_t>(std::min<std::size_t>(size - filled, 0x10000000));
        status = stream.read(head_.data() + filled, piece, done);
        filled += done;
    }
    if (status != 0 || filled < size) {
        throw InstallerError("%s: the package can't be read (error %d)", path_.c_str(), status);
    }
}

bool PackageFileReader::readLeadBlock(PFileStream& stream) {
    unsigned char lead[PackageLayout::kLeadBlockSize];
    std::uint32_t done = 0;
    if (stream.seek(offset_) != 0 || stream.read(lead, sizeof(lead), done) != 0 || done != sizeof(lead)) {
        return false;
    }
    totals_ = {LittleEndian::readUnsigned(lead + PackageLayout::kTotalUncompressedSizeOffset),
               LittleEndian::readUnsigned(lead + PackageLayout::kTotalStoredSizeOffset),
               LittleEndian::readUnsigned(lead + PackageLayout::kEntryCountOffset)};
    return LittleEndian::readUnsigned(lead + PackageLayout::kMagic0Offset) == PackageLayout::kMagic0 &&
           LittleEndian::readUnsigned(lead + PackageLayout::kMagic1Offset) == PackageLayout::kMagic1 &&
           LittleEndian::readUnsigned(lead + PackageLayout::kMagic2Offset) == PackageLayout::kMagic2;
}

void PackageFileReader::load() {
    const int code = cabinet_.load(path_.c_str(), offset_);
    if (code != Cabinet::kLoaded) {
        throw InstallerError("%s: %s (%d)", path_.c_str(), loadProblem(code), code);
    }
}

bool PackageFileReader::stampedOffset(std::uint32_t& outOffset) const {
    return hasImage() &&
           findStampedOffset(std::string_view(head_).substr(0, static_cast<std::size_t>(offset_)), outOffset);
}

bool hasRightDigest(const Cabinet& cabinet, std::int32_t index) {
    const EntryContent content = cabinet.entryContent(index);
    return content.data != nullptr && md5Of(content.data, content.size) == cabinet.entry(index).digest();
}

std::string digestText(const Md5Digest& digest) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}
