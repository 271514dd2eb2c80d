#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <string>

#include "platform/windows/wide_text.h"

// Owners of what the component object model hands out, so that each way out of a function gives it back.
namespace platform {

// Holds the calling thread in an apartment of its own while it lives. Declared before the objects, so that
// they are released first.
class ComApartment {
public:
    ComApartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~ComApartment() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

    // A thread that is in an apartment already counts as well, unless that is of another kind.
    HRESULT result() const { return result_; }

private:
    HRESULT result_;
};

// Owns one reference to an object, or none.
template <typename Interface>
class ComPointer {
public:
    ComPointer() = default;
    ~ComPointer() {
        if (object_ != nullptr) {
            object_->Release();
        }
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;

    Interface* operator->() const { return object_; }
    Interface* get() const { return object_; }
    // For a call that hands out a reference; nothing is owned so far.
    Interface** receive() { return &object_; }
    void** receiveAny() { return reinterpret_cast<void**>(&object_); }

private:
    Interface* object_ = nullptr;
};

// A text in the form that automation interfaces take. Null when memory is short, which they refuse.
class AutomationText {
public:
    AutomationText() = default;  // for receive()
    explicit AutomationText(std::string_view utf8) {
        const std::wstring wide = wideOf(utf8);
        text_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    }
    ~AutomationText() { SysFreeString(text_); }
    AutomationText(const AutomationText&) = delete;
    AutomationText& operator=(const AutomationText&) = delete;

    BSTR get() const { return text_; }
    // For a call that hands out a text; none is owned so far.
    BSTR* receive() { return &text_; }
    std::string text() const {
        return text_ == nullptr ? std::string() : utf8Of(std::wstring_view(text_, SysStringLen(text_)));
    }

private:
    BSTR text_ = nullptr;
};

}  // namespace platform
