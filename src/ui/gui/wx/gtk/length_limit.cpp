#include "ui/gui/wx/length_limit.h"

// There is none.
void liftLengthLimit(wxTextCtrl& /*text*/) {}
