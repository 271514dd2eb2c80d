#pragma once

#include <cstdint>

// Bits of the session's flags.
enum SessionFlag : std::uint32_t {
    kSessionActionLog = 1,  // the session starts from an action log, not from a cabinet
    kSessionBackup = 2,     // replaced files are kept in a backup archive
};
