#include "ui/gui/wx/length_limit.h"

// Windows stops at 64 KB, and drops what is appended beyond.
void liftLengthLimit(wxTextCtrl& text) {
    text.SetMaxLength(0);
}
