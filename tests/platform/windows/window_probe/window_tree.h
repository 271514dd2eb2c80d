#pragma once

#include <string>

#include "platform/windows/window_probe/asking_thread.h"

// The visible windows of all other programs, top-level ones first in front, with all that is in them, as a
// JSON list.
std::string windowTree(AskingThread& asking);
