#pragma once

#include <windows.h>

namespace platform {

// Whether an entry with these attributes and this tag is a symbolic link or a junction. Other entries with a
// tag (compressed, kept in a cloud) are files and directories like any other.
inline bool isLink(DWORD attributes, DWORD tag) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(tag);
}

// A junction or another link would lead a walk out of its tree; what has any other tag is left alone as well.
inline bool isTrueDirectory(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

}  // namespace platform
