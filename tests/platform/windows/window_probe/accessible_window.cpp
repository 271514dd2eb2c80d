#include "platform/windows/window_probe/accessible_window.h"

#include <oleacc.h>

#include <algorithm>
#include <vector>

#include "platform/windows/com_objects.h"
#include "platform/windows/window_probe/json_text.h"

namespace {

constexpr long kMostRows = 200;
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

void addRoleAndState(json::Object& object, IAccessible& accessible) {
    if (const auto role = number(accessible, &IAccessible::get_accRole, CHILDID_SELF)) {
        object.addText("role", roleWord(*role)).addNumber("role_number", *role);
    }
    if (const auto state = number(accessible, &IAccessible::get_accState, CHILDID_SELF)) {
        object.addNumber("state_bits", *state).add("states", stateWords(*state));
    }
}

std::vector<std::string> rowNames(IAccessible& accessible, long rows) {
    std::vector<std::string> names;
    for (long row = 1; row <= std::min(rows, kMostRows); ++row) {
        json::Object object;
        addText(object, "name", accessible, &IAccessible::get_accName, row);
        names.push_back(object.str());
    }
    return names;
}

// What the window answered leads to its object once.
HRESULT open(HWND window, LRESULT answer, platform::ComPointer<IAccessible>& outObject) {
    return answer != 0 ? ObjectFromLresult(answer, IID_IAccessible, 0, outObject.receiveAny())
                       : CreateStdAccessibleObject(window, static_cast<LONG>(OBJID_CLIENT), IID_IAccessible,
                                                   outObject.receiveAny());
}

std::optional<std::string> describe(HWND window, LRESULT answer, const AccessibleQuestions& questions) {
    platform::ComPointer<IAccessible> accessible;
    if (open(window, answer, accessible) != S_OK) {
        return std::nullopt;
    }
    json::Object object;
    addText(object, "name", *accessible.get(), &IAccessible::get_accName, CHILDID_SELF);
    if (questions.roleAndState) {
        addRoleAndState(object, *accessible.get());
    }
    if (questions.value) {
        addText(object, "value", *accessible.get(), &IAccessible::get_accValue, CHILDID_SELF);
    }
    if (questions.description) {
        addText(object, "description", *accessible.get(), &IAccessible::get_accDescription, CHILDID_SELF);
    }
    if (questions.rows > 0) {
        object.add("children", json::list(rowNames(*accessible.get(), questions.rows)));
    }
    return object.str();
}

}  // namespace

std::optional<std::string> accessibleWindow(HWND window, LRESULT answer, const AccessibleQuestions& questions,
                                            AskingThread& asking) {
    return asking.ask([window, answer, questions] { return describe(window, answer, questions); });
}
