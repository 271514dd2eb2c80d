#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/named_events.h"

namespace platform {

// NamedEvents::lock by a file in `directory`, which is made if its parent exists. The file goes with the
// lock. The directory must be one in which no other user makes files; a file of somebody else's is
// kUnavailable.
LockResult lockFile(const std::string& directory, const std::string& name, std::uint32_t milliseconds,
                    std::unique_ptr<NamedLock>& outLock);

}  // namespace platform
