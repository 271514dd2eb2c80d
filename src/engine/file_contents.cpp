#include "engine/file_contents.h"

#include "description/expressions.h"
#include "package/cabinet.h"
#include "support/debug_log.h"

bool FileContents::read(std::string_view alias, FileContent& out) {
    const std::optional<std::int32_t> index = cabinet_.findAlias(alias);
    if (!index) {
        return false;
    }
    const std::optional<std::string_view> content = cabinet_.entryContent(*index);
    if (!content) {
        return false;
    }
    out.bytes = *content;
    out.digest = cabinet_.entry(*index).digest();
    return true;
}

void FileContents::expandVariables(FileContent& content, std::size_t limit, std::string_view name) {
    if (content.bytes.size() >= limit) {
        return;
    }
    const std::string_view source = content.bytes.substr(0, content.bytes.find('\0'));
    content.expanded = expressions_.expandForSystem(source, limit).value_or("");
    // One byte more shows whether the result that fills its room was cut.
    const bool isFull = content.expanded.size() == limit - 1;
    if (isFull && expressions_.expandForSystem(source, limit + 1).value_or("").size() == limit) {
        debugLog_.print("WARNING: The content of %s is cut to %d bytes by the expansion of its variables",
                        std::string(name).c_str(), static_cast<int>(limit) - 1);
    }
    content.bytes = content.expanded;
}
