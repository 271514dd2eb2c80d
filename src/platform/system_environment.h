#pragma once

namespace platform {

// Where the system's environment variables lie, in the machine's hive.
inline constexpr char kSystemEnvironmentKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";

}  // namespace platform
