#pragma once

#include <cstdint>
#include <string_view>

// Functions on paths as text: `/` and `\` both separate, on every system. They work in place on
// zero-terminated UTF-8 text, neither throw nor log, and touch no disk.
namespace OUtils {

bool isSeparator(char c);

// Appends `name` to `path` with one separator between them, dropping one separator at the front of `name`.
// An empty path gets no separator. `capacity` is in bytes with the terminator; the result is cut to it. A
// path that fills the capacity stays as it is.
void joinPath(char* path, const char* name, std::int64_t capacity);

// Trims white space at the ends, makes every separator `\`, and of a run of separators keeps one, except
// that a leading double separator (a network path) stays. Returns the number of changes: characters
// trimmed, slashes turned, separators dropped.
int normalizePath(char* path);

// Turns every `/` and `\` into `separator`.
void setSeparators(char* path, char separator = '\\');

// Of a run of separators keeps the last one.
void collapseSeparators(char* path);

// Cuts separators at the end, but keeps at least the first character. `capacity` bounds the text's length.
void stripTrailingSeparators(char* path, std::int64_t capacity);

// What stands behind the last separator; the whole text when there is none.
std::string_view lastPathComponent(std::string_view path);

}  // namespace OUtils
