#pragma once

#include <cstddef>
#include <string_view>

// The text of an action log, shared by its writers and readers. action_log_format.md says what it means.
namespace ActionLogFormat {

inline constexpr char kSeparator = '\t';
inline constexpr std::string_view kLineEnd = "\r\n";
// The bytes of a line that are written; what is longer is cut.
inline constexpr std::size_t kLineLimit = 1023;

// The buffers into which readers take lines, in bytes with the terminator. A longer line comes in pieces.
inline constexpr std::size_t kFirstLineBuffer = 1560;
inline constexpr std::size_t kVariableLineBuffer = 2048;
inline constexpr std::size_t kRecordLineBuffer = 2604;
inline constexpr std::size_t kBackupLineBuffer = 1560;
// A variable line of a log that was brought up to date may fill the buffer of its readers.
inline constexpr std::size_t kRewrittenLineLimit = kVariableLineBuffer - 1 - kLineEnd.size();

// Tags. A line belongs to a tag when it begins with it.
inline constexpr std::string_view kVariableCount = "NUMVARS";
inline constexpr std::string_view kVariable = "VAR";
inline constexpr std::string_view kDirectory = "DIR";
inline constexpr std::string_view kFile = "FILE";
inline constexpr std::string_view kEnvironment = "ENV";
inline constexpr std::string_view kIni = "INI";
inline constexpr std::string_view kModifyFile = "MODIFYFILE";
inline constexpr std::string_view kShortcut = "SHORTCUT";
inline constexpr std::string_view kFirewall = "FIREWALL";
inline constexpr std::string_view kRegistryKey = "REGKEY";
inline constexpr std::string_view kRegistryValue = "REGVAL";

// A line that is no record. It keeps a record with the letters VAR in it apart from the variables: the
// rewrite of the log takes the lines right after them that hold these letters for more of them.
inline constexpr std::string_view kNoRecord = "RECORDS";

// A line in front of a record whose change replaces what the record doesn't bring back: its one field says
// what was in the place before (engine/changes/former_state.h).
inline constexpr std::string_view kFormer = "BEFORE";

// First fields. FILE has kCreate and kOver, SHORTCUT kCreate, ENV and INI the ones below it, MODIFYFILE
// kAddAfter, FIREWALL the last two.
inline constexpr std::string_view kCreate = "CREATE";
inline constexpr std::string_view kOver = "OVER";
inline constexpr std::string_view kReplace = "REPLACE";
inline constexpr std::string_view kAdd = "ADD";
inline constexpr std::string_view kNone = "NONE";
inline constexpr std::string_view kAddAfter = "ADDAFTER";
inline constexpr std::string_view kPort = "PORT";
inline constexpr std::string_view kApplication = "APP";

// The fourth field of REGVAL for a key's default value.
inline constexpr std::string_view kDefaultValue = "DEFAULT";

// A whole line as it was written fits every buffer that reads records.
static_assert(kLineLimit + kLineEnd.size() < kFirstLineBuffer);
static_assert(kLineLimit + kLineEnd.size() < kBackupLineBuffer);
static_assert(kLineLimit + kLineEnd.size() < kVariableLineBuffer);
static_assert(kVariableLineBuffer < kRecordLineBuffer);
static_assert(kLineLimit < kRewrittenLineLimit);
// The two tags of the variable block must not be taken for each other by their beginnings.
static_assert(!kVariableCount.starts_with(kVariable));

static_assert(kNoRecord.find(kVariable) == std::string_view::npos);
static_assert(!kNoRecord.starts_with(kRegistryKey) && !kNoRecord.starts_with(kRegistryValue));
static_assert(kFormer.find(kVariable) == std::string_view::npos);

}  // namespace ActionLogFormat
