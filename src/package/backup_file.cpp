#include "package/backup_file.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "base/errors.h"
#include "contracts/installer_ui.h"
#include "package/backup_format.h"
#include "package/backup_reader.h"
#include "package/little_endian.h"
#include "support/p_console.h"

namespace {

constexpr std::uint32_t kCopyBlockSize = 8 * BackupFormat::kFoldBlockSize;

int openToRead(PFileStream& stream, const char* path) {
    return stream.openFile(path, PFileStream::kGenericRead,
                           PFileStream::kShareRead | PFileStream::kShareWrite | PFileStream::kShareDelete,
                           PFileStream::kOpenExisting | PFileStream::kSequential);
}

// Fills the buffer as far as the file reaches, whatever pieces the system gives; `outRead` also after a
// failure.
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

struct CopyCounts {
    std::int64_t read = 0;
    std::int64_t written = 0;
};

// Copies up to `size` bytes; 0 also when the source is shorter. The counts tell.
int copyBytes(PFileStream& from, PFileStream& to, std::int64_t size, CopyCounts& outCounts) {
    const auto block = std::make_unique<unsigned char[]>(kCopyBlockSize);
    while (outCounts.read < size) {
        const auto wanted =
            static_cast<std::uint32_t>(std::min<std::int64_t>(size - outCounts.read, kCopyBlockSize));
        std::uint32_t done = 0;
        int status = readFull(from, block.get(), wanted, done);
        outCounts.read += done;
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

// The text up to its terminator, which need not lie within the buffer.
std::string boundedText(const char* text, std::int64_t bufferSize) {
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(bufferSize, 0));
    const void* terminator = std::memchr(text, 0, size);
    return {text, terminator == nullptr
                      ? size
                      : static_cast<std::size_t>(static_cast<const char*>(terminator) - text)};
}

bool isRestorable(const BackupEntry& entry, std::uint32_t existing, bool exists) {
    return !exists || entry.checkSum == existing;
}

}  // namespace

BackupFile::BackupFile(platform::FileSystem& files) : PFileStream(files) {}

BackupFile::~BackupFile() {
    BackupFile::close();
}

bool BackupFile::isBackupFile(const char* path) {
    PFileStream stream(files());
    unsigned char start[BackupFormat::kBannerLength];
    std::uint32_t done = 0;
    return openToRead(stream, path) == 0 && readFull(stream, start, sizeof(start), done) == 0 &&
           done == sizeof(start) && std::memcmp(start, BackupFormat::kBanner, sizeof(start)) == 0;
}

std::uint32_t BackupFile::fileCheckSum(const char* path) {
    PFileStream stream(files());
    if (openToRead(stream, path) != 0) {
        return 0;
    }
    const auto block = std::make_unique<unsigned char[]>(kCopyBlockSize);
    auto value = static_cast<std::uint32_t>(stream.getSize());
    for (;;) {
        std::uint32_t done = 0;
        const int status = readFull(stream, block.get(), kCopyBlockSize, done);
        value = foldCheckSum(value, block.get(), done);
        if (status != 0 || done < kCopyBlockSize) {
            return value;
        }
    }
}

// Exclusive or knows no order, so four independent sums of 64 bits can run side by side and be joined at the
// end.
std::uint32_t BackupFile::foldCheckSum(std::uint32_t value, const void* data, std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
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

int BackupFile::openForWriting(const char* path) {
    if (mode_ != kClosed) {
        return -1;
    }
    std::uint32_t written = 0;
    if (openPrivate(path) != 0) {
        error_ = 1;
        return -1;
    }
    if (write(BackupFormat::kBanner, BackupFormat::kBannerSize, written) != 0) {
        error_ = 1;
        PFileStream::close();
        return -1;
    }
    error_ = 0;
    mode_ = kWriting;
    return 0;
}

int BackupFile::openForReading(const char* path) {
    if (mode_ != kClosed || openToRead(*this, path) != 0) {
        return -1;
    }
    unsigned char banner[BackupFormat::kBannerSize];
    std::uint32_t done = 0;
    if (readFull(*this, banner, sizeof(banner), done) != 0 || done != sizeof(banner) ||
        std::memcmp(banner, BackupFormat::kBanner, sizeof(banner)) != 0) {
        PFileStream::close();
        return -1;
    }
    mode_ = kReading;
    return 0;
}

BackupResult BackupFile::addFile(const char* path, std::int64_t pathBufferSize, std::uint32_t checkSum,
                                 bool checkSumGiven) {
    if (mode_ != kWriting) {
        return BackupResult("Not in write mode");
    }
    if (error_ != 0) {
        return BackupResult("There is a previous error");
    }
    const std::string name = boundedText(path, pathBufferSize);
    if (isBackupFile(name.c_str())) {
        return {};
    }
    const std::int64_t start = getPosition();
    std::string failure = writeEntry(name, checkSum, checkSumGiven);
    if (failure.empty()) {
        return {};
    }
    error_ = 1;
    // Nothing may stand behind the end byte that close writes here.
    if (seek(start) == 0) {
        setEndOfStream();
    }
    return BackupResult(std::move(failure));
}

std::string BackupFile::writeEntry(const std::string& name, std::uint32_t checkSum, bool checkSumGiven) {
    std::uint32_t done = 0;
    // A name of length 0 would be the end byte; a longer one could not be read back.
    if (name.empty() || name.size() >= BackupFormat::kNameCapacity ||
        write(name.c_str(), static_cast<std::uint32_t>(name.size() + 1), done) != 0) {
        return "Error writing file name";
    }
    unsigned char field[BackupFormat::kSizeFieldSize];
    const std::int64_t size = getFileSize(name.c_str());
    LittleEndian::writeSigned64(field, size);
    if (write(field, BackupFormat::kSizeFieldSize, done) != 0) {
        return "Error writing file size";
    }
    LittleEndian::writeUnsigned(field, checkSumGiven ? checkSum : fileCheckSum(name.c_str()));
    if (write(field, BackupFormat::kCheckSumFieldSize, done) != 0) {
        return "Error writing check sum";
    }
    return size == 0 ? std::string() : writeContent(name.c_str(), size);
}

std::string BackupFile::writeContent(const char* path, std::int64_t size) {
    PFileStream source(files());
    if (openToRead(source, path) != 0) {
        return "Error opening file";
    }
    CopyCounts counts;
    const int status = copyBytes(source, *this, size, counts);
    if (status != 0) {
        return "Error copying stream (" + std::to_string(status) + ")";
    }
    if (counts.read != size || counts.written != size) {
        return "Copy stream mismatch: wanted " + std::to_string(size) + " bytes, read " +
               std::to_string(counts.read) + ", written " + std::to_string(counts.written);
    }
    return {};
}

int BackupFile::restoreAll(PConsole* console, InstallerUI& ui) {
    if (mode_ != kReading) {
        return -1;
    }
    ui.setCurrentProgress(0);
    BackupReader reader(*this);
    if (reader.start() != 0) {
        return -1;
    }
    for (std::int64_t count = 1;; ++count) {
        BackupEntry entry;
        const BackupReader::Found found = reader.next(entry);
        if (found == BackupReader::Found::kDamage) {
            return -1;
        }
        if (found == BackupReader::Found::kEnd) {
            ui.addFileLine(nullptr, true);
            return 0;
        }
        const bool flushNow = count % 32 == 0;
        if (entry.size == 0) {
            restoreEmpty(entry, console, ui, flushNow);
        } else if (!restoreContent(entry, reader, console, ui, flushNow)) {
            return -1;
        }
    }
}

bool BackupFile::canOpen(const char* path) {
    PFileStream stream(files());
    return openToRead(stream, path) == 0;
}

void BackupFile::restoreEmpty(const BackupEntry& entry, PConsole* console, InstallerUI& ui, bool flushNow) {
    ui.pumpEvents();
    if (fileCheckSum(entry.name.c_str()) != 0 || canOpen(entry.name.c_str())) {
        return;
    }
    PFileStream created(files());
    const int status = created.openFile(entry.name.c_str(), PFileStream::kReadWrite, PFileStream::kShareRead,
                                        PFileStream::kOpenAlways);
    if (console != nullptr) {
        console->print("Zero saved size for %s; creating blank file", entry.name.c_str());
    }
    reportRestore(entry, status, console, ui, flushNow);
}

bool BackupFile::restoreContent(const BackupEntry& entry, BackupReader& reader, PConsole* console,
                                InstallerUI& ui, bool flushNow) {
    const std::uint32_t existing = fileCheckSum(entry.name.c_str());
    const bool exists = existing != 0 || canOpen(entry.name.c_str());
    ui.pumpEvents();
    bool isReadable = true;
    if (isRestorable(entry, existing, exists)) {
        int status = 0;
        isReadable = writeBack(entry, reader, status);
        if (status == 0 && isReadable && console != nullptr) {
            console->print("Restored %s", entry.name.c_str());
        }
        reportRestore(entry, status, console, ui, flushNow);
    } else {
        if (console != nullptr) {
            console->print("Saved check sum different than existing one for %s; skipping",
                           entry.name.c_str());
        }
        isReadable = reader.skip(entry.size);
        ui.addFileLine(("Left " + entry.name).c_str(), flushNow);
    }
    ui.setCurrentProgress(reader.percentDone());
    return isReadable;
}

// False when the archive can't be read; a file that can't be written is `outStatus` and no damage to the
// archive.
bool BackupFile::writeBack(const BackupEntry& entry, BackupReader& reader, int& outStatus) {
    PFileStream target(files());
    outStatus = target.openFile(entry.name.c_str(), PFileStream::kReadWrite, PFileStream::kShareRead,
                                PFileStream::kCreateAlways);
    std::int64_t left = entry.size;
    while (left > 0) {
        std::uint32_t size = 0;
        const unsigned char* data = reader.read(left, size);
        if (data == nullptr) {
            return false;
        }
        std::uint32_t written = 0;
        if (outStatus == 0) {
            outStatus = target.write(data, size, written);
        }
        left -= size;
    }
    const int closed = target.close();
    outStatus = outStatus != 0 ? outStatus : closed;
    return true;
}

// The walk goes on after a file that can't be written, but nobody is told that it was restored.
void BackupFile::reportRestore(const BackupEntry& entry, int status, PConsole* console, InstallerUI& ui,
                               bool flushNow) {
    if (status == 0) {
        ui.addFileLine(("Restore " + entry.name).c_str(), flushNow);
        return;
    }
    if (console != nullptr) {
        console->print("ERROR: Could not restore %s (%i)", entry.name.c_str(), status);
    }
    ui.addFileLine(("FAILED to restore " + entry.name).c_str(), flushNow);
}

int BackupFile::close() {
    int status = 0;
    if (mode_ == kWriting) {
        const unsigned char end = 0;
        std::uint32_t written = 0;
        status = write(&end, 1, written);
    }
    mode_ = kClosed;
    const int closed = PFileStream::close();
    return status != 0 ? status : closed;
}
