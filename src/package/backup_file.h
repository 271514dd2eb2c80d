#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "support/p_file_stream.h"

class BackupReader;
class DebugLog;
struct BackupEntry;

enum class RestoreOutcome {
    kRestored,
    kFailed,  // the file can't be written
    kLeft,    // the user has changed the file since the backup, so it stays
};

// Follows BackupFile::restoreAll, on the same thread.
class BackupRestoreObserver {
public:
    virtual ~BackupRestoreObserver() = default;

    // The next file is about to be restored, or left alone.
    virtual void beforeFile() = 0;
    // `number` counts the entries of the archive from 1; `path` is valid during the call; `status` is the
    // system's error number of a file that failed, or -1, otherwise 0. An empty file that is still there
    // needs nothing and isn't reported.
    virtual void fileDone(std::string_view path, RestoreOutcome outcome, std::int64_t number, int status) = 0;
    // How much of the archive has been read, 0 to 100.
    virtual void progress(int percent) = 0;
    // Asked before each file: whether the walk is to end here.
    virtual bool isToEnd() { return false; }
    // Whether the installation is known to have replaced this file, which isn't there any more. Otherwise its
    // entry is one of a damaged archive.
    virtual bool wasReplaced(std::string_view) { return true; }
    // The plain file whose rights the restored one gets; empty for those of the file in its place, or of a
    // new one.
    virtual std::string rightsOf(std::string_view) { return {}; }
};

// An archive of whole files, written once from front to back, or read back in one go. One thread.
class BackupFile : public PFileStream {
public:
    enum Mode : std::int32_t { kClosed = 0, kReading = 1, kWriting = 2 };

    // `files` is borrowed.
    explicit BackupFile(platform::FileSystem& files);
    ~BackupFile() override;

    // True when the first line of the file is the banner.
    bool isBackupFile(std::string_view path);
    // The check sum of a file's content; 0 when the file can't be opened, the value so far when a read fails.
    std::uint32_t fileCheckSum(std::string_view path);
    // The same, with what fileCheckSum can't say: 0, or the system's error number of the step that failed.
    int readCheckSum(std::string_view path, std::uint32_t& outValue);
    // Cuts off a last entry of the archive at `path` that isn't whole: its writer was killed before it
    // changed the file. 0 also where there is none, otherwise the system's error number, or -1 for what is no
    // archive or damaged otherwise; then it is as it was.
    int cutUnfinishedEntry(std::string_view path);
    // Adds content to a check sum, which starts as the low 32 bits of the whole size. Only the last piece may
    // have a size that isn't divisible by 4.
    static std::uint32_t foldCheckSum(std::uint32_t value, std::string_view content);

    // Of a whole content.
    static std::uint32_t checkSumOf(std::string_view content) {
        return foldCheckSum(static_cast<std::uint32_t>(content.size()), content);
    }

    // Creates the file, where nothing may be, with the banner. False when this object isn't closed or the
    // file can't be written; in the latter case hasError() is true, and no file is left.
    bool openForWriting(std::string_view path);
    // False when this object isn't closed, or the file can't be opened or has another banner.
    bool openForReading(std::string_view path);

    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override;
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) override;
    int flush() override;
    // Why the archive couldn't be opened, read or written: the system's error number, or 0 for what isn't the
    // system's.
    int fault() const { return fault_; }

    // Adds the file at `path`, of at most BackupFormat::kNameLimit bytes, under that name. Without `checkSum`
    // the archive stores the file's own. An archive is never put into an archive: that succeeds and stores
    // nothing. Returns nothing on success, otherwise a text that says what failed; the archive then ends with
    // its last good entry and takes no more, unless the text says that there is no plain file. A link isn't
    // followed: what it leads to belongs elsewhere, and the link couldn't be given back.
    std::optional<std::string> addFile(std::string_view path, std::optional<std::uint32_t> checkSum);
    // Why the last addFile failed: the error number that the system gave for the file or for the archive, 0
    // when it gave none.
    int addFileFault() const { return addFileFault_; }

    // Adds an entry of another archive as it is; `from` has just found it and reads its content. Otherwise as
    // addFile.
    std::optional<std::string> addEntry(const BackupEntry& entry, BackupReader& from);
    // Whether this archive, since it was opened for writing, was given the file at `path`, in any spelling
    // (platform/path_identity.h).
    bool holdsEntry(std::string_view path) const;
    // The check sum of the first entry for `path` becomes this one. False when there is none, or it can't be
    // written.
    bool setCheckSum(std::string_view path, std::uint32_t checkSum);

    // Restores all files but those that the user has changed since. Each content is complete before it takes
    // the place of the file that it belongs to. True when everything was looked at that the archive holds,
    // even if a file couldn't be written: also when the end byte is missing, or the content of a last file
    // that was never replaced. False for an archive that is damaged otherwise, when the observer asked for
    // the end, and when this object isn't open for reading; everything restored so far stays.
    bool restoreAll(const DebugLog& debugLog, BackupRestoreObserver& observer);

    // Writes the end byte when writing, and closes. Returns 0, or the status of the step that failed. With 0
    // the archive has been written, as far as the system can say.
    int close() override;

    Mode mode() const { return mode_; }
    bool hasError() const { return hasError_; }

private:
    int noted(int status);
    template <typename Write>
    std::optional<std::string> append(const std::string& name, Write write);
    std::optional<std::string> writeEntry(const std::string& name, std::optional<std::uint32_t> checkSum);
    std::optional<std::string> writeHead(const std::string& name, std::int64_t size, std::uint32_t checkSum);
    std::optional<std::string> writeContent(const std::string& path, std::int64_t size,
                                            std::uint32_t& outCheckSum);
    bool writeCheckSumAt(std::int64_t position, std::uint32_t checkSum);
    std::optional<std::string> copyContent(BackupReader& from, std::int64_t size);

    Mode mode_ = kClosed;
    bool hasError_ = false;
    int fault_ = 0;
    int addFileFault_ = 0;
    bool isPositionLost_ = false;  // what came next would go over what is there
    // Of the entries that were written: where the check sum is, by the identity of the path.
    std::unordered_map<std::string, std::int64_t> checkSums_;
};
