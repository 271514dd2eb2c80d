#include "package/backup_reader.h"

#include <algorithm>
#include <cstring>

#include "package/backup_format.h"
#include "package/little_endian.h"

namespace {

constexpr std::uint32_t kBufferSize = 262144;

}  // namespace

BackupReader::BackupReader(PFileStream& archive)
    : archive_(archive), buffer_(std::make_unique<unsigned char[]>(kBufferSize)) {}

int BackupReader::start() {
    position_ = BackupFormat::kBannerSize;
    archiveSize_ = archive_.getSize();
    bufferStart_ = bufferEnd_ = 0;
    return archive_.seek(position_) == 0 && archiveSize_ >= position_ ? 0 : -1;
}

bool BackupReader::fill() {
    if (bufferStart_ < bufferEnd_) {
        return true;
    }
    bufferStart_ = bufferEnd_ = 0;
    return archive_.read(buffer_.get(), kBufferSize, bufferEnd_) == 0 && bufferEnd_ > 0;
}

const unsigned char* BackupReader::read(std::int64_t most, std::uint32_t& outSize) {
    outSize = 0;
    if (most < 1 || !fill()) {
        return nullptr;
    }
    const unsigned char* data = buffer_.get() + bufferStart_;
    outSize = static_cast<std::uint32_t>(std::min<std::int64_t>(most, bufferEnd_ - bufferStart_));
    bufferStart_ += outSize;
    position_ += outSize;
    return data;
}

bool BackupReader::skip(std::int64_t size) {
    if (size < 0 || size > left()) {
        return false;
    }
    position_ += size;
    if (size <= bufferEnd_ - bufferStart_) {
        bufferStart_ += static_cast<std::uint32_t>(size);
        return true;
    }
    bufferStart_ = bufferEnd_ = 0;
    return archive_.seek(position_) == 0;
}

bool BackupReader::readField(unsigned char* field, std::size_t size) {
    while (size > 0) {
        std::uint32_t done = 0;
        const unsigned char* data = read(static_cast<std::int64_t>(size), done);
        if (data == nullptr) {
            return false;
        }
        std::memcpy(field, data, done);
        field += done;
        size -= done;
    }
    return true;
}

bool BackupReader::readName(std::string& outName) {
    outName.clear();
    while (outName.size() < BackupFormat::kNameCapacity) {
        if (!fill()) {
            return false;
        }
        const auto* from = reinterpret_cast<const char*>(buffer_.get() + bufferStart_);
        const std::size_t room =
            std::min<std::size_t>(bufferEnd_ - bufferStart_, BackupFormat::kNameCapacity - outName.size());
        const void* terminator = std::memchr(from, 0, room);
        const std::size_t length =
            terminator == nullptr ? room
                                  : static_cast<std::size_t>(static_cast<const char*>(terminator) - from);
        outName.append(from, length);
        const std::size_t taken = terminator == nullptr ? length : length + 1;
        bufferStart_ += static_cast<std::uint32_t>(taken);
        position_ += static_cast<std::int64_t>(taken);
        if (terminator != nullptr) {
            return true;
        }
    }
    return false;
}

BackupReader::Found BackupReader::next(BackupEntry& outEntry) {
    if (!readName(outEntry.name)) {
        return Found::kDamage;
    }
    if (outEntry.name.empty()) {
        return Found::kEnd;
    }
    unsigned char fields[BackupFormat::kSizeFieldSize + BackupFormat::kCheckSumFieldSize];
    if (!readField(fields, sizeof(fields))) {
        return Found::kDamage;
    }
    outEntry.size = LittleEndian::readSigned64(fields);
    outEntry.checkSum = LittleEndian::readUnsigned(fields + BackupFormat::kSizeFieldSize);
    return outEntry.size < 0 || outEntry.size > left() ? Found::kDamage : Found::kEntry;
}

int BackupReader::percentDone() const {
    return archiveSize_ <= 0 ? 100 : static_cast<int>((position_ * 100 + archiveSize_ - 1) / archiveSize_);
}
