#pragma once

#include <cstddef>
#include <cstdint>

#include "support/md5.h"

// The bytes of a package around its payload, shared by reader and writer. package_layout.md says what they
// mean.
namespace PackageLayout {

inline constexpr std::uint32_t kMagic0 = 0x63276327;
inline constexpr std::uint32_t kMagic1 = 0x75092612;
inline constexpr std::uint32_t kMagic2 = 0x78011813;

// Offsets within the lead block.
inline constexpr std::size_t kMagic0Offset = 0;
inline constexpr std::size_t kMagic1Offset = 4;
inline constexpr std::size_t kMagic2Offset = 8;
inline constexpr std::size_t kTotalUncompressedSizeOffset = 12;
inline constexpr std::size_t kTotalStoredSizeOffset = 16;
inline constexpr std::size_t kEntryCountOffset = 20;
inline constexpr std::size_t kReservedOffset = 24;
inline constexpr std::size_t kReservedSize = 40;
inline constexpr std::size_t kLeadBlockSize = 64;

static_assert(kMagic2Offset == kMagic0Offset + 8 && kMagic1Offset == kMagic0Offset + 4);
static_assert(kTotalUncompressedSizeOffset == kMagic2Offset + 4);
static_assert(kEntryCountOffset == kTotalStoredSizeOffset + 4);
static_assert(kReservedOffset == kEntryCountOffset + 4);
static_assert(kLeadBlockSize == kReservedOffset + kReservedSize);

// The tags of the checksum trailer, written without their terminators.
inline constexpr char kTagVersion1[] = "MD5SUM: ";
inline constexpr char kTagVersion2[] = "v2sum: ";
inline constexpr std::size_t kTagVersion1Size = sizeof(kTagVersion1) - 1;
inline constexpr std::size_t kTagVersion2Size = sizeof(kTagVersion2) - 1;
inline constexpr std::size_t kDigestSize = 16;
inline constexpr std::size_t kMinCheckedSize = kTagVersion1Size + kDigestSize;
// The trailer is searched for in this many bytes at the end of the file, so a signature after it must be
// smaller.
inline constexpr std::size_t kSearchedTail = 20000;
// Version 2 leaves out the executable's headers, which signing changes.
inline constexpr std::size_t kVersion2Start = 5000;

static_assert(kTagVersion1Size == 8 && kTagVersion2Size == 7);
static_assert(kMinCheckedSize == 24);
static_assert(sizeof(Md5Digest) == kDigestSize);

// The marker of the package offset: the size of its text with the terminator, and of the part that stamping
// overwrites.
inline constexpr std::size_t kMarkerSize = 20;
inline constexpr std::size_t kStampSize = 4;

}  // namespace PackageLayout
