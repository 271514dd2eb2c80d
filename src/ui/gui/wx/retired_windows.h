#pragma once

#include <wx/window.h>

#include <vector>

// Windows that have left the page. One of them may just be at work, as a button is whose press builds the
// next page, so they end later.
class RetiredWindows {
public:
    RetiredWindows() = default;
    RetiredWindows(const RetiredWindows&) = delete;
    RetiredWindows& operator=(const RetiredWindows&) = delete;

    // Hides it; it reports nothing any more.
    void add(wxWindow* window);
    // Only while none of them is at work.
    void destroyAll();
    // Their parent has destroyed them.
    void forgetAll() { windows_.clear(); }

private:
    std::vector<wxWindow*> windows_;
};
