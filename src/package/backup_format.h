#pragma once

#include <cstddef>
#include <cstdint>

// The bytes of a backup archive, shared by reader and writer. backup_format.md says what they mean.
namespace BackupFormat {

inline constexpr char kBanner[] = "Tandrel Software installer backup file.\n";
inline constexpr std::size_t kBannerLength = sizeof(kBanner) - 1;
inline constexpr std::size_t kBannerSize = sizeof(kBanner);  // with the terminator, which is part of the file

inline constexpr std::size_t kNameLimit = 1559;  // bytes of a name, without its terminator
inline constexpr std::size_t kSizeFieldSize = 8;
inline constexpr std::size_t kCheckSumFieldSize = 4;

// The check sum is folded in blocks of this many bytes, a whole number of 32-bit words.
inline constexpr std::size_t kFoldBlockSize = 32768;

static_assert(kBannerSize == 41);
static_assert(kFoldBlockSize % sizeof(std::uint32_t) == 0);

}  // namespace BackupFormat
