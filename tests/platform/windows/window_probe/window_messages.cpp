#include "platform/windows/window_probe/window_messages.h"

#include <algorithm>

namespace {

constexpr UINT kPatience = 5000;  // ms; a program that copies files answers now and then
constexpr LRESULT kLongestText = 1 << 20;

}  // namespace

std::optional<LRESULT> WindowMessages::ask(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (isSilent(window)) {
        return std::nullopt;
    }
    DWORD_PTR answer = 0;
    SetLastError(ERROR_SUCCESS);
    if (SendMessageTimeoutW(window, message, first, second, SMTO_BLOCK, kPatience, &answer) == 0) {
        if (IsWindow(window) != 0) {
            noteSilent(window);
        }
        return std::nullopt;
    }
    return static_cast<LRESULT>(answer);
}

std::wstring WindowMessages::text(HWND window) {
    const std::optional<LRESULT> length = ask(window, WM_GETTEXTLENGTH);
    if (!length) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(std::clamp<LRESULT>(*length, 0, kLongestText)) + 1, L'\0');
    const LRESULT copied =
        ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data())).value_or(0);
    text.resize(std::min(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)), text.size() - 1));
    return text;
}
