#include "platform/windows/private_security.h"

#include <gtest/gtest.h>

namespace {

TEST(PrivateSecurity, AllowsOneUserEverythingAndInheritsNothing) {
    platform::PrivateSecurity security;
    SECURITY_ATTRIBUTES* attributes = security.attributes();
    ASSERT_NE(attributes, nullptr);
    EXPECT_FALSE(attributes->bInheritHandle);
    ASSERT_NE(IsValidSecurityDescriptor(attributes->lpSecurityDescriptor), 0);

    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    ASSERT_NE(GetSecurityDescriptorControl(attributes->lpSecurityDescriptor, &control, &revision), 0);
    EXPECT_NE(control & SE_DACL_PROTECTED, 0);

    BOOL present = FALSE;
    BOOL defaulted = TRUE;
    ACL* list = nullptr;
    ASSERT_NE(GetSecurityDescriptorDacl(attributes->lpSecurityDescriptor, &present, &list, &defaulted), 0);
    ASSERT_TRUE(present);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(IsValidAcl(list), 0);
    ASSERT_EQ(list->AceCount, 1);
    void* entry = nullptr;
    ASSERT_NE(GetAce(list, 0, &entry), 0);
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    EXPECT_EQ(allowed->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
    EXPECT_EQ(allowed->Mask, static_cast<DWORD>(FILE_ALL_ACCESS));
    EXPECT_FALSE(IsWellKnownSid(&allowed->SidStart, WinWorldSid));
}

}  // namespace
