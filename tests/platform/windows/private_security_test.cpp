#include "platform/windows/private_security.h"

#include <gtest/gtest.h>

namespace {

using platform::Holder;
using platform::PrivateSecurity;

class PrivateSecurityTest : public testing::Test {
protected:
    // The access list, after a look at what it hangs from.
    static ACL* listOf(PrivateSecurity& security) {
        SECURITY_ATTRIBUTES* attributes = security.attributes();
        if (attributes == nullptr || attributes->bInheritHandle ||
            IsValidSecurityDescriptor(attributes->lpSecurityDescriptor) == 0) {
            return nullptr;
        }
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        EXPECT_NE(GetSecurityDescriptorControl(attributes->lpSecurityDescriptor, &control, &revision), 0);
        EXPECT_NE(control & SE_DACL_PROTECTED, 0);
        BOOL present = FALSE;
        BOOL defaulted = TRUE;
        ACL* list = nullptr;
        EXPECT_NE(GetSecurityDescriptorDacl(attributes->lpSecurityDescriptor, &present, &list, &defaulted),
                  0);
        return present != 0 && list != nullptr && IsValidAcl(list) != 0 ? list : nullptr;
    }

    static PSID ownerOf(PrivateSecurity& security) {
        PSID owner = nullptr;
        BOOL defaulted = TRUE;
        EXPECT_NE(GetSecurityDescriptorOwner(security.attributes()->lpSecurityDescriptor, &owner, &defaulted),
                  0);
        return owner;
    }

    // Whom the entry allows everything; null when it is of another kind.
    static PSID allowedBy(ACL* list, DWORD index) {
        void* entry = nullptr;
        EXPECT_NE(GetAce(list, index, &entry), 0);
        auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        const bool isWhole = allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                             allowed->Mask == static_cast<DWORD>(FILE_ALL_ACCESS);
        return isWhole ? &allowed->SidStart : nullptr;
    }

    static bool isOwnUser(PSID sid) {
        HANDLE token = nullptr;
        EXPECT_NE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token), 0);
        unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
        DWORD size = sizeof(user);
        EXPECT_NE(GetTokenInformation(token, TokenUser, user, size, &size), 0);
        CloseHandle(token);
        return EqualSid(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, sid) != 0;
    }
};

TEST_F(PrivateSecurityTest, WithoutElevationBelongsToTheUserAlone) {
    PrivateSecurity security(Holder::kUser);
    ACL* list = listOf(security);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->AceCount, 1);
    ASSERT_NE(allowedBy(list, 0), nullptr);
    EXPECT_TRUE(isOwnUser(allowedBy(list, 0)));
    EXPECT_TRUE(isOwnUser(ownerOf(security)));
}

TEST_F(PrivateSecurityTest, OfAnElevatedProcessBelongsToAdministratorsAndTheSystem) {
    PrivateSecurity security(Holder::kAdministrators);
    ACL* list = listOf(security);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->AceCount, 2);
    ASSERT_NE(allowedBy(list, 0), nullptr);
    ASSERT_NE(allowedBy(list, 1), nullptr);
    EXPECT_TRUE(IsWellKnownSid(allowedBy(list, 0), WinBuiltinAdministratorsSid));
    EXPECT_TRUE(IsWellKnownSid(allowedBy(list, 1), WinLocalSystemSid));
    EXPECT_TRUE(IsWellKnownSid(ownerOf(security), WinBuiltinAdministratorsSid));
}

TEST_F(PrivateSecurityTest, IsHandedDownInADirectory) {
    for (const Holder holder : {Holder::kUser, Holder::kAdministrators}) {
        PrivateSecurity security(holder);
        ACL* list = listOf(security);
        ASSERT_NE(list, nullptr);
        for (DWORD i = 0; i < list->AceCount; ++i) {
            void* entry = nullptr;
            ASSERT_NE(GetAce(list, i, &entry), 0);
            EXPECT_EQ(static_cast<ACE_HEADER*>(entry)->AceFlags, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE);
        }
    }
}

TEST_F(PrivateSecurityTest, FollowsTheElevationOfTheProcess) {
    HANDLE token = nullptr;
    ASSERT_NE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token), 0);
    TOKEN_ELEVATION elevation{};
    DWORD size = sizeof(elevation);
    ASSERT_NE(GetTokenInformation(token, TokenElevation, &elevation, size, &size), 0);
    CloseHandle(token);
    const Holder expected = elevation.TokenIsElevated != 0 ? Holder::kAdministrators : Holder::kUser;
    EXPECT_EQ(platform::holderOfThisProcess(), expected);
}

}  // namespace
