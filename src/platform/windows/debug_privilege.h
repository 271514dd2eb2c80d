#pragma once

#include <windows.h>

namespace platform {

// The right to look into the processes of others, for the calling thread, as long as the object lives. Not
// having it is not a failure: fewer processes can be opened then.
class DebugPrivilege {
public:
    DebugPrivilege();
    ~DebugPrivilege();
    DebugPrivilege(const DebugPrivilege&) = delete;
    DebugPrivilege& operator=(const DebugPrivilege&) = delete;

    bool enabled() const { return enabled_; }

private:
    bool openToken();
    bool switchTo(DWORD attributes);

    HANDLE token_ = nullptr;
    bool impersonated_ = false;
    bool enabled_ = false;
};

}  // namespace platform
