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

// The name of the note that says how many levels of the state directory were made for the journal.
inline constexpr std::string_view kLevelsNote = "levels made";

// The names of the other notes, and the words of the stage; removal_journal_format.md says what they mean.
inline constexpr std::string_view kProductNote = "product";
inline constexpr std::string_view kStageNote = "stage";
inline constexpr std::string_view kAttemptsNote = "attempts";
inline constexpr std::string_view kDescriptionNote = "description";
inline constexpr std::string_view kTemporaryLogNote = "temporary log";
inline constexpr std::string_view kTemporaryArchiveNote = "temporary archive";
inline constexpr std::string_view kLogNote = "installation log";
inline constexpr std::string_view kArchiveNote = "installation archive";
inline constexpr std::string_view kContinuesNote = "continues";
inline constexpr std::string_view kPartlyNote = "partly undone";
inline constexpr std::string_view kYes = "yes";

inline constexpr std::string_view kStageBegun = "begun";
inline constexpr std::string_view kStageInstalling = "installing";
inline constexpr std::string_view kStageInstalled = "installed";
inline constexpr std::string_view kStageUndone = "undone";
inline constexpr std::string_view kStageEnded = "ended";

// Each followed by a space and a number from 1.
inline constexpr std::string_view kApplicationNote = "application";
inline constexpr std::string_view kRemovedLogNote = "log";
inline constexpr std::string_view kForGoodNote = "for good";
inline constexpr std::string_view kBackedUpNote = "backed up";
inline constexpr std::string_view kBackupNote = "archive";
inline constexpr std::string_view kDirectoriesNote = "directories";
inline constexpr std::string_view kCopiedNote = "copied";
inline constexpr std::string_view kCopyNote = "copy";
inline constexpr int kMostNumberedNotes = 10000;

// Files of the run itself in the directory.
inline constexpr std::string_view kDescriptionFile = "description.xml";
inline constexpr std::string_view kUndoLogFile = "undo.log";
inline constexpr std::string_view kRevertedLogFile = "reverted.log";
inline constexpr std::string_view kRevertedArchiveFile = "reverted.bin";

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
