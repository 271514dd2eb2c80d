#include "package/cabinet.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "package/little_endian.h"
#include "package/package_layout.h"
#include "package/solid_decompressor.h"
#include "support/p_console.h"

namespace {

// The largest single read of a system call, kept below the limits of all systems.
constexpr std::int64_t kReadPiece = 0x10000000;

std::string_view fixedText(const unsigned char* field, std::size_t capacity) {
    const auto* text = reinterpret_cast<const char*>(field);
    const void* zero = std::memchr(text, 0, capacity);
    return {text,
            zero == nullptr ? capacity : static_cast<std::size_t>(static_cast<const char*>(zero) - text)};
}

bool readWhole(PFileStream& stream, unsigned char* buffer, std::int64_t size) {
    while (size > 0) {
        std::uint32_t done = 0;
        const auto piece = static_cast<std::uint32_t>(std::min(size, kReadPiece));
        if (stream.read(buffer, piece, done) != 0 || done == 0) {
            return false;
        }
        buffer += done;
        size -= done;
    }
    return true;
}

// 0 or the code of the first magic word that differs; a word that is cut off differs.
int checkLeadBlock(const unsigned char* data, std::size_t size) {
    const struct {
        std::size_t offset;
        std::uint32_t value;
        int code;
    } words[] = {
        {PackageLayout::kMagic0Offset, PackageLayout::kMagic0, Cabinet::kBadMagic0},
        {PackageLayout::kMagic1Offset, PackageLayout::kMagic1, Cabinet::kBadMagic1},
        {PackageLayout::kMagic2Offset, PackageLayout::kMagic2, Cabinet::kBadMagic2},
    };
    for (const auto& word : words) {
        if (word.offset + 4 > size || LittleEndian::readUnsigned(data + word.offset) != word.value) {
            return word.code;
        }
    }
    return 0;
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

Cabinet::Cabinet(platform::FileSystem& files, PConsole* console) : files_(files), console_(console) {}

Cabinet::~Cabinet() = default;

void Cabinet::clear() {
    byAlias_ = {};
    entries_ = {};
    block_ = {};
    isSolid_ = false;
}

int Cabinet::load(const char* path, std::int64_t offset) {
    clear();
    Block package;
    int result = readPackage(path, offset, package);
    std::size_t position = PackageLayout::kLeadBlockSize;
    if (result == kLoaded) {
        result = expand(package, position);
    }
    if (result == kLoaded) {
        result = buildCatalogue(position);
    }
    if (result != kLoaded) {
        clear();
    }
    return result;
}

int Cabinet::readPackage(const char* path, std::int64_t offset, Block& out) {
    PFileStream stream(files_);
    if (stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                        PFileStream::kOpenExisting | PFileStream::kSequential) != 0) {
        if (console_ != nullptr) {
            console_->print("ERROR: Failed to open %s for decompressing!", path == nullptr ? "" : path);
        }
        return kNotOpened;
    }
    const int result = allocateAndRead(stream, offset, out);
    if (result != kLoaded) {
        return result;
    }
    if (console_ != nullptr) {
        console_->print("Checking compressed cabinet version compatibility");
    }
    return checkLeadBlock(out.data.get(), static_cast<std::size_t>(out.size));
}

int Cabinet::allocateAndRead(PFileStream& stream, std::int64_t offset, Block& out) {
    const std::int64_t length = stream.getSize() - offset;
    if (offset < 0 || length < 0) {
        return kSeekFailed;
    }
    if (console_ != nullptr) {
        console_->print("Allocating memory for the compressed cabinet (%d B)", static_cast<int>(length));
    }
    try {
        if (length > INT32_MAX) {
            throw std::bad_alloc();
        }
        out.data.reset(new unsigned char[static_cast<std::size_t>(length)]);
        out.size = static_cast<std::int32_t>(length);
    } catch (const std::bad_alloc& failure) {
        if (console_ != nullptr) {
            console_->print("ERROR: Failed to allocate memory for the compressed cabinet (%s)",
                            failure.what());
        }
        return kOutOfMemory;
    }
    if (console_ != nullptr) {
        console_->print("Seeking file offset %d", static_cast<int>(offset));
    }
    if (stream.seek(offset) != 0) {
        return kSeekFailed;
    }
    if (console_ != nullptr) {
        console_->print("Reading compressed cabinet into memory");
    }
    return readWhole(stream, out.data.get(), length) ? kLoaded : kReadFailed;
}

// Makes the cabinet's block of the package's. Without a solid stream they are the same.
int Cabinet::expand(Block& package, std::size_t& outPosition) {
    if (console_ != nullptr) {
        console_->print("Starting decompression of data ...");
    }
    const unsigned char* stream = package.data.get() + PackageLayout::kLeadBlockSize;
    const std::int64_t size = static_cast<std::int64_t>(package.size) - PackageLayout::kLeadBlockSize;
    std::unique_ptr<SolidDecompressor> decompressor;
    if (size >= static_cast<std::int64_t>(SolidFormat::kHeaderSize)) {
        decompressor = createSolidDecompressor(stream);
    }
    if (decompressor == nullptr) {
        block_ = std::move(package);
        outPosition = PackageLayout::kLeadBlockSize;
        return kLoaded;
    }
    decompressor->setConsole(console_);
    isSolid_ = true;
    const int result = decompressor->decompress(stream, size, block_.data, block_.size);
    if (result != 0 && console_ != nullptr) {
        console_->print("ERROR: The solid decompressor failed decompressing the data (%d)!", result);
    }
    package = {};
    outPosition = 0;
    return result;
}

// The walk trusts nothing: each header and its payload must lie within the block.
int Cabinet::buildCatalogue(std::size_t position) {
    if (console_ != nullptr) {
        console_->print("Finished decompression. Initializing file headers ...");
    }
    const auto size = static_cast<std::size_t>(block_.size);
    for (;;) {
        if (position > size || size - position < CabinetFormat::kHeaderSize) {
            return kNoEndRecord;
        }
        const unsigned char* header = block_.data.get() + position;
        const std::uint32_t magic = LittleEndian::readUnsigned(header + CabinetFormat::kMagicOffset);
        if (magic == CabinetFormat::kEndMagic) {
            break;
        }
        if (magic != CabinetFormat::kEntryMagic) {
            return kBadEntryMagic;
        }
        const CabinetEntry entry(header, static_cast<std::int32_t>(position));
        position += CabinetFormat::kHeaderSize;
        if (entry.storedSize() > size - position) {
            return kNoEndRecord;
        }
        position += entry.storedSize();
        entries_.push_back(entry);
    }
    indexAliases();
    if (console_ != nullptr) {
        console_->print("Finished file headers initialization.");
    }
    return kLoaded;
}

// Later entries take the place of earlier ones of the same alias.
void Cabinet::indexAliases() {
    byAlias_.reserve(entries_.size());
    for (std::int32_t i = 0; i < getCount(); ++i) {
        byAlias_.insert_or_assign(entry(i).alias(), i);
    }
}

std::int32_t Cabinet::findAlias(std::string_view alias) const {
    const auto found = byAlias_.find(alias);
    return found == byAlias_.end() ? -1 : found->second;
}

int Cabinet::readAlias(std::string_view alias, std::int32_t& outSize, SharedBuffer& out,
                       Md5Digest* outDigest) const {
    return readEntry(findAlias(alias), outSize, out, outDigest);
}

int Cabinet::readEntry(std::int32_t index, std::int32_t& outSize, SharedBuffer& out,
                       Md5Digest* outDigest) const {
    outSize = 0;
    const EntryContent content = entryContent(index);
    if (content.data == nullptr) {
        return -1;
    }
    SharedBuffer buffer(static_cast<std::int32_t>(content.size));
    std::memcpy(buffer.data(), content.data, content.size);
    outSize = buffer.size();
    out = std::move(buffer);
    if (outDigest != nullptr) {
        *outDigest = entry(index).digest();
    }
    return 0;
}

EntryContent Cabinet::entryContent(std::int32_t index) const {
    if (index < 0 || index >= getCount()) {
        return {};
    }
    const CabinetEntry& found = entry(index);
    if (isSolid_) {
        // The payload is the plain file; an entry of any other size is damaged.
        return found.storedSize() == found.fileSize() ? EntryContent{found.payload(), found.fileSize()}
                                                      : EntryContent{};
    }
    // The historical form. Its readers never told zlib the room there was, so only an empty file comes out.
    // That stays: such packages aren't made any more, and no reader must succeed where another fails.
    unsigned char nothing = 0;
    uLongf room = 0;
    const int code = uncompress(&nothing, &room, found.payload(), found.storedSize());
    return code == Z_OK && room == 0 ? EntryContent{found.payload(), 0} : EntryContent{};
}
