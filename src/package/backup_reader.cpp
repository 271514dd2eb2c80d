#include "package/backup_reader.h"

#include <algorithm>
#include <cstring>

#include "package/backup_format.h"
#include "package/little_endian.h"

namespace {

constexpr std::uint32_t kBufferSize = 262144;

}  // namespace

BackupReader::BackupReader(PFileStream& archive)
    : archive_(archive), buffer_(std::make_unique<char[]>(kBufferSize)) {}

bool BackupReader::start() {
    position_ = BackupFormat::kBannerSize;
    archiveSize_ = archive_.getSize();
    bufferStart_ = bufferEnd_ = 0;
    return archive_.seek(position_) == 0 && archiveSize_ >= position_;
}

bool BackupReader::fill() {
    if (bufferStart_ < bufferEnd_) {
        return true;
    }
    bufferStart_ = bufferEnd_ = 0;
    return archive_.read(buffer_.get(), kBufferSize, bufferEnd_) == 0 && bufferEnd_ > 0;
}

std::string_view BackupReader::buffered() const {
    return {buffer_.get() + bufferStart_, bufferEnd_ - bufferStart_};
}

void BackupReader::take(std::size_t size) {
    bufferStart_ += static_cast<std::uint32_t>(size);
    position_ += static_cast<std::int64_t>(size);
}

std::string_view BackupReader::read(std::int64_t most) {
    if (most < 1 || !fill()) {
        return {};
    }
    const std::string_view data =
        buffered().substr(0, static_cast<std::size_t>(std::min<std::int64_t>(most, kBufferSize)));
    take(data.size());
    return data;
}

bool BackupReader::skip(std::int64_t size) {
    if (size < 0 || size > left()) {
        return false;
    }
    if (size <= bufferEnd_ - bufferStart_) {
        take(static_cast<std::size_t>(size));
        return true;
    }
    position_ += size;
    bufferStart_ = bufferEnd_ = 0;
    return archive_.seek(position_) == 0;
}

bool BackupReader::readField(unsigned char* field, std::size_t size) {
    while (size > 0) {
        const std::string_view data = read(static_cast<std::int64_t>(size));
        if (data.empty()) {
            return false;
        }
        std::memcpy(field, data.data(), data.size());
        field += data.size();
        size -= data.size();
    }
    return true;
}

bool BackupReader::readName(std::string& outName) {
    outName.clear();
    while (outName.size() <= BackupFormat::kNameLimit) {
        if (!fill()) {
            return false;
        }
        const std::string_view part = buffered().substr(0, BackupFormat::kNameLimit + 1 - outName.size());
        const std::size_t end = part.find('\0');
        outName += part.substr(0, end);
        take(end == std::string_view::npos ? part.size() : end + 1);
        if (end != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

BackupReader::Found BackupReader::next(BackupEntry& outEntry) {
    if (left() == 0) {
        return Found::kUnended;
    }
    if (!readName(outEntry.name)) {
        return left() == 0 ? Found::kCutHead : Found::kDamage;
    }
    if (outEntry.name.empty()) {
        return left() == 0 ? Found::kEnd : Found::kDamage;
    }
    unsigned char fields[BackupFormat::kSizeFieldSize + BackupFormat::kCheckSumFieldSize];
    if (!readField(fields, sizeof(fields))) {
        return left() == 0 ? Found::kCutHead : Found::kDamage;
    }
    outEntry.size = LittleEndian::readSigned64(fields);
    outEntry.checkSum = LittleEndian::readUnsigned(fields + BackupFormat::kSizeFieldSize);
    if (outEntry.size < 0) {
        return Found::kDamage;
    }
    return outEntry.size > left() ? Found::kCutEntry : Found::kEntry;
}

int BackupReader::percentDone() const {
    return archiveSize_ <= 0 ? 100 : static_cast<int>((position_ * 100 + archiveSize_ - 1) / archiveSize_);
}
