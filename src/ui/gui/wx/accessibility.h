#pragma once

#include <wx/string.h>
#include <wx/window.h>

// What those who can't see the screen are told about a window. Has one implementation for each system (gtk/,
// msw/).
namespace accessibility {

enum class Role { kDocument, kList };

void setName(wxWindow& window, const wxString& name);
// `label` shows `name`, which is that of `window`.
void setLabel(wxWindow& window, wxWindow& label, const wxString& name);
// For windows that wxWidgets draws itself, which have neither a role nor a text of their own.
void setContent(wxWindow& window, Role role, const wxString& text);
// `frame` is the one on the screen.
void announce(wxWindow& frame, const wxString& text);

}  // namespace accessibility
