#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The text of the file that tells of the last runs, shared by its writer and reader. run_records_format.md
// says what it means.
namespace RunRecordsFormat {

inline constexpr std::string_view kFileName = "runs.txt";
inline constexpr std::string_view kBanner = "TANDREL RUNS 1";
inline constexpr char kLineEnd = '\n';
inline constexpr char kSeparator = '\t';

inline constexpr std::size_t kMostRuns = 10;
inline constexpr std::size_t kLongestText = 300;       // bytes of a name or a reason
inline constexpr std::size_t kLongestLine = 1000;      // of a run; a longer one isn't ours
inline constexpr std::int64_t kSizeLimit = 64 * 1024;  // what is larger is begun anew

// Two texts and the short fields.
static_assert(2 * kLongestText + 200 < kLongestLine);
static_assert(kMostRuns * kLongestLine < kSizeLimit);

}  // namespace RunRecordsFormat
