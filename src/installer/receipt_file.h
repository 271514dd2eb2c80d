#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

struct RecordList;
namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// The file of the option -receipt.
namespace ReceiptFile {

// The path as it is found from every directory: relative ones count from the process's own.
std::string absolutePath(const std::string& path, platform::Environment& environment);

// Why no receipt can be written at this absolute path, in words without an end; none when it can. `log` is
// the action log, which it must not replace.
std::optional<std::string> problemOf(const std::string& path, const std::string& log,
                                     platform::FileSystem& files);

// The directory above `path` that is one of these identities (platform/path_identity.h); empty when none is.
std::string directoryAmong(const std::unordered_set<std::string>& identities, const std::string& path,
                           platform::FileSystem& files);

// JSON where the name ends in `.json`, in any case, otherwise text. The file is complete or as it was before;
// a link in its place is replaced and not followed. 0, the system's error number, or -1 for what no file can
// replace.
int write(const RecordList& list, const std::string& path, platform::FileSystem& files);

// The line that says why write gave `status`.
std::string failureText(const std::string& path, int status);

}  // namespace ReceiptFile
