#pragma once

#include <string>

#include "ui/gui/toolkit/toolkit.h"

// The toolkit, opened: a display is there. It lives as long as the process. Null: windows can't be shown
// here, and `outReason` gets one line that says why, without a full stop. Repeated calls give the first
// result. Session's thread.
Toolkit* openWindowToolkit(std::string& outReason);
