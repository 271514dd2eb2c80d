#pragma once

#include <wx/string.h>

// What answers a screen reader for a window and can be told its name.
class NamedWindow {
public:
    virtual ~NamedWindow() = default;

    void setName(const wxString& name) { name_ = name; }
    // Empty: none has been given.
    const wxString& name() const { return name_; }

private:
    wxString name_;
};
