#include "support/p_file_console.h"

#include <algorithm>
#include <utility>

PFileConsole::PFileConsole(platform::FileSystem& files) : files_(files) {}

PFileConsole::~PFileConsole() {
    closeStream();
}

int PFileConsole::open(std::string_view path, int mode) {
    return openStream([&](PFileStream& stream) { return stream.openWithMode(path, mode); });
}

int PFileConsole::openPrivate(std::string_view path) {
    return openStream([&](PFileStream& stream) { return stream.openPrivate(path); });
}

int PFileConsole::createPrivate(std::string_view path) {
    return openStream([&](PFileStream& stream) { return stream.createPrivate(path); });
}

template <typename Open>
int PFileConsole::openStream(Open openOn) {
    const std::lock_guard lock(mutex_);
    flushEachLine_ = false;
    closeStream();
    failed_ = false;
    failure_ = 0;
    auto stream = std::make_unique<PFileStream>(files_);
    const int status = openOn(*stream);
    if (status == 0) {
        stream_ = std::move(stream);
    }
    failure_ = status;
    return status;
}

int PFileConsole::close() {
    const std::lock_guard lock(mutex_);
    closeStream();
    return -1;
}

void PFileConsole::closeStream() {
    const int status = stream_ == nullptr ? 0 : stream_->close();
    if (status != 0) {
        noteFailure(status);
    }
    stream_ = nullptr;
}

void PFileConsole::noteFailure(int status) {
    failure_ = failed_ ? failure_.load() : status;
    failed_ = true;
}

int PFileConsole::write(const char* text, std::int32_t length) {
    const std::lock_guard lock(mutex_);
    if (stream_ == nullptr || length < 1) {
        return 0;
    }
    const int status = writeToStream(text, static_cast<std::uint32_t>(length));
    if (status != 0) {
        noteFailure(status);
    }
    return status;
}

std::int64_t PFileConsole::position() {
    const std::lock_guard lock(mutex_);
    return stream_ == nullptr ? -1 : stream_->getPosition();
}

int PFileConsole::cutAt(std::int64_t position) {
    const std::lock_guard lock(mutex_);
    if (stream_ == nullptr || position < 0) {
        return -1;
    }
    const int status = stream_->seek(position);
    return status != 0 ? status : stream_->setEndOfStream();
}

int PFileConsole::cutToLastLine() {
    constexpr std::int64_t kBlockSize = 4096;
    const std::lock_guard lock(mutex_);
    const std::int64_t size = stream_ == nullptr ? -1 : stream_->getSize();
    char block[kBlockSize];
    std::int64_t end = size;
    int status = size < 0 ? -1 : 0;
    for (bool isFound = false; status == 0 && !isFound && end > 0;) {
        const std::int64_t start = std::max<std::int64_t>(end - kBlockSize, 0);
        std::uint32_t done = 0;
        status = stream_->seek(start);
        status = status != 0 ? status : stream_->read(block, static_cast<std::uint32_t>(end - start), done);
        const std::size_t feed = std::string_view(block, done).rfind('\n');
        isFound = feed != std::string_view::npos;
        end = isFound ? start + static_cast<std::int64_t>(feed) + 1 : start;
    }
    status = status != 0 ? status : stream_->seek(end);
    return status != 0 || end == size ? status : stream_->setEndOfStream();
}

int PFileConsole::flush() {
    const std::lock_guard lock(mutex_);
    const int status = stream_ == nullptr ? 0 : stream_->flush();
    if (status != 0) {
        noteFailure(status);
    }
    return status;
}

int PFileConsole::writeToStream(const char* text, std::uint32_t length) {
    std::uint32_t written = 0;
    const int status = stream_->write(text, length, written);
    if (status != 0 || written != length) {
        return status != 0 ? status : -1;
    }
    return flushEachLine_ ? stream_->flush() : 0;
}
