#include "package/cabinet.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "package/little_endian.h"
#include "package/package_layout.h"

namespace {

using LoadResult = Cabinet::LoadResult;

// The most bytes to ask a system call for, below the limits of all systems.
constexpr std::int64_t kReadPiece = 0x10000000;

std::string_view fixedText(const unsigned char* field, std::size_t capacity) {
    const auto* text = reinterpret_cast<const char*>(field);
    const void* zero = std::memchr(text, 0, capacity);
    return {text,
            zero == nullptr ? capacity : static_cast<std::size_t>(static_cast<const char*>(zero) - text)};
}

// False when the file ends early, and when the system can't read it.
bool readWhole(PFileStream& stream, unsigned char* buffer, std::int64_t size, int& outStatus) {
    while (size > 0) {
        std::uint32_t done = 0;
        const auto piece = static_cast<std::uint32_t>(std::min(size, kReadPiece));
        outStatus = stream.read(buffer, piece, done);
        if (outStatus != 0 || done == 0) {
            return false;
        }
        buffer += done;
        size -= done;
    }
    return true;
}

// Names the first magic word that differs; a word that is cut off differs.
LoadResult checkLeadBlock(const SolidBlock& package) {
    const struct {
        std::size_t offset;
        std::uint32_t value;
        LoadResult problem;
    } words[] = {
        {PackageLayout::kMagic0Offset, PackageLayout::kMagic0, LoadResult::kBadMagic0},
        {PackageLayout::kMagic1Offset, PackageLayout::kMagic1, LoadResult::kBadMagic1},
        {PackageLayout::kMagic2Offset, PackageLayout::kMagic2, LoadResult::kBadMagic2},
    };
    for (const auto& word : words) {
        if (word.offset + 4 > static_cast<std::size_t>(package.size) ||
            LittleEndian::readUnsigned(package.data.get() + word.offset) != word.value) {
            return word.problem;
        }
    }
    return LoadResult::kLoaded;
}

}  // namespace

std::string_view CabinetEntry::name() const {
    return fixedText(header_ + CabinetFormat::kNameOffset, CabinetFormat::kNameSize);
}

std::string_view CabinetEntry::alias() const {
    return fixedText(header_ + CabinetFormat::kAliasOffset, CabinetFormat::kAliasSize);
}

std::uint32_t CabinetEntry::fileSize() const {
    return LittleEndian::readUnsigned(header_ + CabinetFormat::kFileSizeOffset);
}

std::uint32_t CabinetEntry::storedSize() const {
    return LittleEndian::readUnsigned(header_ + CabinetFormat::kStoredSizeOffset);
}

std::uint32_t CabinetEntry::flags() const {
    return LittleEndian::readUnsigned(header_ + CabinetFormat::kFlagsOffset);
}

Md5Digest CabinetEntry::digest() const {
    Md5Digest digest;
    std::memcpy(digest.data(), header_ + CabinetFormat::kDigestOffset, digest.size());
    return digest;
}

Cabinet::Cabinet(platform::FileSystem& files, DebugLog debugLog)
    : files_(files), debugLog_(std::move(debugLog)) {}

void Cabinet::clear() {
    byAlias_ = {};
    entries_ = {};
    block_ = {};
    isSolid_ = false;
}

LoadResult Cabinet::load(std::string_view path, std::int64_t offset) {
    clear();
    SolidBlock package;
    LoadResult result = readPackage(path, offset, package);
    std::size_t position = 0;
    if (result == LoadResult::kLoaded) {
        result = expand(package, position);
    }
    if (result == LoadResult::kLoaded) {
        result = buildCatalogue(position);
    }
    if (result != LoadResult::kLoaded) {
        clear();
    }
    return result;
}

LoadResult Cabinet::readPackage(std::string_view path, std::int64_t offset, SolidBlock& out) {
    PFileStream stream(files_);
    systemStatus_ = stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                                    PFileStream::kOpenExisting | PFileStream::kSequential);
    if (systemStatus_ != 0) {
        debugLog_.line("ERROR: Failed to open " + std::string(path) + " for decompressing!");
        return LoadResult::kNotOpened;
    }
    const LoadResult result = allocateAndRead(stream, offset, out);
    if (result != LoadResult::kLoaded) {
        return result;
    }
    debugLog_.line("Checking compressed cabinet version compatibility");
    return checkLeadBlock(out);
}

LoadResult Cabinet::allocateAndRead(PFileStream& stream, std::int64_t offset, SolidBlock& out) {
    const std::int64_t length = stream.getSize() - offset;
    if (offset < 0 || length < 0) {
        return LoadResult::kSeekFailed;
    }
    const LoadResult result = allocate(length, out);
    if (result != LoadResult::kLoaded) {
        return result;
    }
    debugLog_.print("Seeking file offset %d", static_cast<int>(offset));
    if (stream.seek(offset) != 0) {
        return LoadResult::kSeekFailed;
    }
    debugLog_.line("Reading compressed cabinet into memory");
    return readWhole(stream, out.data.get(), length, systemStatus_) ? LoadResult::kLoaded
                                                                    : LoadResult::kReadFailed;
}

