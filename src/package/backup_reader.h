#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "support/p_file_stream.h"

// What an archive says about one file.
struct BackupEntry {
    std::string name;
    std::int64_t size = 0;
    std::uint32_t checkSum = 0;
};

// Walks an archive from front to back through a buffer. Every size has been checked against that of the
// archive: the content of a found entry is there as a whole.
class BackupReader {
public:
    enum class Found {
        kEntry,
        kEnd,       // the end byte, and nothing after it
        kUnended,   // the archive ends after a whole entry, without the end byte: its writer was stopped
        kCutEntry,  // a last entry whose content isn't there as a whole
        kCutHead,   // the archive ends in front of the content of a last entry
        kDamage,    // something else than an entry, or the archive can't be read
    };

    // `archive` is open, outlives this object and is moved by it alone.
    explicit BackupReader(PFileStream& archive);

    // Goes to the first entry. False when the archive can't be read.
    bool start();
    // Reads the next entry up to its content. `outEntry` is filled for kEntry and kCutEntry.
    Found next(BackupEntry& outEntry);
    // The next bytes of the content, at least one and at most `most`; empty when the archive can't be read.
    // Valid until the next call.
    std::string_view read(std::int64_t most);
    // Skips content. False when the archive can't be read.
    bool skip(std::int64_t size);
    // In the archive, of the next byte.
    std::int64_t position() const { return position_; }
    // Rounded up.
    int percentDone() const;

private:
    std::int64_t left() const { return archiveSize_ - position_; }
    bool fill();
    std::string_view buffered() const;
    void take(std::size_t size);
    bool readField(unsigned char* field, std::size_t size);
    bool readName(std::string& outName);

    PFileStream& archive_;
    std::unique_ptr<char[]> buffer_;
    std::uint32_t bufferStart_ = 0;  // of the bytes that haven't been read yet
    std::uint32_t bufferEnd_ = 0;
    std::int64_t position_ = 0;  // in the archive, of the next byte
    std::int64_t archiveSize_ = 0;
};
