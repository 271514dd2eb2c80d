#pragma once

#include <string>

namespace platform {

// Where the system keeps what it has to remember of this machine: $TANDREL_STATE_DIR as it stood when it was
// first asked for, else the default.
inline constexpr char kDefaultStateDirectory[] = "/var/lib/tandrel";
const std::string& stateDirectory();

}  // namespace platform
