#include "packager/package_file_reader.h"

#include <algorithm>

#include "base/failure.h"
#include "package/little_endian.h"
#include "package/package_layout.h"
#include "package/package_stamp.h"
#include "support/utilities.h"

namespace {

using LoadResult = Cabinet::LoadResult;

constexpr std::size_t kFirstHead = 65536;
// The most bytes to ask a system call for.
constexpr std::size_t kReadPiece = 0x10000000;

std::string loadProblem(LoadResult result) {
    switch (result) {
        case LoadResult::kNotOpened:
        case LoadResult::kSeekFailed:
        case LoadResult::kReadFailed:
            return "it can't be read";
        case LoadResult::kBadMagic0:
        case LoadResult::kBadMagic1:
        case LoadResult::kBadMagic2:
            return "there is no payload";
        case LoadResult::kBadEntryMagic:
        case LoadResult::kNoEndRecord:
            return "its catalogue is damaged";
        case LoadResult::kOutOfMemory:
            return "there is not enough memory for it";
        default:
            return "its compressed stream is damaged";
    }
}

}  // namespace

void PackageFileReader::locate(const std::string& path) {
    path_ = path;
    PFileStream stream(files_);
    const int status =
        stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead, PFileStream::kOpenExisting);
    if (status != 0) {
        fail(path + ": the package can't be read: " + OUtils::readingErrorText(status));
    }
    fileSize_ = stream.getSize();
    findImageEnd(stream);
    if (!readLeadBlock(stream)) {
        fail(path + (hasImage() ? ": there is no payload after this program" : ": this is not a package"));
    }
}

// Reads more and more of the file until all headers of the image are there: their tables may be at its end.
void PackageFileReader::findImageEnd(PFileStream& stream) {
    for (std::size_t size = kFirstHead;; size *= 4) {
        readHead(stream, size);
        const ExecutableImage image = measureExecutableImage(head_, static_cast<std::uint64_t>(fileSize_));
        if (image.problem == ImageProblem::kCut && static_cast<std::int64_t>(head_.size()) < fileSize_) {
            continue;
        }
        if (image.problem == ImageProblem::kCut) {
            fail(path_ + ": this program is incomplete: copy it again");
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
        const auto piece = static_cast<std::uint32_t>(std::min(size - filled, kReadPiece));
        status = stream.read(head_.data() + filled, piece, done);
        filled += done;
    }
    if (status == 0 && filled < size) {
        status = -1;  // it ended early
    }
    if (status != 0) {
        fail(path_ + ": the package can't be read: " + OUtils::readingErrorText(status));
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
    const LoadResult result = cabinet_.load(path_, offset_);
    if (const int status = cabinet_.systemStatus(); result != LoadResult::kLoaded && status > 0) {
        fail(path_ + ": the package can't be read: " + OUtils::readingErrorText(status));
    }
    if (result != LoadResult::kLoaded) {
        fail(path_ + ": " + loadProblem(result) + " (" + std::to_string(static_cast<int>(result)) + ")");
    }
}

std::optional<std::uint32_t> PackageFileReader::stampedOffset() const {
    if (!hasImage()) {
        return std::nullopt;
    }
    return findStampedOffset(std::string_view(head_).substr(0, static_cast<std::size_t>(offset_)));
}

bool hasRightDigest(const Cabinet& cabinet, std::int32_t index) {
    const std::optional<std::string_view> content = cabinet.entryContent(index);
    return content && md5Of(content->data(), content->size()) == cabinet.entry(index).digest();
}

std::string digestText(const Md5Digest& digest) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}
