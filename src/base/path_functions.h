#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Functions on paths as UTF-8 text: `/` and `\` both separate, on every system. They neither log nor touch a
// disk. Those on char* work in place on zero-terminated text.
namespace OUtils {

bool isSeparator(char c);

// Appends `name` to `path` with one separator between them, dropping one separator at the front of `name`.
// An empty path gets no separator. `capacity` is in bytes with the terminator; the result is cut to it. A
// path that fills the capacity stays as it is.
void joinPath(char* path, const char* name, std::int64_t capacity);
// The same on a value: a result of at most `mostBytes` bytes.
std::string joinedPath(std::string path, std::string_view name, std::size_t mostBytes);

// Trims white space at the ends, makes every separator `\`, and of a run of separators keeps one, except
// that a leading double separator (a network path) stays. Returns the number of changes: characters
// trimmed, slashes turned, separators dropped.
int normalizePath(char* path);

// Normalized as by normalizePath; the text ends at its first zero byte.
std::string normalizedPath(std::string path);

// Turns every `/` and `\` into `separator`.
void setSeparators(char* path, char separator = '\\');
std::string withSeparators(std::string path, char separator = '\\');

// Of a run of separators keeps the last one.
void collapseSeparators(char* path);
// The same; the text ends at its first zero byte.
std::string collapsedPath(std::string path);

// The path without the separators at its end. At least the first character stays.
std::string_view stripTrailingSeparators(std::string_view path);

// What follows the last separator; the whole text when there is none.
std::string_view lastPathComponent(std::string_view path);

}  // namespace OUtils
