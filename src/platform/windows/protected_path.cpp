#include "platform/windows/protected_path.h"

#include <sddl.h>

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr wchar_t kTrustedInstaller[] = L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464";

// Who has one of these can give himself the rest, or put something else in the place of the object.
constexpr DWORD kReplacing = DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_ALL | GENERIC_WRITE;
constexpr DWORD kChangingFile = kReplacing | FILE_WRITE_DATA | FILE_APPEND_DATA;
constexpr DWORD kReplacingEntries = kReplacing | FILE_DELETE_CHILD;
// A new file beside a program may be a library that it loads.
constexpr DWORD kChangingDirectory = kReplacingEntries | FILE_ADD_FILE;

// True when the rights of the user who runs this process can't be had by a program without them.
bool hasUndividedRights() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
        return false;
    }
    const Handle owner(token);
    TOKEN_ELEVATION_TYPE type{};
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    return GetTokenInformation(token, TokenElevationType, &type, sizeof(type), &size) != 0 &&
           type == TokenElevationTypeDefault &&
           GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size) != 0 &&
           elevation.TokenIsElevated != 0;
}

// Owner and access list of an object; empty on failure.
using Descriptor = std::vector<unsigned char>;

Descriptor descriptorOf(const std::wstring& path) {
    constexpr SECURITY_INFORMATION kParts = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    const wchar_t* const name = path.c_str();
    DWORD size = 0;
    GetFileSecurityW(name, kParts, nullptr, 0, &size);
    Descriptor descriptor(size);
    return GetFileSecurityW(name, kParts, descriptor.data(), size, &size) != 0 ? descriptor : Descriptor();
}

// An entry of a kind that isn't known grants its rights to anybody.
bool grantsToOthers(void* entry, DWORD rights, const TrustedUsers& trusted) {
    const auto* header = static_cast<const ACE_HEADER*>(entry);
    if ((header->AceFlags & INHERIT_ONLY_ACE) != 0 || header->AceType == ACCESS_DENIED_ACE_TYPE) {
        return false;
    }
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if ((allowed->Mask & rights) == 0) {
        return false;
    }
    return header->AceType != ACCESS_ALLOWED_ACE_TYPE || !trusted.contains(&allowed->SidStart);
}

bool isSafe(const std::wstring& path, DWORD rights, const TrustedUsers& trusted) {
    Descriptor descriptor = descriptorOf(path);
    PSID owner = nullptr;
    BOOL isDefault = FALSE;
    BOOL isPresent = FALSE;
    ACL* list = nullptr;
    if (descriptor.empty() || GetSecurityDescriptorOwner(descriptor.data(), &owner, &isDefault) == 0 ||
        owner == nullptr || !trusted.contains(owner) ||
        GetSecurityDescriptorDacl(descriptor.data(), &isPresent, &list, &isDefault) == 0 || isPresent == 0 ||
        list == nullptr) {
        return false;
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (GetAce(list, i, &entry) == 0 || grantsToOthers(entry, rights, trusted)) {
            return false;
        }
    }
    return true;
}

// The directory that the path lies in; empty for a root ("C:\").
std::wstring parentOf(const std::wstring& path) {
    const std::size_t separator = path.rfind(L'\\');
    if (separator == std::wstring::npos || separator + 1 == path.size()) {
        return {};
    }
    return path.substr(0, separator + (separator > 0 && path[separator - 1] == L':' ? 1 : 0));
}

}  // namespace

SecurityIdentifier::SecurityIdentifier(WELL_KNOWN_SID_TYPE type) : bytes_(SECURITY_MAX_SID_SIZE) {
    auto size = static_cast<DWORD>(bytes_.size());
    if (CreateWellKnownSid(type, nullptr, bytes_.data(), &size) == 0) {
        bytes_.clear();
    }
}

SecurityIdentifier::SecurityIdentifier(const wchar_t* text) {
    PSID sid = nullptr;
    if (ConvertStringSidToSidW(text, &sid) != 0) {
        bytes_.resize(GetLengthSid(sid));
        CopySid(static_cast<DWORD>(bytes_.size()), bytes_.data(), sid);
        LocalFree(sid);
    }
}

SecurityIdentifier SecurityIdentifier::currentUser() {
    SecurityIdentifier user;
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
        return user;
    }
    const Handle owner(token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<unsigned char> found(size);
    if (size < sizeof(TOKEN_USER) || GetTokenInformation(token, TokenUser, found.data(), size, &size) == 0) {
        return user;
    }
    PSID sid = reinterpret_cast<TOKEN_USER*>(found.data())->User.Sid;
    user.bytes_.resize(GetLengthSid(sid));
    CopySid(static_cast<DWORD>(user.bytes_.size()), user.bytes_.data(), sid);
    return user;
}

bool SecurityIdentifier::equals(PSID other) const {
    return !bytes_.empty() && EqualSid(const_cast<unsigned char*>(bytes_.data()), other) != 0;
}

TrustedUsers::TrustedUsers(Protection protection)
    : users_{SecurityIdentifier(WinBuiltinAdministratorsSid), SecurityIdentifier(WinLocalSystemSid),
             SecurityIdentifier(kTrustedInstaller)} {
    if (protection == Protection::kUserAndAdministrators || hasUndividedRights()) {
        users_.push_back(SecurityIdentifier::currentUser());
    }
}

bool TrustedUsers::contains(PSID user) const {
    for (const SecurityIdentifier& trusted : users_) {
        if (trusted.equals(user)) {
            return true;
        }
    }
    return false;
}

bool isProtectedPath(const std::wstring& realPath, Protection protection) {
    const TrustedUsers trusted(protection);
    std::wstring level = parentOf(realPath);
    if (level.empty() || !isSafe(realPath, kChangingFile, trusted) ||
        !isSafe(level, kChangingDirectory, trusted)) {
        return false;
    }
    for (level = parentOf(level); !level.empty(); level = parentOf(level)) {
        if (!isSafe(level, kReplacingEntries, trusted)) {
            return false;
        }
    }
    return true;
}

bool isOwnedByTrusted(HANDLE object) {
    DWORD size = 0;
    GetKernelObjectSecurity(object, OWNER_SECURITY_INFORMATION, nullptr, 0, &size);
    Descriptor descriptor(size);
    PSID owner = nullptr;
    BOOL isDefault = FALSE;
    return GetKernelObjectSecurity(object, OWNER_SECURITY_INFORMATION, descriptor.data(), size, &size) != 0 &&
           GetSecurityDescriptorOwner(descriptor.data(), &owner, &isDefault) != 0 &&
           (owner == nullptr || TrustedUsers(Protection::kUserAndAdministrators).contains(owner));
}

}  // namespace platform
