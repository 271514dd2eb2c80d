#include "ui/gui/wx/screen_reader.h"

#include <windows.h>

#include <oleacc.h>

#include <cstdlib>

#include "platform/windows/com_objects.h"

namespace {

struct Search {
    RECT place;
    HWND found;
};

BOOL CALLBACK lookAt(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    RECT place{};
    GetWindowRect(window, &place);
    if (IsWindowVisible(window) != 0 && EqualRect(&place, &search.place) != 0) {
        search.found = window;
    }
    return search.found == nullptr;
}

HWND findControl(const std::string& title, const Place& place) {
    HWND const frame = FindWindowW(nullptr, platform::wideOf(title).c_str());
    POINT origin{0, 0};
    ClientToScreen(frame, &origin);
    Search search{{origin.x + place.x, origin.y + place.y, origin.x + place.x + place.width,
                   origin.y + place.y + place.height},
                  nullptr};
    EnumChildWindows(frame, &lookAt, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

VARIANT self() {
    VARIANT part;
    VariantInit(&part);
    part.vt = VT_I4;
    part.lVal = CHILDID_SELF;
    return part;
}

using TextGetter = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
using NumberGetter = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, VARIANT*);

std::string ask(IAccessible& control, TextGetter getter) {
    platform::AutomationText text;
    return (control.*getter)(self(), text.receive()) == S_OK ? text.text() : std::string();
}

long ask(IAccessible& control, NumberGetter getter) {
    VARIANT number;
    VariantInit(&number);
    return (control.*getter)(self(), &number) == S_OK && number.vt == VT_I4 ? number.lVal : 0;
}

std::string roleOf(long role) {
    switch (role) {
        case ROLE_SYSTEM_PUSHBUTTON:
            return "button";
        case ROLE_SYSTEM_LINK:
            return "link";
        case ROLE_SYSTEM_CHECKBUTTON:
            return "check box";
        case ROLE_SYSTEM_RADIOBUTTON:
            return "radio button";
        case ROLE_SYSTEM_PROGRESSBAR:
            return "progress bar";
        case ROLE_SYSTEM_DOCUMENT:
            return "document";
        case ROLE_SYSTEM_LIST:
            return "list";
        default:
            return std::to_string(role);
    }
}

}  // namespace

SpokenControl readControl(const std::string& title, const Place& place) {
    HWND const window = findControl(title, place);
    platform::ComPointer<IAccessible> control;
    if (window == nullptr || AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                                        IID_IAccessible, control.receiveAny()) != S_OK) {
        return {};
    }
    const std::string value = ask(*control.get(), &IAccessible::get_accValue);
    const long state = ask(*control.get(), &IAccessible::get_accState);
    return {ask(*control.get(), &IAccessible::get_accName),
            roleOf(ask(*control.get(), &IAccessible::get_accRole)),
            ask(*control.get(), &IAccessible::get_accDescription),
            value.ends_with('%') ? std::atoi(value.data()) : -1,
            (state & STATE_SYSTEM_UNAVAILABLE) == 0,
            (state & STATE_SYSTEM_CHECKED) != 0};
}
