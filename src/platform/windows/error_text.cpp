#include "platform/error_text.h"

#include "platform/manner.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr DWORD kLongestText = 1024;  // characters
constexpr DWORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr DWORD kAnyLanguage = 0;

// The texts end with a line end, and long ones are broken into lines.
std::string oneLine(std::wstring_view text) {
    std::wstring line;
    for (const wchar_t unit : text) {
        const bool isSpace = unit == L'\r' || unit == L'\n' || unit == L' ';
        if (!isSpace) {
            line += unit;
        } else if (!line.empty() && line.back() != L' ') {
            line += L' ';
        }
    }
    while (!line.empty() && line.back() == L' ') {
        line.pop_back();
    }
    return utf8Of(line);
}

std::string textIn(DWORD language, int status) {
    wchar_t text[kLongestText];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(status), language, text, kLongestText, nullptr);
    return oneLine(std::wstring_view(text, length));
}

}  // namespace

// An installation of Windows in another language may lack the English texts.
std::string errorText(int status) {
    if (const Manner* const manner = currentManner) {
        return manner->errorText(status);
    }
    std::string text = textIn(kEnglish, status);
    if (text.empty()) {
        text = textIn(kAnyLanguage, status);
    }
    return text.empty() ? "error " + std::to_string(status) : text;
}

std::string registryErrorText(int status) {
    if (const Manner* const manner = currentManner) {
        return manner->registryErrorText(status);
    }
    return errorText(status);
}

}  // namespace platform
