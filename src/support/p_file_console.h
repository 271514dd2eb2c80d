#pragma once

#include <memory>
#include <mutex>

#include "support/p_console.h"
#include "support/p_file_stream.h"

// A console on a file. Unopened it is a silent one.
class PFileConsole : public PConsole {
public:
    // `files` is borrowed.
    explicit PFileConsole(platform::FileSystem& files);
    ~PFileConsole() override;  // closes

    // As PFileStream::openWithMode: mode 1 appends, 0 recreates the file. Closes an open file first and
    // clears the flag set by setFlushEachLine and hasFailed. After a failure the console is unopened and
    // silent.
    int open(std::string_view path, int mode) override;
    // The same, recreating the file as PFileStream::openPrivate does.
    int openPrivate(std::string_view path);
    // The same with PFileStream::createPrivate: fails when there is something of that name.
    int createPrivate(std::string_view path);
    int close() override;  // returns -1 in any case; see hasFailed
    // Passes the bytes on at once; 0 without a file.
    int write(const char* text, std::int32_t length) override;

    // Where the next write goes, in bytes from the start; -1 without a file, or when the system refuses.
    std::int64_t position();
    // Takes out all that was written from this position on. 0, or the status of the step that failed.
    int cutAt(std::int64_t position);
    // Takes out what follows the last line feed: a line that was never finished. The next write goes to the
    // end. 0, or the status of the step that failed.
    int cutToLastLine();
    // Brings what was written to the disk; 0 without a file. A failure counts for hasFailed.
    int flush();

    // Hands each write to the disk as well.
    void setFlushEachLine(bool flush) { flushEachLine_ = flush; }
    bool isOpen() const { return stream_ != nullptr; }
    // Whether anything since the last opening didn't reach the file: a write, a flush or the closing failed.
    // Still true after close().
    bool hasFailed() const { return failed_; }
    // Why the last opening, or the first of these, failed: the system's error number, 0 or -1.
    int failure() const { return failure_; }

private:
    // `openOn` opens a stream and gives a status.
    template <typename Open>
    int openStream(Open openOn);
    void closeStream();
    void noteFailure(int status);
    int writeToStream(const char* text, std::uint32_t length);

    platform::FileSystem& files_;
    std::mutex mutex_;  // lines come from several threads
    std::unique_ptr<PFileStream> stream_;
    std::atomic<bool> flushEachLine_{false};
    std::atomic<bool> failed_{false};
    std::atomic<int> failure_{0};
};
