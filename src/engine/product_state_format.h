#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The text of the file that keeps what an installation wrote, shared by its writer and reader.
// product_state_format.md says what it means.
namespace ProductStateFormat {

inline constexpr std::string_view kNameStart = "written-";
inline constexpr std::string_view kNameEnd = ".md5";

// Of the empty file of an uninstallation at work.
inline constexpr std::string_view kUndoStart = "undo-";

inline constexpr char kLineEnd = '\n';
inline constexpr char kSeparator = ' ';
inline constexpr std::string_view kBanner = "TANDREL WRITTEN FILES 1";
inline constexpr std::string_view kLog = "LOG";
inline constexpr std::string_view kMade = "MADE";
inline constexpr std::string_view kEnd = "END";

inline constexpr std::size_t kDigestDigits = 32;
// What is larger is not read: a product of a million files stays far below.
inline constexpr std::int64_t kSizeLimit = 256 * 1024 * 1024;

// A line of a file begins with a digit of base 16, the last line must not look like one.
static_assert(kEnd.size() < kDigestDigits);

}  // namespace ProductStateFormat
