#pragma once

#include <string_view>

namespace platform {

enum class MessageIcon { kError, kWarning, kInformation };

// A message of a run without console front end: a box on Windows, standard error on Linux. Never waits where
// nobody can see it.
void showMessage(std::string_view text, std::string_view caption, MessageIcon icon);

}  // namespace platform
