#pragma once

namespace platform {

enum class MessageIcon { kError, kWarning, kInformation };

// A message of a run without console front end: a box on Windows, standard error on Linux. Never waits where
// nobody can see it.
void showMessage(const char* text, const char* caption, MessageIcon icon);

}  // namespace platform
