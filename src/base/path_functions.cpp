#include "base/path_functions.h"

#include <cstring>

#include "base/text_functions.h"

namespace OUtils {

namespace {

int trimInPlace(char* text) {
    const std::string_view whole(text);
    const std::string_view trimmed = trimWhiteSpace(whole);
    const auto removed = static_cast<int>(whole.size() - trimmed.size());
    std::memmove(text, trimmed.data(), trimmed.size());
    text[trimmed.size()] = '\0';
    return removed;
}

int dropRepeatedSeparators(char* path) {
    if (*path == '\0') {
        return 0;
    }
    char* out = path + 1;
    int dropped = 0;
    for (const char* in = path + 1; *in != '\0'; ++in) {
        // The first character doesn't count as one side of a run: "\\server" keeps both.
        if (*in == '\\' && out - path >= 2 && out[-1] == '\\') {
            ++dropped;
        } else {
            *out++ = *in;
        }
    }
    *out = '\0';
    return dropped;
}

}  // namespace

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

void joinPath(char* path, const char* name, std::int64_t capacity) {
    if (capacity < 1) {
        return;
    }
    const auto limit = static_cast<std::size_t>(capacity);
    std::size_t length = strnlen(path, limit);
    if (length + 1 >= limit) {
        return;
    }
    if (name == nullptr) {
        name = "";
    }
    if (length > 0 && !isSeparator(path[length - 1]) && *name != '\0') {
        path[length++] = '\\';
        path[length] = '\0';
    }
    if (isSeparator(*name)) {
        ++name;
    }
    copyText(path + length, name, static_cast<std::int64_t>(limit - length));
}

int normalizePath(char* path) {
    int changes = trimInPlace(path);
    for (char* at = path; *at != '\0'; ++at) {
        if (*at == '/') {
            *at = '\\';
            ++changes;
        }
    }
    return changes + dropRepeatedSeparators(path);
}

void setSeparators(char* path, char separator) {
    for (; *path != '\0'; ++path) {
        if (isSeparator(*path)) {
            *path = separator;
        }
    }
}

void collapseSeparators(char* path) {
    char* out = path;
    for (const char* in = path; *in != '\0'; ++in) {
        if (!isSeparator(in[0]) || !isSeparator(in[1])) {
            *out++ = *in;
        }
    }
    *out = '\0';
}

void stripTrailingSeparators(char* path, std::int64_t capacity) {
    std::size_t length = capacity < 1 ? 0 : strnlen(path, static_cast<std::size_t>(capacity));
    while (length > 1 && isSeparator(path[length - 1])) {
        path[--length] = '\0';
    }
}

std::string_view lastPathComponent(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

}  // namespace OUtils
