#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The layout of a removal journal, shared by its writer and reader. removal_journal_format.md says what it
// means.
namespace RemovalJournalFormat {

inline constexpr std::string_view kDirectoryPrefix = "removal-";
inline constexpr std::string_view kFileName = "journal";

// The version is part of it: a reader takes its own alone.
inline constexpr std::string_view kBanner = "TANDREL REMOVAL JOURNAL 1\n";

// The head of a record.
inline constexpr std::string_view kMark = "\x9eRec";
inline constexpr std::size_t kSizeOffset = 4;
inline constexpr std::size_t kNumberOffset = 8;
inline constexpr std::size_t kBodyDigestOffset = 12;
inline constexpr std::size_t kHeadDigestOffset = 20;
inline constexpr std::size_t kHeadSize = 24;
inline constexpr std::size_t kBodyDigestSize = 8;
inline constexpr std::size_t kHeadDigestSize = 4;

static_assert(kMark.size() == kSizeOffset);
static_assert(kBodyDigestOffset + kBodyDigestSize == kHeadDigestOffset);
static_assert(kHeadDigestOffset + kHeadDigestSize == kHeadSize);
// No byte of the banner is one that a mark starts with, so that no banner hides a record.
static_assert(kBanner.find(kMark[0]) == std::string_view::npos);

// The body up to its texts.
inline constexpr std::size_t kStepOffset = 0;
inline constexpr std::size_t kFlagsOffset = 1;
inline constexpr std::size_t kRootOffset = 2;
inline constexpr std::size_t kViewOffset = 3;
inline constexpr std::size_t kSubjectOffset = 4;
inline constexpr std::size_t kKeptOffset = 8;
inline constexpr std::size_t kLeftKindOffset = 12;
inline constexpr std::size_t kLeftSizeOffset = 13;
inline constexpr std::size_t kLeftDigestOffset = 21;
inline constexpr std::size_t kTextsOffset = 37;

inline constexpr std::uint32_t kAllFlags = 31;
// The largest body. A value of the registry that is larger isn't removed.
inline constexpr std::size_t kBodyLimit = 16 * 1024 * 1024;
inline constexpr std::size_t kCountLimit = 65535;  // values of one key

}  // namespace RemovalJournalFormat