LoadResult Cabinet::allocate(std::int64_t size, SolidBlock& out) {
    debugLog_.print("Allocating memory for the compressed cabinet (%d B)", static_cast<int>(size));
    try {
        if (size > INT32_MAX) {
            throw std::bad_alloc();
        }
        out.data.reset(new unsigned char[static_cast<std::size_t>(size)]);
        out.size = static_cast<std::int32_t>(size);
        return LoadResult::kLoaded;
    } catch (const std::bad_alloc& failure) {
        debugLog_.print("ERROR: Failed to allocate memory for the compressed cabinet (%s)", failure.what());
        return LoadResult::kOutOfMemory;
    }
}

// Makes the cabinet's block from the package. Without a solid stream the catalogue follows the lead block,
// and the package itself becomes the block.
LoadResult Cabinet::expand(SolidBlock& package, std::size_t& outPosition) {
    debugLog_.line("Starting decompression of data ...");
    const unsigned char* stream = package.data.get() + PackageLayout::kLeadBlockSize;
    const std::int64_t size = static_cast<std::int64_t>(package.size) - PackageLayout::kLeadBlockSize;
    std::unique_ptr<SolidDecompressor> decompressor;
    if (size >= static_cast<std::int64_t>(SolidFormat::kHeaderSize)) {
        decompressor = createSolidDecompressor(stream, debugLog_);
    }
    if (decompressor == nullptr) {
        block_ = std::move(package);
        outPosition = PackageLayout::kLeadBlockSize;
        return LoadResult::kLoaded;
    }
    isSolid_ = true;
    outPosition = 0;
    decompressor->showOn(progress_);
    const SolidResult result = decompressor->decompress(stream, size, block_);
    if (result != SolidResult::kDone) {
        debugLog_.print("ERROR: The solid decompressor failed decompressing the data (%d)!",
                        static_cast<int>(result));
    }
    package = {};
    return static_cast<LoadResult>(result);
}

LoadResult Cabinet::buildCatalogue(std::size_t position) {
    debugLog_.line("Finished decompression. Initializing file headers ...");
    const LoadResult result = readEntries(position);
    if (result == LoadResult::kLoaded) {
        indexAliases();
        debugLog_.line("Finished file headers initialization.");
    }
    return result;
}

// The walk trusts nothing: each header and its payload must be within the block.
LoadResult Cabinet::readEntries(std::size_t position) {
    const auto size = static_cast<std::size_t>(block_.size);
    for (;;) {
        if (position > size || size - position < CabinetFormat::kHeaderSize) {
            return LoadResult::kNoEndRecord;
        }
        const unsigned char* header = block_.data.get() + position;
        const std::uint32_t magic = LittleEndian::readUnsigned(header + CabinetFormat::kMagicOffset);
        if (magic == CabinetFormat::kEndMagic) {
            return LoadResult::kLoaded;
        }
        if (magic != CabinetFormat::kEntryMagic) {
            return LoadResult::kBadEntryMagic;
        }
        const CabinetEntry entry(header, static_cast<std::int32_t>(position));
        position += CabinetFormat::kHeaderSize;
        if (entry.storedSize() > size - position) {
            return LoadResult::kNoEndRecord;
        }
        position += entry.storedSize();
        entries_.push_back(entry);
    }
}

// A later entry replaces an earlier one of the same alias.
void Cabinet::indexAliases() {
    byAlias_.reserve(entries_.size());
    for (std::int32_t i = 0; i < getCount(); ++i) {
        byAlias_.insert_or_assign(entry(i).alias(), i);
    }
}

std::optional<std::int32_t> Cabinet::findAlias(std::string_view alias) const {
    const auto found = byAlias_.find(alias);
    return found == byAlias_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<CabinetFile> Cabinet::readAlias(std::string_view alias) const {
    const std::optional<std::int32_t> index = findAlias(alias);
    return index ? readEntry(*index) : std::nullopt;
}

std::optional<CabinetFile> Cabinet::readEntry(std::int32_t index) const {
    const std::optional<std::string_view> content = entryContent(index);
    if (!content) {
        return std::nullopt;
    }
    CabinetFile file{SharedBuffer(static_cast<std::int32_t>(content->size())), entry(index).digest()};
    std::memcpy(file.content.data(), content->data(), content->size());
    return file;
}

std::optional<std::string_view> Cabinet::entryContent(std::int32_t index) const {
    if (index < 0 || index >= getCount()) {
        return std::nullopt;
    }
    const CabinetEntry& found = entry(index);
    const auto* payload = reinterpret_cast<const char*>(found.payload());
    if (isSolid_) {
        // The payload is the plain file; an entry of any other size is damaged.
        return found.storedSize() == found.fileSize()
                   ? std::optional(std::string_view(payload, found.fileSize()))
                   : std::nullopt;
    }
    // In the historical form each payload is a zlib stream. The room given to zlib is 0 on purpose, so that
    // only an empty file can be read: such packages aren't made any more, and all readers must refuse the
    // same ones.
    unsigned char nothing = 0;
    uLongf room = 0;
    const int code = uncompress(&nothing, &room, found.payload(), found.storedSize());
    return code == Z_OK && room == 0 ? std::optional(std::string_view("")) : std::nullopt;
}
