#include "base/path_functions.h"

#include <algorithm>
#include <cstring>
#include <utility>

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

std::string upToTerminator(std::string text) {
    text.resize(std::strlen(text.c_str()));
    return text;
}

}  // namespace

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

void joinPath(char* path, const char* name, std::int64_t capacity) {
    if (capacity < 1) {
        return;
    }
    const std::size_t limit = static_cast<std::size_t>(capacity) - 1;
    const std::size_t length = strnlen(path, limit + 1);
    if (length < limit) {
        const std::string joined =
            joinedPath(path, name == nullptr ? std::string_view() : std::string_view(name), limit);
        copyText(path, joined.c_str(), capacity);
    }
}

std::string joinedPath(std::string path, std::string_view name, std::size_t mostBytes) {
    if (path.size() >= mostBytes) {
        return path;
    }
    if (!path.empty() && !isSeparator(path.back()) && !name.empty()) {
        path += '\\';
    }
    if (!name.empty() && isSeparator(name.front())) {
        name.remove_prefix(1);
    }
    path += name.substr(0, mostBytes - path.size());
    return path;
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

std::string normalizedPath(std::string path) {
    normalizePath(path.data());
    return upToTerminator(std::move(path));
}

std::string withSeparators(std::string path, char separator) {
    std::replace_if(path.begin(), path.end(), isSeparator, separator);
    return path;
}

std::string collapsedPath(std::string path) {
    collapseSeparators(path.data());
    return upToTerminator(std::move(path));
}

std::string_view stripTrailingSeparators(std::string_view path) {
    while (path.size() > 1 && isSeparator(path.back())) {
        path.remove_suffix(1);
    }
    return path;
}

std::string_view lastPathComponent(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

}  // namespace OUtils
