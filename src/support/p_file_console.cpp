#include "support/p_file_console.h"

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
    auto stream = std::make_unique<PFileStream>(files_);
    const int status = openOn(*stream);
    if (status == 0) {
        stream_ = std::move(stream);
    }
    return status;
}

int PFileConsole::close() {
    const std::lock_guard lock(mutex_);
    closeStream();
    return -1;
}

void PFileConsole::closeStream() {
    if (stream_ != nullptr && stream_->close() != 0) {
        failed_ = true;
    }
    stream_ = nullptr;
}

int PFileConsole::write(const char* text, std::int32_t length) {
    const std::lock_guard lock(mutex_);
    if (stream_ == nullptr || length < 1) {
        return 0;
    }
    const int status = writeToStream(text, static_cast<std::uint32_t>(length));
    if (status != 0) {
        failed_ = true;
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
