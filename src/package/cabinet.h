#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/shared_buffer.h"
#include "package/cabinet_format.h"
#include "support/p_file_stream.h"

class PConsole;

// One file of the cabinet. The record looks into the cabinet's block and owns nothing: like the texts it
// gives out it is valid until the next load or clear.
class CabinetEntry {
public:
    CabinetEntry(const unsigned char* header, std::int32_t headerOffset)
        : header_(header), headerOffset_(headerOffset) {}

    // The base name, up to the first zero byte or the field's 300 bytes. Not checked for separators.
    std::string_view name() const;
    // The key, up to the first zero byte or the field's 276 bytes.
    std::string_view alias() const;
    std::uint32_t fileSize() const;    // in bytes
    std::uint32_t storedSize() const;  // payload bytes behind the header; they lie within the cabinet
    std::uint32_t flags() const;       // CabinetFormat::kPlainFile or kImageFile
    Md5Digest digest() const;          // of the payload; nobody has compared it yet
    std::int32_t headerOffset() const { return headerOffset_; }
    const unsigned char* payload() const { return header_ + CabinetFormat::kHeaderSize; }

private:
    const unsigned char* header_;
    std::int32_t headerOffset_;  // of the header in the cabinet's block
};

// The bytes of an entry without a copy; null when the entry can't be read that way.
struct EntryContent {
    const unsigned char* data = nullptr;
    std::uint32_t size = 0;
};

// The archive of a package: brings it into memory as one block, knows its entries and reads them out. Nothing
// in the package is believed: sizes that leave their block fail the load or the entry. One thread.
class Cabinet {
public:
    enum LoadResult : int {
        kLoaded = 0,
        kNotOpened = -2,
        kSeekFailed = -3,  // also: the offset lies behind the file's end
        kReadFailed = -4,
        kBadMagic0 = -5,
        kBadMagic1 = -6,
        kBadMagic2 = -7,
        kBadEntryMagic = -8,
        kNoEndRecord = -9,  // the walk left the block
        kOutOfMemory = -10,
        // -11 and -21 to -29 come from the decompressor (package/solid_decompressor.h).
    };

    // `files` outlives this object. `console` may be null, and is only used while load runs.
    explicit Cabinet(platform::FileSystem& files = platform::systemFileSystem(), PConsole* console = nullptr);
    ~Cabinet();
    Cabinet(const Cabinet&) = delete;
    Cabinet& operator=(const Cabinet&) = delete;

    void setConsole(PConsole* console) { console_ = console; }

    // Forgets an earlier cabinet and loads the one whose lead block stands at byte `offset` of the file.
    // Returns a LoadResult or a code of the decompressor; after a failure the cabinet is empty.
    // At its peak it holds the compressed and the inflated cabinet.
    int load(const char* path, std::int64_t offset);
    // Frees the cabinet; the catalogue is empty afterwards. Buffers that were read out stay valid.
    void clear();

    std::int32_t getCount() const { return static_cast<std::int32_t>(entries_.size()); }
    // 0 <= index < getCount(), unchecked; in the order of the package.
    const CabinetEntry& entry(std::int32_t index) const { return entries_[static_cast<std::size_t>(index)]; }
    // True when the package held a solid stream. In the other, historical form no entry with content can be
    // read.
    bool isSolid() const { return isSolid_; }

    // The index of the last entry with exactly this alias, or -1.
    std::int32_t findAlias(std::string_view alias) const;

    // Copies an entry's content. `outSize` is the length in bytes, 0 after a failure. A zero byte stands
    // behind the data, so that it can be used as text. `outDigest` may be null and gets the stored digest.
    // Returns 0, or -1 with `out` untouched; nothing is logged.
    int readAlias(std::string_view alias, std::int32_t& outSize, SharedBuffer& out,
                  Md5Digest* outDigest) const;
    int readEntry(std::int32_t index, std::int32_t& outSize, SharedBuffer& out, Md5Digest* outDigest) const;

    // The content in place, for readers that need no copy; null data where readEntry would fail. Valid until
    // the next load or clear. An empty file has non-null data and size 0.
    EntryContent entryContent(std::int32_t index) const;

private:
    struct Block {
        std::unique_ptr<unsigned char[]> data;
        std::int32_t size = 0;
    };

    int readPackage(const char* path, std::int64_t offset, Block& out);
    int allocateAndRead(PFileStream& stream, std::int64_t offset, Block& out);
    int expand(Block& package, std::size_t& outPosition);
    int buildCatalogue(std::size_t position);
    void indexAliases();

    platform::FileSystem& files_;
    PConsole* console_;
    Block block_;
    bool isSolid_ = false;
    std::vector<CabinetEntry> entries_;
    std::unordered_map<std::string_view, std::int32_t> byAlias_;
};
