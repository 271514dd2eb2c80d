#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/shared_buffer.h"
#include "platform/environment.h"
#include "platform/file_system.h"

// Functions on files that all layers use. Paths are UTF-8. Nothing here logs.
namespace OUtils {

// True when there is anything of that name.
bool pathExists(std::string_view path, platform::FileSystem& files);

// The directory for temporary files without a trailing separator.
std::optional<std::string> getTempDirectory(platform::FileSystem& files);

// The full path of the running program.
std::optional<std::string> getProgramPath(platform::Environment& environment);

// Copies the content of a file. `to` is written as a ReplacingFile: false when anything failed, up to the
// last step, and then `to` is as it was. Copying onto the same path is a failure that changes nothing.
bool copyFile(std::string_view from, std::string_view to, platform::FileSystem& files,
              platform::FileRights rights = platform::FileRights::kPlain);

// 0, or the system's error number, also when there is no such file.
int removeFile(std::string_view path, platform::FileSystem& files);

// Why readWholeFile or writeWholeFile failed, in words without an end.
std::string readingErrorText(int status);
std::string writingErrorText(int status);

// Whether a link in the place of a file that is to be read is followed or a failure.
enum class Links { kFollow, kRefuse };

// Reads a file of at most 2,147,483,647 bytes. 0, the system's error number, or -1 when the file is larger or
// ended early; what was held before is gone after a failure.
int readWholeFile(std::string_view path, SharedBuffer& outContent, platform::FileSystem& files);
int readWholeFile(std::string_view path, std::string& outContent, platform::FileSystem& files,
                  Links links = Links::kFollow);

// Makes a ReplacingFile with exactly this content. 0, the system's error number, or -1 when the content is
// larger than 2,147,483,647 bytes or no file can be in that place; after a failure what was there is as it
// was.
int writeWholeFile(std::string_view path, std::string_view content, platform::FileSystem& files,
                   platform::FileRights rights = platform::FileRights::kPlain);

}  // namespace OUtils
