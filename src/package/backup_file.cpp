#include "package/backup_file.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "base/path_functions.h"
#include "package/backup_format.h"
#include "package/backup_reader.h"
#include "package/little_endian.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/debug_log.h"
#include "support/replacing_file.h"

namespace {

constexpr std::uint32_t kCopyBlockSize = 8 * BackupFormat::kFoldBlockSize;

int openToRead(PFileStream& stream, std::string_view path) {
    return stream.openFile(path, PFileStream::kGenericRead,
                           PFileStream::kShareRead | PFileStream::kShareWrite | PFileStream::kShareDelete,
                           PFileStream::kOpenExisting | PFileStream::kSequential | PFileStream::kRefuseLinks);
}

// Fills the buffer as far as the file goes, even if the system delivers it in pieces. `outRead` is also set
// after a failure.
int readFull(PFileStream& stream, unsigned char* buffer, std::uint32_t size, std::uint32_t& outRead) {
    outRead = 0;
    while (outRead < size) {
        std::uint32_t done = 0;
        const int status = stream.read(buffer + outRead, size - outRead, done);
        outRead += done;
        if (status != 0 || done == 0) {
            return status;
        }
    }
    return 0;
}

// Not cleared: for most files that would take longer than reading them.
std::unique_ptr<unsigned char[]> newBlock(std::int64_t size = kCopyBlockSize) {
    return std::make_unique_for_overwrite<unsigned char[]>(
        static_cast<std::size_t>(std::min<std::int64_t>(size, kCopyBlockSize)));
}

struct CopyCounts {
    std::int64_t read = 0;
    std::int64_t written = 0;
    std::uint32_t checkSum = 0;  // of what was read
};

// Copies up to `size` bytes. Returns 0 even when the source is shorter; the counts show that.
int copyBytes(PFileStream& from, PFileStream& to, std::int64_t size, CopyCounts& outCounts) {
    const auto block = newBlock(size);
    outCounts.checkSum = static_cast<std::uint32_t>(size);
    while (outCounts.read < size) {
        const auto wanted =
            static_cast<std::uint32_t>(std::min<std::int64_t>(size - outCounts.read, kCopyBlockSize));
        std::uint32_t done = 0;
        int status = readFull(from, block.get(), wanted, done);
        outCounts.read += done;
        outCounts.checkSum =
            BackupFile::foldCheckSum(outCounts.checkSum, {reinterpret_cast<const char*>(block.get()), done});
        if (status == 0 && done > 0) {
            std::uint32_t written = 0;
            status = to.write(block.get(), done, written);
            outCounts.written += written;
        }
        if (status != 0 || done < wanted) {
            return status;
        }
    }
    return 0;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Every name that is put into an archive is such a path. After a wrong size a reader finds itself in the
// middle of a content or a name, and what it takes for a name there hardly ever looks like one.
bool isAbsolutePath(std::string_view name) {
    const bool hasDrive = name.size() > 2 && isLetter(name[0]) && name[1] == ':';
    return !name.empty() && OUtils::isSeparator(name[hasDrive ? 2 : 0]) &&
           std::ranges::none_of(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

// One walk over an archive that is open for reading.
class RestoreWalk {
public:
    RestoreWalk(BackupFile& archive, platform::FileSystem& files, const DebugLog& debugLog,
                BackupRestoreObserver& observer)
        : archive_(archive), reader_(archive), files_(files), debugLog_(debugLog), observer_(observer) {}

    // True when everything that the archive holds was looked at.
    bool run();

private:
    using Found = BackupReader::Found;

    // What is in the place of the current entry.
    enum class OnDisk {
        kNothing,
        kInstalled,  // what the installation put there
        kChanged,    // what the user made of it since; a link counts as such
        kUnknown,    // a file that can't be read
        kOther,      // something else than a file
    };

    // Each deals with the current entry and goes to the one after it, `entry_` from then on.
    Found restoreEmpty();
    Found restoreContent();
    Found leave(RestoreOutcome outcome, int status);
    Found writeBack();

    Found findNext();
    bool isPlausible(std::string_view name);
    OnDisk compare(int& outStatus);
    bool endsWell(Found found);
    int openTarget(ReplacingFile& target, const std::string& name);
    bool copyContent(PFileStream& target, std::int64_t size, int& outStatus);
    void reportWriting(const std::string& name, int status);

    BackupFile& archive_;
    BackupReader reader_;
    platform::FileSystem& files_;
    const DebugLog& debugLog_;
    BackupRestoreObserver& observer_;
    BackupEntry entry_;
    std::int64_t number_ = 0;  // of the current entry
};

bool RestoreWalk::run() {
    observer_.progress(0);
    if (!reader_.start()) {
        return false;
    }
    Found found = findNext();
    for (number_ = 1; found == Found::kEntry; ++number_) {
        if (observer_.isToEnd()) {
            return false;
        }
        found = entry_.size == 0 ? restoreEmpty() : restoreContent();
    }
    return endsWell(found);
}

// A cut head is that of a wrong size as well, whoever wrote the archive.
RestoreWalk::Found RestoreWalk::findNext() {
    const Found next = reader_.next(entry_);
    const Found found = next == Found::kCutHead ? Found::kDamage : next;
    const bool isEntry = found == Found::kEntry || found == Found::kCutEntry;
    return isEntry && !isPlausible(entry_.name) ? Found::kDamage : found;
}

bool RestoreWalk::isPlausible(std::string_view name) {
    return isAbsolutePath(name) && (files_.exists(name) || observer_.wasReplaced(name));
}

// An installation that is stopped may leave an archive without its end byte, and with a last content that is
// cut: then it had not replaced that file yet. Otherwise the former content is lost with the rest of the
// archive.
bool RestoreWalk::endsWell(Found found) {
    int status = 0;
    return found == Found::kEnd || found == Found::kUnended ||
           (found == Found::kCutEntry && compare(status) == OnDisk::kChanged);
}

// `outStatus` says why a file can't be read.
RestoreWalk::OnDisk RestoreWalk::compare(int& outStatus) {
    std::uint32_t existing = 0;
    outStatus = archive_.readCheckSum(entry_.name, existing);
    if (outStatus == 0) {
        return entry_.checkSum == existing ? OnDisk::kInstalled : OnDisk::kChanged;
    }
    switch (files_.kindOf(entry_.name)) {
        case platform::PathKind::kNothing:
            return OnDisk::kNothing;
        case platform::PathKind::kLink:
            return OnDisk::kChanged;
        case platform::PathKind::kFile:
            return OnDisk::kUnknown;
        default:
            return OnDisk::kOther;
    }
}

RestoreWalk::Found RestoreWalk::restoreEmpty() {
    observer_.beforeFile();
    const std::string name = entry_.name;
    const platform::PathKind kind = files_.kindOf(name);
    const bool exists = kind == platform::PathKind::kFile || kind == platform::PathKind::kLink;
    const Found found = findNext();
    if (exists || found == Found::kDamage) {
        return found;
    }
    ReplacingFile created(files_);
    int status = openTarget(created, name);
    status = status != 0 ? status : created.putInPlace();
    debugLog_.line("Zero saved size for " + name + "; creating blank file");
    reportWriting(name, status);
    return found;
}

RestoreWalk::Found RestoreWalk::restoreContent() {
    int status = 0;
    const OnDisk onDisk = compare(status);
    observer_.beforeFile();
    if (onDisk == OnDisk::kChanged) {
        debugLog_.line("Saved check sum different than existing one for " + entry_.name + "; skipping");
        return leave(RestoreOutcome::kLeft, 0);
    }
    // It may be what the user made of it, so it isn't written over either.
    if (onDisk == OnDisk::kUnknown) {
        debugLog_.line("ERROR: Could not compare " + entry_.name + " (" + std::to_string(status) + ")");
        return leave(RestoreOutcome::kFailed, status);
    }
    return writeBack();
}

RestoreWalk::Found RestoreWalk::leave(RestoreOutcome outcome, int status) {
    observer_.fileDone(entry_.name, outcome, number_, status);
    const bool isReadable = reader_.skip(entry_.size);
    observer_.progress(reader_.percentDone());
    return isReadable ? findNext() : Found::kDamage;
}

// The content takes its place when what follows it in the archive is understood: then its size was right.
RestoreWalk::Found RestoreWalk::writeBack() {
    const std::string name = entry_.name;
    ReplacingFile target(files_);
    int status = openTarget(target, name);
    if (!copyContent(target.stream(), entry_.size, status)) {
        return Found::kDamage;
    }
    const int percent = reader_.percentDone();
    const Found found = findNext();
    if (found == Found::kDamage) {
        return found;
    }
    status = status != 0 ? status : target.putInPlace();
    if (status == 0) {
        debugLog_.line("Restored " + name);
    }
    reportWriting(name, status);
    observer_.progress(percent);
    return found;
}

int RestoreWalk::openTarget(ReplacingFile& target, const std::string& name) {
    const std::string rightsSource = observer_.rightsOf(name);
    return rightsSource.empty() ? target.open(name) : target.openWithRightsOf(name, rightsSource);
}

// False when the archive can't be read. A file that can't be written gives `outStatus`; it doesn't damage the
// archive, so its content is read all the same.
bool RestoreWalk::copyContent(PFileStream& target, std::int64_t size, int& outStatus) {
    while (size > 0) {
        const std::string_view data = reader_.read(size);
        if (data.empty()) {
            return false;
        }
        std::uint32_t written = 0;
        if (outStatus == 0) {
            outStatus = target.write(data.data(), static_cast<std::uint32_t>(data.size()), written);
        }
        size -= static_cast<std::int64_t>(data.size());
    }
    return true;
}

void RestoreWalk::reportWriting(const std::string& name, int status) {
    if (status != 0) {
        debugLog_.line("ERROR: Could not restore " + name + " (" + std::to_string(status) + ")");
    }
    observer_.fileDone(name, status == 0 ? RestoreOutcome::kRestored : RestoreOutcome::kFailed, number_,
                       status);
}

}  // namespace

BackupFile::BackupFile(platform::FileSystem& files) : PFileStream(files) {}

BackupFile::~BackupFile() {
    BackupFile::close();
}

bool BackupFile::isBackupFile(std::string_view path) {
    PFileStream stream(files());
    unsigned char start[BackupFormat::kBannerLength];
    std::uint32_t done = 0;
    return openToRead(stream, path) == 0 && readFull(stream, start, sizeof(start), done) == 0 &&
           done == sizeof(start) && std::memcmp(start, BackupFormat::kBanner, sizeof(start)) == 0;
}

std::uint32_t BackupFile::fileCheckSum(std::string_view path) {
    std::uint32_t value = 0;
    readCheckSum(path, value);
    return value;
}

int BackupFile::readCheckSum(std::string_view path, std::uint32_t& outValue) {
    outValue = 0;
    PFileStream stream(files());
    if (const int status = openToRead(stream, path); status != 0) {
        return status;
    }
    const std::int64_t size = stream.getSize();
    // With room for a byte more than the file has, the first read shows its end.
    const auto blockSize =
        static_cast<std::uint32_t>(std::clamp<std::int64_t>((size / 4 + 1) * 4, 4, kCopyBlockSize));
    const auto block = newBlock(blockSize);
    outValue = static_cast<std::uint32_t>(size);
    for (;;) {
        std::uint32_t done = 0;
        const int status = readFull(stream, block.get(), blockSize, done);
        outValue = foldCheckSum(outValue, {reinterpret_cast<const char*>(block.get()), done});
        if (status != 0 || done < blockSize) {
            return status;
        }
    }
}

int BackupFile::cutUnfinishedEntry(std::string_view path) {
    PFileStream archive(files());
    if (!isBackupFile(path)) {
        return -1;
    }
    int status = archive.openFile(path, PFileStream::kReadWrite, PFileStream::kShareRead,
                                  PFileStream::kOpenExisting | PFileStream::kRefuseLinks);
    if (status != 0) {
        return status;
    }
    BackupReader reader(archive);
    BackupEntry entry;
    bool isReadable = reader.start();
    std::int64_t end = reader.position();
    auto found = BackupReader::Found::kDamage;
    while (isReadable && (found = reader.next(entry)) == BackupReader::Found::kEntry) {
        isReadable = reader.skip(entry.size);
        end = reader.position();
    }
    const bool isCut = found == BackupReader::Found::kCutHead || found == BackupReader::Found::kCutEntry;
    if (!isReadable || found == BackupReader::Found::kDamage) {
        return -1;
    }
    status = isCut ? archive.seek(end) : 0;
    status = status != 0 || !isCut ? status : archive.setEndOfStream();
    return status;
}

// The order of the words doesn't matter to an exclusive or, so four independent sums of 64 bits run side by
// side and are combined at the end.
std::uint32_t BackupFile::foldCheckSum(std::uint32_t value, std::string_view content) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(content.data());
    std::size_t size = content.size();
    std::uint64_t sums[4] = {};
    for (; size >= 32; size -= 32, bytes += 32) {
        for (int i = 0; i < 4; ++i) {
            sums[i] ^= LittleEndian::readUnsigned64(bytes + 8 * i);
        }
    }
    const std::uint64_t sum = sums[0] ^ sums[1] ^ sums[2] ^ sums[3];
    value ^= static_cast<std::uint32_t>(sum) ^ static_cast<std::uint32_t>(sum >> 32);
    for (; size >= 4; size -= 4, bytes += 4) {
        value ^= LittleEndian::readUnsigned(bytes);
    }
    for (; size > 0; --size, ++bytes) {
        value ^= *bytes;
    }
    return value;
}

bool BackupFile::openForWriting(std::string_view path) {
    if (mode_ != kClosed) {
        return false;
    }
    std::uint32_t written = 0;
    fault_ = 0;
    const bool isCreated = noted(createPrivate(path)) == 0;
    hasError_ = !isCreated || write(BackupFormat::kBanner, BackupFormat::kBannerSize, written) != 0;
    if (hasError_) {
        PFileStream::close();
        if (isCreated) {
            files().removeFile(path);
        }
        return false;
    }
    mode_ = kWriting;
    checkSums_.clear();
    return true;
}

bool BackupFile::openForReading(std::string_view path) {
    if (mode_ != kClosed) {
        return false;
    }
    fault_ = openToRead(*this, path);
    if (fault_ != 0) {
        return false;
    }
    unsigned char banner[BackupFormat::kBannerSize];
    std::uint32_t done = 0;
    if (readFull(*this, banner, sizeof(banner), done) != 0 || done != sizeof(banner) ||
        std::memcmp(banner, BackupFormat::kBanner, sizeof(banner)) != 0) {
        PFileStream::close();
        return false;
    }
    mode_ = kReading;
    return true;
}

int BackupFile::noted(int status) {
    fault_ = status != 0 ? status : fault_;
    return status;
}

int BackupFile::read(void* buffer, std::uint32_t size, std::uint32_t& outRead) {
    return noted(PFileStream::read(buffer, size, outRead));
}

int BackupFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) {
    return noted(PFileStream::write(buffer, size, outWritten));
}

int BackupFile::flush() {
    return noted(PFileStream::flush());
}

std::optional<std::string> BackupFile::addFile(std::string_view path, std::optional<std::uint32_t> checkSum) {
    addFileFault_ = 0;
    if (mode_ == kWriting && !hasError_) {
        const platform::PathKind kind = files().kindOf(path);
        if (kind != platform::PathKind::kFile && kind != platform::PathKind::kNothing) {
            return "Not a plain file";
        }
        if (isBackupFile(path)) {
            return std::nullopt;
        }
    }
    const std::string name(path);
    return append(name, [&] { return writeEntry(name, checkSum); });
}

std::optional<std::string> BackupFile::addEntry(const BackupEntry& entry, BackupReader& from) {
    return append(entry.name, [&] {
        const std::optional<std::string> failure = writeHead(entry.name, entry.size, entry.checkSum);
        return failure ? failure : copyContent(from, entry.size);
    });
}

template <typename Write>
std::optional<std::string> BackupFile::append(const std::string& name, Write write) {
    if (mode_ != kWriting) {
        return "Not in write mode";
    }
    if (hasError_) {
        return "There is a previous error";
    }
    const std::int64_t start = getPosition();
    if (start < 0) {
        hasError_ = true;
        return "Error reading the position";
    }
    std::optional<std::string> failure = write();
    if (failure) {
        hasError_ = true;
        // Nothing may follow the end byte that close() writes here.
        if (seek(start) == 0) {
            setEndOfStream();
        }
    } else {
        const std::int64_t field =
            start + static_cast<std::int64_t>(name.size() + 1 + BackupFormat::kSizeFieldSize);
        checkSums_.emplace(platform::pathIdentity(name), field);
    }
    return failure;
}

bool BackupFile::holdsEntry(std::string_view path) const {
    return !checkSums_.empty() && checkSums_.contains(platform::pathIdentity(path));
}

bool BackupFile::setCheckSum(std::string_view path, std::uint32_t checkSum) {
    const auto found = checkSums_.find(platform::pathIdentity(path));
    if (mode_ != kWriting || found == checkSums_.end()) {
        return false;
    }
    return writeCheckSumAt(found->second, checkSum);
}

// And goes back to the end.
bool BackupFile::writeCheckSumAt(std::int64_t position, std::uint32_t checkSum) {
    unsigned char field[BackupFormat::kCheckSumFieldSize];
    LittleEndian::writeUnsigned(field, checkSum);
    std::uint32_t done = 0;
    const std::int64_t end = getPosition();
    const bool written = end >= 0 && seek(position) == 0 && write(field, sizeof(field), done) == 0;
    if (end >= 0 && seek(end) != 0) {
        hasError_ = true;
        isPositionLost_ = true;
        return false;
    }
    return written;
}

// The file is read once. Its own check sum is known after that.
std::optional<std::string> BackupFile::writeEntry(const std::string& name,
                                                  std::optional<std::uint32_t> checkSum) {
    const std::int64_t size = getFileSize(name);
    std::optional<std::string> failure = writeHead(name, size, checkSum.value_or(0));
    if (failure || size == 0) {
        addFileFault_ = failure ? fault_ : 0;
        return failure;
    }
    const std::int64_t content = getPosition();
    std::uint32_t own = 0;
    failure = writeContent(name, size, own);
    if (failure || checkSum) {
        return failure;
    }
    const std::int64_t field = content - static_cast<std::int64_t>(BackupFormat::kCheckSumFieldSize);
    return content > 0 && writeCheckSumAt(field, own) ? failure : "Error writing check sum";
}

// In one write: a run that is killed leaves a head that can be read, or none.
std::optional<std::string> BackupFile::writeHead(const std::string& name, std::int64_t size,
                                                 std::uint32_t checkSum) {
    // A name of length 0 would be the end byte; one above the limit could not be read back.
    if (name.empty() || name.size() > BackupFormat::kNameLimit) {
        return "Error writing file name";
    }
    unsigned char fields[BackupFormat::kSizeFieldSize + BackupFormat::kCheckSumFieldSize];
    LittleEndian::writeSigned64(fields, size);
    LittleEndian::writeUnsigned(fields + BackupFormat::kSizeFieldSize, checkSum);
    std::string head(name.data(), name.size() + 1);
    head.append(reinterpret_cast<const char*>(fields), sizeof(fields));
    std::uint32_t done = 0;
    if (write(head.data(), static_cast<std::uint32_t>(head.size()), done) == 0) {
        return std::nullopt;
    }
    return done <= name.size()                                  ? "Error writing file name"
           : done <= name.size() + BackupFormat::kSizeFieldSize ? "Error writing file size"
                                                                : "Error writing check sum";
}

std::optional<std::string> BackupFile::copyContent(BackupReader& from, std::int64_t size) {
    while (size > 0) {
        const std::string_view data = from.read(size);
        if (data.empty()) {
            return "Error reading the earlier archive";
        }
        std::uint32_t done = 0;
        const int status = write(data.data(), static_cast<std::uint32_t>(data.size()), done);
        if (status != 0) {
            return "Error copying stream (" + std::to_string(status) + ")";
        }
        size -= static_cast<std::int64_t>(data.size());
    }
    return std::nullopt;
}

std::optional<std::string> BackupFile::writeContent(const std::string& path, std::int64_t size,
                                                    std::uint32_t& outCheckSum) {
    PFileStream source(files());
    addFileFault_ = openToRead(source, path);
    if (addFileFault_ != 0) {
        return "Error opening file";
    }
    CopyCounts counts;
    addFileFault_ = copyBytes(source, *this, size, counts);
    outCheckSum = counts.checkSum;
    if (addFileFault_ != 0) {
        return "Error copying stream (" + std::to_string(addFileFault_) + ")";
    }
    if (counts.read != size || counts.written != size) {
        return "Copy stream mismatch: wanted " + std::to_string(size) + " bytes, read " +
               std::to_string(counts.read) + ", written " + std::to_string(counts.written);
    }
    return std::nullopt;
}

bool BackupFile::restoreAll(const DebugLog& debugLog, BackupRestoreObserver& observer) {
    return mode_ == kReading && RestoreWalk(*this, files(), debugLog, observer).run();
}

int BackupFile::close() {
    int status = 0;
    if (isPositionLost_) {
        status = -1;  // without its end mark it still gives back what it holds
    } else if (mode_ == kWriting) {
        const unsigned char end = 0;
        std::uint32_t written = 0;
        status = write(&end, 1, written);
    }
    isPositionLost_ = false;
    mode_ = kClosed;
    const int closed = noted(PFileStream::close());
    return status != 0 ? status : closed;
}
