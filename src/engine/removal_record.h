#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "platform/registry.h"
#include "support/md5.h"

// What a record of the removal journal is about. The numbers are those of the file
// (removal_journal_format.md).
enum class RemovalStep : std::uint8_t {
    // About the journal itself.
    kNote = 1,      // a text of the journal's owner
    kArchived = 2,  // the content is in an archive; only the rights are kept here
    kSettled = 3,   // nothing is left to take back from an earlier record
    kLeft = 4,      // what an earlier record's change left in its place
    // Changes.
    kRemoveFile = 10,
    kRemoveDirectory = 11,
    kCreateFile = 12,
    kCreateDirectory = 13,
    kMoveFile = 14,
    kReplaceFile = 15,
    kWriteFile = 16,  // in its place
    kChangeRights = 17,
    kCreateKey = 20,
    kDeleteKey = 21,
    kWriteValue = 22,
    kDeleteValue = 23,
    kFirewallApplication = 30,
    kFirewallPort = 31,
    kFirewallSwitchOn = 32,
    kBroadcastEnvironment = 40,
};

// What is in the place of a file, so far as a comparison needs it.
struct PlaceContent {
    platform::PathKind kind = platform::PathKind::kNothing;
    std::int64_t size = 0;  // of a file, as is the digest
    Md5Digest digest{};

    bool operator==(const PlaceContent&) const = default;
};

// What is at a path now. Of a file that can't be read the kind is kOther, and `outStatus` says why; otherwise
// that is 0.
PlaceContent contentOfPlace(platform::FileSystem& files, std::string_view path, int* outStatus = nullptr);

// A value of a registry key, or an exception of the firewall.
struct KeptValue {
    std::string name;
    std::uint32_t type = 0;
    std::string data;

    bool operator==(const KeptValue&) const = default;
};

// One record: what the machine held before a change, and what the change leaves there. What a member means
// for which step says removal_journal_format.md; one that a step doesn't use keeps its first value.
struct RemovalRecord {
    enum Flag : std::uint8_t {
        kSourceIsOurs = 1,  // the removal has made what it moves
        kPlaceIsOurs = 2,   // ... what it replaces
        kIsArchived = 4,    // what was in the place is in an archive
        kWasUnreadable = 8,
        kWasListed = 16,  // the removal had the choice to leave it
    };

    RemovalStep step = RemovalStep::kNote;
    std::uint32_t number = 0;   // of the record, from 1
    std::uint32_t subject = 0;  // the number of another record, or of levels, or of a port
    std::uint32_t kept = 0;     // the number of a kept file, or 0
    std::uint8_t flags = 0;
    std::uint8_t root = 0;
    std::uint8_t view = 0;
    PlaceContent left;
    std::string path;
    std::string other;
    std::vector<KeptValue> before;
    std::vector<KeptValue> after;

    bool has(Flag flag) const { return (flags & flag) != 0; }
    bool operator==(const RemovalRecord&) const = default;
};

// The record as it lies in the journal; nothing when it is larger than a reader takes.
std::optional<std::string> frameOf(const RemovalRecord& record);

struct ReadRecords {
    int status = 0;                      // of the reading; after a failure there is nothing else
    std::vector<RemovalRecord> records;  // in the order of the file
    bool isWhole = false;  // nothing was passed over but the torn end of a writer that was stopped
    std::size_t end = 0;   // where the last record that is whole ends
};

// All records of a journal's content that are whole; what is damaged is passed over. Nothing without the
// banner. Texts have no zero byte where the system would see an end, paths are absolute, and the numbers of
// enumerations are ones that exist.
ReadRecords readRecords(std::string_view content);
