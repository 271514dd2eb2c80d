#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace platform {

// An owner or a member of an access list, as the system numbers them.
class SecurityIdentifier {
public:
    explicit SecurityIdentifier(WELL_KNOWN_SID_TYPE type);
    // From its text ("S-1-5-..."); one that equals none when the text is none.
    explicit SecurityIdentifier(const wchar_t* text);
    // The user of this process.
    static SecurityIdentifier currentUser();

    bool equals(PSID other) const;

private:
    SecurityIdentifier() = default;
    std::vector<unsigned char> bytes_;
};

// Those whom a protection allows to change a file. A user whose rights the system withholds until they are
// asked for is no administrator: programs without those rights run under the same name.
class TrustedUsers {
public:
    explicit TrustedUsers(Protection protection);
    bool contains(PSID user) const;

private:
    std::vector<SecurityIdentifier> users_;
};

// FileSystem::isProtected for a real path. In directories further up than the file's own, others may make
// entries as long as they can't touch those of somebody else.
bool isProtectedPath(const std::wstring& realPath, Protection protection);

// True when the object (an event, a file ...) belongs to this user or to administrators, or to nobody: Wine
// knows no owner of an event.
bool isOwnedByTrusted(HANDLE object);

}  // namespace platform
