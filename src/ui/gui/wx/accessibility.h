#pragma once

#include <wx/string.h>
#include <wx/window.h>

// What screen readers learn about a window. Each system has its own implementation (gtk/, msw/).
namespace accessibility {

enum class Role { kLink, kDocument, kList };

void setName(wxWindow& window, const wxString& name);
// `label` belongs to `window`, and `name` is what it shows; empty for a window that has a name already.
void setLabel(wxWindow& window, wxWindow& label, const wxString& name);
void setRole(wxWindow& window, Role role);
// For windows that wxWidgets draws itself, which have neither a role nor a text of their own. The text of a
// list has a line for each row.
void setContent(wxWindow& window, Role role, const wxString& text);
// `frame` is the one on the screen.
void announce(wxWindow& frame, const wxString& text);

}  // namespace accessibility
