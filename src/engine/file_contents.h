#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/debug_log.h"
#include "support/md5.h"

class Cabinet;
class Expressions;

// The content of a file from the cabinet. The bytes belong to the cabinet, or, once expanded, to this record.
struct FileContent {
    std::string_view bytes;  // what is to be written
    Md5Digest digest{};      // of the bytes as they are in the cabinet
    std::string expanded;

    FileContent() = default;
    FileContent(const FileContent&) = delete;  // `bytes` may look into `expanded`
    FileContent& operator=(const FileContent&) = delete;
};

// Gets files out of the cabinet and puts the values of variables into their content.
class FileContents {
public:
    // Expansion is only done for content below the limit, which is also the buffer for its result.
    static constexpr std::size_t kInstalledFileLimit = 8192;
    static constexpr std::size_t kExtractedFileLimit = 0x100000;

    FileContents(const Cabinet& cabinet, Expressions& expressions, DebugLog debugLog)
        : cabinet_(cabinet), expressions_(expressions), debugLog_(debugLog) {}

    // False when the cabinet doesn't hold the alias or the entry can't be read.
    bool read(std::string_view alias, FileContent& out);

    // Replaces [NAME] by the value in content of less than `limit` bytes, up to its first zero byte.
    // What doesn't fit `limit` bytes with a terminator is cut, and that is logged with `name`. Larger
    // content stays as it is.
    void expandVariables(FileContent& content, std::size_t limit, std::string_view name);

private:
    const Cabinet& cabinet_;
    Expressions& expressions_;
    DebugLog debugLog_;
};
