#include "platform/windows/private_security.h"

#include "platform/windows/wide_text.h"

namespace platform {

PrivateSecurity::PrivateSecurity() {
    valid_ = readUser() && buildList();
}

bool PrivateSecurity::readUser() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
        return false;
    }
    const Handle owner(token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    user_.resize(size);
    return size >= sizeof(TOKEN_USER) &&
           GetTokenInformation(token, TokenUser, user_.data(), size, &size) != 0;
}

bool PrivateSecurity::buildList() {
    PSID user = reinterpret_cast<TOKEN_USER*>(user_.data())->User.Sid;
    // An entry ends with the user's identifier, whose first word the structure already counts.
    const DWORD size = sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) - sizeof(DWORD) + GetLengthSid(user);
    list_.resize(size);
    ACL* list = reinterpret_cast<ACL*>(list_.data());
    attributes_.nLength = sizeof(attributes_);
    attributes_.lpSecurityDescriptor = &descriptor_;
    return InitializeAcl(list, size, ACL_REVISION) != 0 &&
           AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, user) != 0 &&
           InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
           SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) != 0 &&
           SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
}

}  // namespace platform
