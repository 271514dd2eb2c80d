#include "platform/windows/private_security.h"

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr DWORD kHandedDown = OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE;

// Empty on failure.
std::vector<unsigned char> tokenInformation(TOKEN_INFORMATION_CLASS what) {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return {};
    }
    const Handle token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), what, nullptr, 0, &size);
    std::vector<unsigned char> information(size);
    if (GetTokenInformation(token.get(), what, information.data(), size, &size) == 0) {
        information.clear();
    }
    return information;
}

}  // namespace

Holder holderOfThisProcess() {
    const std::vector<unsigned char> elevation = tokenInformation(TokenElevation);
    const bool elevated = elevation.size() >= sizeof(TOKEN_ELEVATION) &&
                          reinterpret_cast<const TOKEN_ELEVATION*>(elevation.data())->TokenIsElevated != 0;
    return elevated ? Holder::kAdministrators : Holder::kUser;
}

PrivateSecurity::PrivateSecurity(Holder holder) {
    const bool known = holder == Holder::kUser
                           ? addUser()
                           : addWellKnown(WinBuiltinAdministratorsSid) && addWellKnown(WinLocalSystemSid);
    valid_ = known && buildList();
}

bool PrivateSecurity::addUser() {
    const std::vector<unsigned char> user = tokenInformation(TokenUser);
    if (user.size() < sizeof(TOKEN_USER)) {
        return false;
    }
    const PSID sid = reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
    const auto* bytes = static_cast<const unsigned char*>(sid);
    holders_.emplace_back(bytes, bytes + GetLengthSid(sid));
    return true;
}

bool PrivateSecurity::addWellKnown(WELL_KNOWN_SID_TYPE type) {
    DWORD size = SECURITY_MAX_SID_SIZE;
    Sid sid(size);
    if (CreateWellKnownSid(type, nullptr, sid.data(), &size) == 0) {
        return false;
    }
    holders_.push_back(std::move(sid));
    return true;
}

bool PrivateSecurity::buildList() {
    DWORD size = sizeof(ACL);
    for (Sid& holder : holders_) {
        // An entry ends with the identifier, whose first word the structure already counts.
        size += static_cast<DWORD>(sizeof(ACCESS_ALLOWED_ACE) - sizeof(DWORD)) + GetLengthSid(holder.data());
    }
    list_.resize(size);
    ACL* list = reinterpret_cast<ACL*>(list_.data());
    bool built = InitializeAcl(list, size, ACL_REVISION) != 0;
    for (Sid& holder : holders_) {
        built = built &&
                AddAccessAllowedAceEx(list, ACL_REVISION, kHandedDown, FILE_ALL_ACCESS, holder.data()) != 0;
    }
    attributes_.nLength = sizeof(attributes_);
    attributes_.lpSecurityDescriptor = &descriptor_;
    return built && InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
           SetSecurityDescriptorOwner(&descriptor_, holders_.front().data(), FALSE) != 0 &&
           SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) != 0 &&
           SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
}

}  // namespace platform
