#include "support/p_file_stream.h"

#include <utility>

namespace {

constexpr std::uint32_t kModeBits = 3;

platform::Disposition dispositionOf(std::uint32_t createMode) {
    switch (createMode & kModeBits) {
        case PFileStream::kOpenAlways:
            return platform::Disposition::kOpenOrCreate;
        case PFileStream::kCreateAlways:
            return platform::Disposition::kCreateAlways;
        default:
            return platform::Disposition::kOpenExisting;
    }
}

std::uint32_t platformAccess(std::uint32_t access) {
    return ((access & PFileStream::kGenericRead) != 0 ? platform::kRead : 0U) |
           ((access & PFileStream::kGenericWrite) != 0 ? platform::kWrite : 0U);
}

static_assert(PFileStream::kShareRead == platform::kShareRead &&
                  PFileStream::kShareWrite == platform::kShareWrite &&
                  PFileStream::kShareDelete == platform::kShareDelete,
              "share values are passed on as they are");

}  // namespace

PFileStream::PFileStream(platform::FileSystem& files) : files_(files) {}

PFileStream::~PFileStream() {
    PFileStream::close();
}

void PFileStream::setParameters(std::string_view path, std::uint32_t access, std::uint32_t share,
                                std::uint32_t createMode) {
    name_ = path;
    access_ = access;
    share_ = share;
    createMode_ = createMode;
}

int PFileStream::openFile(std::string_view path, std::uint32_t access, std::uint32_t share,
                          std::uint32_t createMode) {
    setParameters(path, access, share, createMode);
    return open();
}

int PFileStream::openWithMode(std::string_view path, int mode) {
    const bool appends = (static_cast<std::uint32_t>(mode) & kModeBits) == kAppend;
    setParameters(path, kReadWrite, kShareRead, appends ? kOpenAlways : kCreateAlways);
    int status = open();
    if (status == 0 && appends) {
        status = move(0, platform::Origin::kEnd);
        if (status != 0) {
            close();
        }
    }
    return status;
}

int PFileStream::openPrivate(std::string_view path) {
    close();
    setParameters(path, kReadWrite, kShareRead, kCreateAlways);
    // Where this fails, the creation fails too and gives the reason.
    files_.removeFile(name_);
    return openAs(platform::Disposition::kCreatePrivate);
}

int PFileStream::createNew(std::string_view path, bool isPrivate) {
    close();
    setParameters(path, kGenericWrite, kShareNone, kCreateAlways);
    return openAs(isPrivate ? platform::Disposition::kCreatePrivate : platform::Disposition::kCreateNew);
}

std::int64_t PFileStream::getFileSize(std::string_view path) {
    return files_.fileSize(path);
}

int PFileStream::open() {
    return openAs(dispositionOf(createMode_));
}

int PFileStream::openAs(platform::Disposition disposition) {
    PFileStream::close();
    platform::OpenOptions options;
    options.access = platformAccess(access_);
    options.share = share_;
    options.disposition = disposition;
    options.sequential = (createMode_ & kSequential) != 0;
    const int status = files_.open(name_, options, file_);
    if (status == 0) {
        ++openCount_;
    }
    return status;
}

int PFileStream::close() {
    if (file_ == nullptr) {
        return 0;
    }
    const std::unique_ptr<platform::File> closing = std::move(file_);
    const int status = closing->close();
    if (status == 0) {
        --openCount_;
    }
    return status;
}

int PFileStream::flush() {
    return file_ == nullptr ? -1 : file_->flush();
}

int PFileStream::setRights(platform::FileRights rights) {
    return file_ == nullptr ? -1 : file_->setRights(rights);
}

int PFileStream::takeRightsOf(std::string_view path) {
    return file_ == nullptr ? -1 : file_->takeRightsOf(path);
}

int PFileStream::makeExecutable() {
    return file_ == nullptr ? -1 : file_->makeExecutable();
}

int PFileStream::write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) {
    outWritten = 0;
    return file_ == nullptr ? -1 : file_->write(buffer, size, outWritten);
}

int PFileStream::read(void* buffer, std::uint32_t size, std::uint32_t& outRead) {
    outRead = 0;
    return file_ == nullptr ? -1 : file_->read(buffer, size, outRead);
}

int PFileStream::move(std::int64_t distance, platform::Origin origin) {
    std::int64_t position = 0;
    return file_ == nullptr ? -1 : file_->seek(distance, origin, position);
}

int PFileStream::seek(std::int64_t position) {
    return move(position, platform::Origin::kStart);
}

int PFileStream::seekRelative(std::int64_t distance) {
    return move(distance, platform::Origin::kCurrent);
}

int PFileStream::seekFromEnd(std::int64_t distance) {
    return move(distance, platform::Origin::kEnd);
}

std::int64_t PFileStream::getSize() {
    return file_ == nullptr ? -1 : file_->size();
}

int PFileStream::setEndOfStream() {
    return file_ == nullptr ? -1 : file_->truncateHere();
}

std::int64_t PFileStream::getPosition() {
    std::int64_t position = -1;
    if (file_ == nullptr || file_->seek(0, platform::Origin::kCurrent, position) != 0) {
        return -1;
    }
    return position;
}
