#pragma once

#include <cstddef>
#include <cstdint>

// The fields of a Windows image (PE) that the packager reads and writes. pe_format.md says where they are
// described. Offsets are in bytes from the start of their structure, numbers little-endian.
namespace PeFormat {

inline constexpr std::size_t kHeaderPlace = 0x3C;  // in the file: the offset of the signature
inline constexpr std::uint32_t kSignature = 0x00004550;
inline constexpr std::size_t kSignatureSize = 4;

// The COFF header, which follows the signature.
inline constexpr std::size_t kSectionCount = 2;
inline constexpr std::size_t kOptionalHeaderSize = 16;
inline constexpr std::size_t kCoffHeaderSize = 20;

// The optional header, in both of its forms.
inline constexpr std::uint16_t kMagic32 = 0x10B;
inline constexpr std::uint16_t kMagic64 = 0x20B;
inline constexpr std::size_t kSizeOfInitializedData = 8;
inline constexpr std::size_t kSectionAlignment = 32;
inline constexpr std::size_t kFileAlignment = 36;
inline constexpr std::size_t kSizeOfImage = 56;
inline constexpr std::size_t kSizeOfHeaders = 60;
inline constexpr std::size_t kCheckSum = 64;
// What follows the addresses, whose size differs.
inline constexpr std::size_t kDirectoryCount32 = 92;
inline constexpr std::size_t kDirectoryCount64 = 108;
inline constexpr std::size_t kDirectorySize = 8;  // address and size
inline constexpr std::size_t kResourceDirectory = 2;

static_assert(kDirectoryCount64 == kDirectoryCount32 + 4 * 4);

// A header of a section.
inline constexpr std::size_t kSectionName = 0;
inline constexpr std::size_t kSectionNameSize = 8;
inline constexpr std::size_t kVirtualSize = 8;
inline constexpr std::size_t kVirtualAddress = 12;
inline constexpr std::size_t kSizeOfRawData = 16;
inline constexpr std::size_t kPointerToRawData = 20;
inline constexpr std::size_t kCharacteristics = 36;
inline constexpr std::size_t kSectionHeaderSize = 40;
inline constexpr std::uint32_t kReadableData = 0x40000040;  // initialised data that may be read

static_assert(kVirtualSize == kSectionName + kSectionNameSize);
static_assert(kSectionHeaderSize == kCharacteristics + 4);

// A table of resources and its entries; three levels of them: type, name, language.
inline constexpr std::size_t kNamedCount = 12;
inline constexpr std::size_t kNumberedCount = 14;
inline constexpr std::size_t kResourceTableSize = 16;
inline constexpr std::size_t kResourceEntrySize = 8;   // the name, and where it leads
inline constexpr std::uint32_t kHighBit = 0x80000000;  // a text for a name, a further table for a place

static_assert(kResourceTableSize == kNumberedCount + 2);

// What the last level leads to.
inline constexpr std::size_t kDataAddress = 0;
inline constexpr std::size_t kDataSize = 4;
inline constexpr std::size_t kDataCodePage = 8;
inline constexpr std::size_t kDataEntrySize = 16;

inline constexpr std::uint16_t kIconType = 3;
inline constexpr std::uint16_t kIconGroupType = 14;
inline constexpr std::uint16_t kVersionType = 16;

}  // namespace PeFormat
