#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/shared_buffer.h"
#include "package/cabinet_format.h"
#include "package/solid_decompressor.h"
#include "support/debug_log.h"
#include "support/p_file_stream.h"

// One file of the cabinet. The record and the texts that it returns point into the memory of the cabinet and
// own nothing; they are valid until the next load or clear.
class CabinetEntry {
public:
    CabinetEntry(const unsigned char* header, std::int32_t headerOffset)
        : header_(header), headerOffset_(headerOffset) {}

    // The base name, up to the first zero byte or the field's 300 bytes. Not checked for separators.
    std::string_view name() const;
    // The key, up to the first zero byte or the field's 276 bytes.
    std::string_view alias() const;
    std::uint32_t fileSize() const;    // in bytes
    std::uint32_t storedSize() const;  // payload bytes after the header; all are within the cabinet
    std::uint32_t flags() const;       // CabinetFormat::kPlainFile or kImageFile
    Md5Digest digest() const;          // of the payload, as stored; not compared yet
    std::int32_t headerOffset() const { return headerOffset_; }
    const unsigned char* payload() const { return header_ + CabinetFormat::kHeaderSize; }

private:
    const unsigned char* header_;
    std::int32_t headerOffset_;  // of the header in the cabinet's block
};

// A copy of an entry's content, which stays valid without the cabinet, and its stored digest.
struct CabinetFile {
    SharedBuffer content;
    Md5Digest digest{};
};

// The archive of a package: loads it into memory as one block, knows its entries and reads them. Nothing in
// the package is trusted: a size that exceeds its block fails the load or the entry. One thread.
class Cabinet {
public:
    // The numbers are those that loading a package returns to the outside. A failure of the decompressor is
    // passed on with the number of its SolidResult, -11 or -21 to -29.
    enum class LoadResult : int {
        kLoaded = 0,
        kNotOpened = -2,
        kSeekFailed = -3,  // also: the offset is past the end of the file
        kReadFailed = -4,
        kBadMagic0 = -5,
        kBadMagic1 = -6,
        kBadMagic2 = -7,
        kBadEntryMagic = -8,
        kNoEndRecord = -9,  // the walk left the block
        kOutOfMemory = -10,
    };

    // `files` is borrowed. Only load writes to the log.
    Cabinet(platform::FileSystem& files, DebugLog debugLog);
    Cabinet(const Cabinet&) = delete;
    Cabinet& operator=(const Cabinet&) = delete;

    // Gets the bytes that loading has expanded.
    void showLoadingOn(ByteProgress progress) { progress_ = std::move(progress); }

    // Forgets an earlier cabinet and loads the one whose lead block is at byte `offset` of the file. After a
    // failure the cabinet is empty. For a moment both the compressed and the expanded cabinet are in memory.
    LoadResult load(std::string_view path, std::int64_t offset);
    // Why the system refused to open or to read the file of the last load: its error number, 0 otherwise.
    int systemStatus() const { return systemStatus_; }
    // Frees the cabinet; the catalogue is empty afterwards. Copies of content stay valid.
    void clear();

    std::int32_t getCount() const { return static_cast<std::int32_t>(entries_.size()); }
    // 0 <= index < getCount(), unchecked; in the order of the package.
    const CabinetEntry& entry(std::int32_t index) const { return entries_[static_cast<std::size_t>(index)]; }
    // True when the package held a solid stream. In the other, historical form no entry with content can be
    // read.
    bool isSolid() const { return isSolid_; }

    // The index of the entry with exactly this alias; of several, the last one wins.
    std::optional<std::int32_t> findAlias(std::string_view alias) const;

    // Copies an entry's content. Nothing for an unknown alias, an index outside the catalogue or a damaged
    // entry; none of that is logged.
    std::optional<CabinetFile> readAlias(std::string_view alias) const;
    std::optional<CabinetFile> readEntry(std::int32_t index) const;

    // The content in place, for readers that need no copy; nothing where readEntry would give nothing. Valid
    // until the next load or clear.
    std::optional<std::string_view> entryContent(std::int32_t index) const;

private:
    LoadResult readPackage(std::string_view path, std::int64_t offset, SolidBlock& out);
    LoadResult allocateAndRead(PFileStream& stream, std::int64_t offset, SolidBlock& out);
    LoadResult allocate(std::int64_t size, SolidBlock& out);
    LoadResult expand(SolidBlock& package, std::size_t& outPosition);
    LoadResult buildCatalogue(std::size_t position);
    LoadResult readEntries(std::size_t position);
    void indexAliases();

    platform::FileSystem& files_;
    DebugLog debugLog_;
    ByteProgress progress_;
    SolidBlock block_;
    bool isSolid_ = false;
    int systemStatus_ = 0;
    std::vector<CabinetEntry> entries_;
    std::unordered_map<std::string_view, std::int32_t> byAlias_;
};
