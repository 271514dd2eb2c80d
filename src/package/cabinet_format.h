#pragma once

#include <cstddef>
#include <cstdint>

#include "support/md5.h"

// The bytes of the cabinet, shared by reader and writer. cabinet_format.md says what they mean.
namespace CabinetFormat {

inline constexpr std::uint32_t kEntryMagic = 0x63270010;
inline constexpr std::uint32_t kEndMagic = 0x63270003;

// Offsets within an entry header.
inline constexpr std::size_t kMagicOffset = 0;
inline constexpr std::size_t kFileSizeOffset = 4;
inline constexpr std::size_t kStoredSizeOffset = 8;
inline constexpr std::size_t kFlagsOffset = 12;
inline constexpr std::size_t kDigestOffset = 16;
inline constexpr std::size_t kDigestSize = 16;
inline constexpr std::size_t kNameOffset = 32;
inline constexpr std::size_t kNameSize = 300;  // with the terminator that the writer always adds
inline constexpr std::size_t kAliasOffset = 332;
inline constexpr std::size_t kAliasSize = 276;  // the same
inline constexpr std::size_t kHeaderSize = 608;

static_assert(kFileSizeOffset == kMagicOffset + 4);
static_assert(kStoredSizeOffset == kFileSizeOffset + 4);
static_assert(kFlagsOffset == kStoredSizeOffset + 4);
static_assert(kDigestOffset == kFlagsOffset + 4);
static_assert(kNameOffset == kDigestOffset + kDigestSize);
static_assert(kAliasOffset == kNameOffset + kNameSize);
static_assert(kHeaderSize == kAliasOffset + kAliasSize);

// Flags of an entry, for tools; the installer ignores them.
inline constexpr std::uint32_t kPlainFile = 0;
inline constexpr std::uint32_t kImageFile = 1;

}  // namespace CabinetFormat

static_assert(sizeof(Md5Digest) == CabinetFormat::kDigestSize);
