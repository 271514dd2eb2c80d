#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "support/p_file_stream.h"

class BackupReader;
class InstallerUI;
struct BackupEntry;
class PConsole;

// What BackupFile::addFile gives: empty on success.
class BackupResult {
public:
    BackupResult() = default;
    explicit BackupResult(std::string text) : code_(-1), text_(std::move(text)) {}

    bool isEmpty() const { return code_ == 0; }
    int code() const { return code_; }  // 0 or -1
    const char* context() const { return isEmpty() ? "" : "BackupFile::addFile"; }
    const char* what() const { return text_.c_str(); }

private:
    int code_ = 0;
    std::string text_;
};

// An archive of whole files, written once from front to back, or read back in one go. One thread.
class BackupFile : public PFileStream {
public:
    enum Mode : std::int32_t { kClosed = 0, kReading = 1, kWriting = 2 };

    explicit BackupFile(platform::FileSystem& files = platform::systemFileSystem());
    ~BackupFile() override;

    // True when the first line of the file is the banner.
    bool isBackupFile(const char* path);
    // The check sum of a file's content; 0 when it can't be opened, the value so far when a read fails.
    std::uint32_t fileCheckSum(const char* path);
    // Goes on with a check sum: `value` starts as the low 32 bits of the whole size. Every call but the last
    // one has a `size` divisible by 4.
    static std::uint32_t foldCheckSum(std::uint32_t value, const void* data, std::size_t size);

    // Creates the file anew with the banner. 0, or -1 when this object isn't closed or the file can't be
    // created; in the latter case nothing can be added any more.
    int openForWriting(const char* path);
    // 0, or -1 when this object isn't closed, the file can't be opened or has another banner.
    int openForReading(const char* path);

    // Adds the file at `path` under that name. The name is read up to its terminator or `pathBufferSize`
    // bytes, at most 1,559. Without `checkSumGiven` the archive stores the file's own check sum. An archive
    // is never put into an archive: that succeeds and stores nothing. After a failure the archive ends with
    // its last good entry and takes no more.
    BackupResult addFile(const char* path, std::int64_t pathBufferSize, std::uint32_t checkSum,
                         bool checkSumGiven);

    // Unpacks everything that the user hasn't changed since. 0, or -1 for a damaged archive; what was
    // restored so far stays. An entry whose content is cut never touches the file that it names. A file that
    // can't be written is told to `console` (which may be null) and to the list, and the walk goes on.
    int restoreAll(PConsole* console, InstallerUI& ui);

    // Writes the end byte when writing, and closes. 0, or the status of the step that failed: with 0 the
    // archive has been written as far as the system tells.
    int close() override;

    Mode mode() const { return mode_; }
    bool hasError() const { return error_ != 0; }

private:
    std::string writeEntry(const std::string& name, std::uint32_t checkSum, bool checkSumGiven);
    std::string writeContent(const char* path, std::int64_t size);
    bool canOpen(const char* path);
    void restoreEmpty(const BackupEntry& entry, PConsole* console, InstallerUI& ui, bool flushNow);
    bool restoreContent(const BackupEntry& entry, BackupReader& reader, PConsole* console, InstallerUI& ui,
                        bool flushNow);
    bool writeBack(const BackupEntry& entry, BackupReader& reader, int& outStatus);
    void reportRestore(const BackupEntry& entry, int status, PConsole* console, InstallerUI& ui,
                       bool flushNow);

    Mode mode_ = kClosed;
    std::int32_t error_ = 0;
};
