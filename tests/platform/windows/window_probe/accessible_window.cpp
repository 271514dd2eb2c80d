#include "platform/windows/window_probe/accessible_window.h"

#include <oleacc.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "platform/windows/com_objects.h"
#include "platform/windows/window_probe/json_text.h"

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr long kMostParts = 200;
constexpr UINT kLongestWord = 100;

struct StateWord {
    long bit;
    const wchar_t* word;
};

constexpr StateWord kStateWords[] = {
    {STATE_SYSTEM_UNAVAILABLE, L"unavailable"}, {STATE_SYSTEM_SELECTED, L"selected"},
    {STATE_SYSTEM_FOCUSED, L"focused"},         {STATE_SYSTEM_PRESSED, L"pressed"},
    {STATE_SYSTEM_CHECKED, L"checked"},         {STATE_SYSTEM_READONLY, L"read only"},
    {STATE_SYSTEM_DEFAULT, L"default"},         {STATE_SYSTEM_BUSY, L"busy"},
    {STATE_SYSTEM_INVISIBLE, L"invisible"},     {STATE_SYSTEM_OFFSCREEN, L"off screen"},
    {STATE_SYSTEM_FOCUSABLE, L"focusable"},     {STATE_SYSTEM_SELECTABLE, L"selectable"},
    {STATE_SYSTEM_LINKED, L"linked"},           {STATE_SYSTEM_PROTECTED, L"protected"},
};

std::wstring wide(const platform::AutomationText& text) {
    return text.get() == nullptr ? std::wstring() : std::wstring(text.get(), SysStringLen(text.get()));
}

VARIANT partOf(long part) {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = VT_I4;
    variant.lVal = part;
    return variant;
}

std::wstring roleWord(long role) {
    wchar_t word[kLongestWord] = L"";
    GetRoleTextW(static_cast<DWORD>(role), word, kLongestWord);
    return word;
}

std::string stateWords(long state) {
    std::vector<std::string> words;
    for (const StateWord& known : kStateWords) {
        if ((state & known.bit) != 0) {
            words.push_back(json::text(known.word));
        }
    }
    return json::list(words);
}

using TextGetter = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
using NumberGetter = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, VARIANT*);

void addText(json::Object& object, const char* name, IAccessible& accessible, TextGetter getter, long part) {
    platform::AutomationText text;
    if ((accessible.*getter)(partOf(part), text.receive()) == S_OK) {
        object.addText(name, wide(text));
    }
}

std::optional<long> number(IAccessible& accessible, NumberGetter getter, long part) {
    VARIANT variant;
    VariantInit(&variant);
    const bool isNumber = (accessible.*getter)(partOf(part), &variant) == S_OK && variant.vt == VT_I4;
    const long value = isNumber ? variant.lVal : 0;
    VariantClear(&variant);
    return isNumber ? std::optional(value) : std::nullopt;
}

json::Object describe(IAccessible& accessible, long part) {
    json::Object object;
    addText(object, "name", accessible, &IAccessible::get_accName, part);
    if (const auto role = number(accessible, &IAccessible::get_accRole, part)) {
        object.addText("role", roleWord(*role)).addNumber("role_number", *role);
    }
    if (const auto state = number(accessible, &IAccessible::get_accState, part)) {
        object.addNumber("state_bits", *state).add("states", stateWords(*state));
    }
    addText(object, "value", accessible, &IAccessible::get_accValue, part);
    addText(object, "description", accessible, &IAccessible::get_accDescription, part);
    return object;
}

// Of the parts that aren't windows of their own.
std::vector<std::string> parts(IAccessible& accessible, long rows) {
    std::vector<std::string> found;
    long count = 0;
    if (rows > 0) {
        count = rows;
    } else if (accessible.get_accChildCount(&count) != S_OK) {
        return found;
    }
    for (long part = 1; part <= count && part <= kMostParts; ++part) {
        platform::ComPointer<IDispatch> own;
        platform::ComPointer<IAccessible> object;
        if (accessible.get_accChild(partOf(part), own.receive()) == S_OK && own.get() != nullptr &&
            own->QueryInterface(IID_IAccessible, object.receiveAny()) == S_OK) {
            found.push_back(describe(*object.get(), CHILDID_SELF).str());
        } else {
            found.push_back(describe(accessible, part).str());
        }
    }
    return found;
}

std::optional<std::string> answerOf(HWND window, long rows) {
    const platform::ComApartment apartment;
    platform::ComPointer<IAccessible> accessible;
    if (AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                   accessible.receiveAny()) != S_OK) {
        return std::nullopt;
    }
    json::Object object = describe(*accessible.get(), CHILDID_SELF);
    if (rows > 0 || GetWindow(window, GW_CHILD) == nullptr) {
        object.add("children", json::list(parts(*accessible.get(), rows)));
    }
    return object.str();
}

}  // namespace

// The calls know no limit, so they are made on a thread that is left behind when the window hangs.
std::optional<std::string> accessibleWindow(HWND window, long rows) {
    std::promise<std::optional<std::string>> promise;
    std::future<std::optional<std::string>> answer = promise.get_future();
    std::thread([window, rows, promise = std::move(promise)]() mutable {
        promise.set_value(answerOf(window, rows));
    }).detach();
    return answer.wait_for(kPatience) == std::future_status::ready ? answer.get() : std::nullopt;
}
