#pragma once

#include <windows.h>

#include <vector>

namespace platform {

// Rights of a new object for the user of this process alone, inherited from nowhere.
class PrivateSecurity {
public:
    PrivateSecurity();
    PrivateSecurity(const PrivateSecurity&) = delete;
    PrivateSecurity& operator=(const PrivateSecurity&) = delete;

    // For CreateFileW and its like; borrowed. Null when the rights couldn't be put together.
    SECURITY_ATTRIBUTES* attributes() { return valid_ ? &attributes_ : nullptr; }

private:
    bool readUser();
    bool buildList();

    bool valid_ = false;
    std::vector<unsigned char> user_;  // a TOKEN_USER with what it points to
    std::vector<unsigned char> list_;  // an ACL
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{};
};

}  // namespace platform
