#pragma once

#include <windows.h>

#include <vector>

namespace platform {

// Who may use what is private.
enum class Holder {
    kUser,            // the user of this process
    kAdministrators,  // all administrators, and the system itself
};

// Administrators for a process that has their rights: another administrator must be able to go on with the
// work, and programs of the same user that run without these rights must not get at it.
Holder holderOfThisProcess();

// Rights of a new object for its holder alone, who owns it as well; inherited from nowhere, and handed down
// to what is made in a directory.
class PrivateSecurity {
public:
    explicit PrivateSecurity(Holder holder = holderOfThisProcess());
    PrivateSecurity(const PrivateSecurity&) = delete;
    PrivateSecurity& operator=(const PrivateSecurity&) = delete;

    // For CreateFileW and its like; borrowed. Null when the rights couldn't be put together.
    SECURITY_ATTRIBUTES* attributes() { return valid_ ? &attributes_ : nullptr; }

private:
    using Sid = std::vector<unsigned char>;

    bool addUser();
    bool addWellKnown(WELL_KNOWN_SID_TYPE type);
    bool buildList();

    bool valid_ = false;
    std::vector<Sid> holders_;         // the first is the owner
    std::vector<unsigned char> list_;  // an ACL
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{};
};

}  // namespace platform
