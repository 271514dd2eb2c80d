#include "platform/edit_control.h"

#include <iterator>

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr wchar_t kClass[] = L"Edit";

class WindowsEditControl : public EditControl {
public:
    explicit WindowsEditControl(HWND window) : window_(window) {
        SendMessageW(window_, EM_SETLIMITTEXT, 0, 0);  // as much as there can be, instead of 32 KiB
    }

    // Put in place of an empty selection at the end, so that what is there isn't moved about.
    bool append(std::string_view text) override {
        if (IsWindow(window_) == 0) {
            return false;
        }
        const auto end = static_cast<WPARAM>(GetWindowTextLengthW(window_));
        SendMessageW(window_, EM_SETSEL, end, static_cast<LPARAM>(end));
        const std::wstring wide = wideOf(text);
        SendMessageW(window_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide.data()));
        return true;
    }
    bool clear() override { return SetWindowTextW(window_, L"") != 0; }

private:
    HWND window_;
};

bool isEditControl(HWND window) {
    wchar_t name[32] = {};
    return IsWindow(window) != 0 && GetClassNameW(window, name, static_cast<int>(std::size(name))) > 0 &&
           CompareStringOrdinal(name, -1, kClass, -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

std::unique_ptr<EditControl> editControlOf(void* window) {
    const auto handle = static_cast<HWND>(window);
    return isEditControl(handle) ? std::make_unique<WindowsEditControl>(handle) : nullptr;
}

}  // namespace platform
