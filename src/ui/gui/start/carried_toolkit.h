#pragma once

#include <string>

#include "ui/gui/toolkit/toolkit.h"

// The toolkit that came with the program, not opened yet: on Linux a module of its own that is loaded here,
// so that the program runs where there is no desktop (module/); on Windows a part of the program (linked/).
// Null: it can't be loaded, and `outReason` gets one line.
Toolkit* carriedToolkit(std::string& outReason);
