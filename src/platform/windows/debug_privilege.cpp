#include "platform/windows/debug_privilege.h"

namespace platform {

DebugPrivilege::DebugPrivilege() {
    if (!openToken() && GetLastError() == ERROR_NO_TOKEN) {
        impersonated_ = ImpersonateSelf(SecurityImpersonation) != 0;
        openToken();
    }
    enabled_ = token_ != nullptr && switchTo(SE_PRIVILEGE_ENABLED);
}

DebugPrivilege::~DebugPrivilege() {
    if (enabled_) {
        switchTo(0);
    }
    if (token_ != nullptr) {
        CloseHandle(token_);
    }
    if (impersonated_) {
        RevertToSelf();
    }
}

bool DebugPrivilege::openToken() {
    return OpenThreadToken(GetCurrentThread(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, FALSE, &token_) != 0;
}

bool DebugPrivilege::switchTo(DWORD attributes) {
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = attributes;
    // The call also succeeds when the token has no such privilege; only the last error says so.
    return LookupPrivilegeValueW(nullptr, L"SeDebugPrivilege", &privileges.Privileges[0].Luid) != 0 &&
           AdjustTokenPrivileges(token_, FALSE, &privileges, 0, nullptr, nullptr) != 0 &&
           GetLastError() == ERROR_SUCCESS;
}

}  // namespace platform
