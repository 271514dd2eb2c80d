#include "platform/path_identity.h"

#include <algorithm>

#include "platform/manner.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

// The leading separators of a network path and of a local one aren't the same.
std::wstring withSingleSeparators(std::wstring_view path) {
    std::wstring result;
    for (const wchar_t c : path) {
        const bool isRepeated = c == L'\\' && result.size() > 1 && result.back() == L'\\';
        if (!isRepeated) {
            result += c;
        }
    }
    return result;
}

}  // namespace

std::string pathIdentity(std::string_view path) {
    if (const Manner* const manner = currentManner) {
        return manner->pathIdentity(path);
    }
    std::wstring wide = wideOf(path);
    std::ranges::replace(wide, L'/', L'\\');
    wide = withSingleSeparators(wide);
    // As the file systems compare names: one character for one, whatever the user's language.
    CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    return utf8Of(std::wstring_view(wide));
}

}  // namespace platform
