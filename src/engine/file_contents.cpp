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

void FileContents::expandVariables(FileContent& content, std::size_t limit, const char* name) {
    if (content.bytes.size() >= limit) {
        return;
    }
    const std::string source(content.bytes);
    std::string expanded(limit, '\0');
    expressions_.expandVariables(source.c_str(), expanded.data(), static_cast<int>(limit), false);
    expanded.resize(std::char_traits<char>::length(expanded.c_str()));
    const bool isFull = expanded.size() == limit - 1;
    if (isFull && expressions_.expandVariables(source.c_str(), nullptr, 0, false) > static_cast<int>(limit)) {
        debugLog_.print("WARNING: The content of %s is cut to %d bytes by the expansion of its variables",
                        name, static_cast<int>(limit) - 1);
    }
    content.expanded = std::move(expanded);
    content.bytes = content.expanded;
}
