#include "packager/pe_image.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "package/little_endian.h"
#include "packager/byte_text.h"
#include "packager/pe_format.h"

namespace {

using namespace PeFormat;

constexpr std::string_view kResourceSection = ".rsrc";
// Tools look for resources by the section's name, so only one may have it.
constexpr std::string_view kFormerSection = ".rsrc0";
// Addresses of an image stay below it, so that sums of two of them don't overflow.
constexpr std::uint32_t kMostAddress = 0x7FFFFFFF;
constexpr std::uint32_t kMostAlignment = 0x10000;

[[noreturn]] void refuse(const std::string& what) {
    fail("the image for Windows can't carry the product's icon and version: " + what);
}

std::uint32_t aligned(std::uint64_t value, std::uint32_t alignment) {
    const std::uint64_t end = (value + alignment - 1) / alignment * alignment;
    if (end > kMostAddress) {
        refuse("it is too large");
    }
    return static_cast<std::uint32_t>(end);
}

bool isAlignment(std::uint32_t value) {
    return value >= 16 && value <= kMostAlignment && (value & (value - 1)) == 0;
}

std::string paddedName(std::string_view name) {
    std::string padded(name);
    padded.resize(kSectionNameSize);
    return padded;
}

}  // namespace

PeImage::PeImage(std::string bytes) : bytes_(std::move(bytes)) {
    readHeaders();
    readSections();
}

std::uint16_t PeImage::read16(std::size_t offset) const {
    if (offset > bytes_.size() || bytes_.size() - offset < 2) {
        refuse("its headers are cut");
    }
    return LittleEndian::readUnsigned16(reinterpret_cast<const unsigned char*>(bytes_.data()) + offset);
}

std::uint32_t PeImage::read32(std::size_t offset) const {
    return read16(offset) | static_cast<std::uint32_t>(read16(offset + 2)) << 16U;
}

// Only where it has been read before.
void PeImage::write32(std::size_t offset, std::uint32_t value) {
    LittleEndian::writeUnsigned(reinterpret_cast<unsigned char*>(bytes_.data()) + offset, value);
}

std::size_t PeImage::sectionHeader(std::size_t index) const {
    return sections_ + index * kSectionHeaderSize;
}

void PeImage::readHeaders() {
    const std::size_t signature = read32(kHeaderPlace);
    if (read32(signature) != kSignature) {
        refuse("it has no headers");
    }
    coffHeader_ = signature + kSignatureSize;
    optionalHeader_ = coffHeader_ + kCoffHeaderSize;
    const std::uint16_t magic = read16(optionalHeader_);
    if (magic != kMagic32 && magic != kMagic64) {
        refuse("it is no program");
    }
    sectionAlignment_ = read32(optionalHeader_ + kSectionAlignment);
    fileAlignment_ = read32(optionalHeader_ + kFileAlignment);
    if (!isAlignment(sectionAlignment_) || !isAlignment(fileAlignment_)) {
        refuse("its alignments are impossible");
    }
    const std::size_t directoryCount = magic == kMagic64 ? kDirectoryCount64 : kDirectoryCount32;
    const std::size_t optionalSize = read16(coffHeader_ + kOptionalHeaderSize);
    const std::size_t directory = directoryCount + 4 + kResourceDirectory * kDirectorySize;
    if (optionalSize < directory + kDirectorySize ||
        read32(optionalHeader_ + directoryCount) <= kResourceDirectory) {
        refuse("it has no place for resources");
    }
    directory_ = optionalHeader_ + directory;
    resourceAddress_ = read32(directory_);
    sections_ = optionalHeader_ + optionalSize;
    sectionCount_ = read16(coffHeader_ + kSectionCount);
}

void PeImage::readSections() {
    std::uint32_t end = aligned(read32(optionalHeader_ + kSizeOfHeaders), sectionAlignment_);
    for (std::size_t i = 0; i < sectionCount_; ++i) {
        const std::size_t header = sectionHeader(i);
        const std::uint64_t address = read32(header + kVirtualAddress);
        const std::uint64_t size = std::max(read32(header + kVirtualSize), read32(header + kSizeOfRawData));
        end = std::max(end, aligned(address + size, sectionAlignment_));
    }
    newAddress_ = end;
}

std::string_view PeImage::contentAt(std::uint32_t address) const {
    for (std::size_t i = 0; i < sectionCount_; ++i) {
        const std::size_t header = sectionHeader(i);
        const std::uint32_t start = read32(header + kVirtualAddress);
        const std::uint32_t size = read32(header + kSizeOfRawData);
        const std::uint32_t place = read32(header + kPointerToRawData);
        if (address >= start && address - start < size && place < bytes_.size()) {
            const std::string_view section = std::string_view(bytes_).substr(place, size);
            return section.substr(std::min<std::size_t>(address - start, section.size()));
        }
    }
    return {};
}

void PeImage::setResources(const std::string& content) {
    const std::size_t header = sectionHeader(sectionCount_);
    const std::size_t headersEnd =
        std::min<std::size_t>(read32(optionalHeader_ + kSizeOfHeaders), bytes_.size());
    if (header + kSectionHeaderSize > headersEnd || sectionCount_ >= 0xFFFF ||
        bytes_.find_first_not_of('\0', header) < header + kSectionHeaderSize) {
        refuse("its headers have no room for one more section");
    }
    const std::uint32_t rawSize = aligned(content.size(), fileAlignment_);
    const std::uint32_t imageSize = aligned(std::uint64_t{newAddress_} + content.size(), sectionAlignment_);
    const std::uint32_t place = aligned(bytes_.size(), fileAlignment_);
    renameFormerSection();
    bytes_.replace(header + kSectionName, kSectionNameSize, paddedName(kResourceSection));
    write32(header + kVirtualSize, static_cast<std::uint32_t>(content.size()));
    write32(header + kVirtualAddress, newAddress_);
    write32(header + kSizeOfRawData, rawSize);
    write32(header + kPointerToRawData, place);
    write32(header + kCharacteristics, kReadableData);
    ++sectionCount_;
    bytes_[coffHeader_ + kSectionCount] = static_cast<char>(sectionCount_);
    bytes_[coffHeader_ + kSectionCount + 1] = static_cast<char>(sectionCount_ >> 8U);
    write32(optionalHeader_ + kSizeOfInitializedData,
            read32(optionalHeader_ + kSizeOfInitializedData) + rawSize);
    write32(optionalHeader_ + kSizeOfImage, imageSize);
    // It would be that of the whole file, package and all. 0 stands for none; a signing tool computes it.
    write32(optionalHeader_ + kCheckSum, 0);
    write32(directory_, newAddress_);
    write32(directory_ + 4, static_cast<std::uint32_t>(content.size()));
    bytes_.resize(place);
    bytes_ += content;
    ByteText::pad(bytes_, fileAlignment_);
}

void PeImage::renameFormerSection() {
    for (std::size_t i = 0; i < sectionCount_; ++i) {
        const std::size_t name = sectionHeader(i) + kSectionName;
        if (bytes_.compare(name, kSectionNameSize, paddedName(kResourceSection)) == 0) {
            bytes_.replace(name, kSectionNameSize, paddedName(kFormerSection));
        }
    }
}
